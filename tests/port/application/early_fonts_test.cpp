#include "application/fast-start/EarlyFonts.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <memory>
#include <string>
#include <unistd.h>

using namespace WatchPort;

namespace
{
namespace fs = std::filesystem;
using Configuration = std::unique_ptr<FcConfig, decltype(&FcConfigDestroy)>;

Configuration Ask()
{
    return {FcInitLoadConfigAndFonts(), FcConfigDestroy};
}

// The only folder of fonts that a configuration names.
std::string Folder(const Configuration& configuration)
{
    FcStrList* folders = FcConfigGetFontDirs(configuration.get());
    const FcChar8* first = FcStrListNext(folders);
    std::string folder = first == nullptr ? "" : reinterpret_cast<const char*>(first);
    FcStrListDone(folders);
    return folder;
}

class EarlyFontsTest : public testing::Test
{
protected:
    EarlyFontsTest() { fs::create_directories(mHome); }
    ~EarlyFontsTest() override
    {
        unsetenv("FONTCONFIG_FILE");
        fs::remove_all(mHome);
    }

    // What is loaded from now on names this folder.
    void Configure(const std::string& folder) const
    {
        const fs::path file = mHome / "fonts.conf";
        fs::create_directories(mHome / folder);
        std::ofstream(file) << "<fontconfig><dir>" << (mHome / folder).string()
                            << "</dir><cachedir>" << (mHome / "cache").string()
                            << "</cachedir></fontconfig>";
        setenv("FONTCONFIG_FILE", file.c_str(), 1);
    }

    std::string Path(const std::string& folder) const { return mHome / folder; }

private:
    const fs::path mHome = fs::path(testing::TempDir()) / ("fonts-" + std::to_string(getpid()));
};

TEST_F(EarlyFontsTest, GiveTheFirstWhoAsksWhatWasLoadedBefore)
{
    Configure("early");
    EarlyFonts fonts;
    fonts.Keep();
    Configure("late");
    EXPECT_EQ(Folder(Ask()), Path("early"));
}

TEST_F(EarlyFontsTest, LetEachLaterOneLoadAnew)
{
    Configure("early");
    EarlyFonts fonts;
    fonts.Keep();
    Ask();
    Configure("late");
    EXPECT_EQ(Folder(Ask()), Path("late"));
}

TEST_F(EarlyFontsTest, LetOneWhoAsksBeforeTheyAreKeptLoadItself)
{
    Configure("early");
    EarlyFonts fonts;
    EXPECT_EQ(Folder(Ask()), Path("early"));
    fonts.Keep();
    Configure("late");
    EXPECT_EQ(Folder(Ask()), Path("early"));
}

TEST_F(EarlyFontsTest, AreNotGivenAfterTheirEnd)
{
    Configure("early");
    {
        EarlyFonts fonts;
        fonts.Keep();
    }
    Configure("late");
    EXPECT_EQ(Folder(Ask()), Path("late"));
}

TEST_F(EarlyFontsTest, MayEndWithoutBeingKept)
{
    Configure("early");
    {
        const EarlyFonts fonts;
    }
    Configure("late");
    EXPECT_EQ(Folder(Ask()), Path("late"));
}
} // namespace
