#include <app_common.h>

#include "app-common/Installation.h"

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <memory>
#include <string>
#include <sys/stat.h>

using namespace WatchPort;

namespace fs = std::filesystem;

namespace
{
using testing::HasSubstr;

class Folder : public testing::Test
{
protected:
    void SetUp() override
    {
        std::string name = (fs::temp_directory_path() / "app-common-XXXXXX").string();
        mPath = mkdtemp(name.data());
        unsetenv("XDG_DATA_HOME");
        setenv("HOME", mPath.c_str(), 1);
    }
    void TearDown() override { fs::remove_all(mPath); }

    fs::path Make(const std::string& folder) const
    {
        fs::create_directories(mPath / folder);
        return mPath / folder;
    }

    fs::path mPath;
};

class InstallationTest : public Folder
{
};

class DataPathTest : public Folder
{
};

std::string Text(char* path)
{
    const std::unique_ptr<char, decltype(&std::free)> owner(path, std::free);
    return path == nullptr ? "null" : path;
}

int Mode(const fs::path& path)
{
    struct stat status = {};
    EXPECT_EQ(stat(path.c_str(), &status), 0);
    return status.st_mode & 07777;
}

// The error line of a call that fails.
std::string ErrorOfDataPath()
{
    testing::internal::CaptureStderr();
    EXPECT_EQ(Text(app_get_data_path()), "null");
    return testing::internal::GetCapturedStderr();
}
} // namespace

TEST_F(InstallationTest, IsTheFirstFolderAboveWithTheProgramsShare)
{
    Make("opt/bin");
    Make("opt/" DATA_FOLDER "/clock");
    Make(DATA_FOLDER "/clock");
    const fs::path theme = Make("opt/" DATA_FOLDER "/watch-port") / "platform.edj";
    std::ofstream(theme) << "a theme";
    const auto found = FindInstallation(mPath / "opt/bin/clock");
    ASSERT_TRUE(found);
    EXPECT_EQ(found->program, "clock");
    EXPECT_EQ(found->resources, mPath / "opt/" DATA_FOLDER "/clock");
    EXPECT_EQ(found->locales, mPath / "opt/" LOCALE_FOLDER);
    EXPECT_EQ(found->platformTheme, theme);
}

TEST_F(InstallationTest, MayBeABuildTree)
{
    Make("build/apps/clock");
    Make("build/res");
    const fs::path theme = Make("build/subprojects/watch-port/theme") / "platform.edj";
    std::ofstream(theme) << "a theme";
    const auto found = FindInstallation(mPath / "build/apps/clock/clock");
    ASSERT_TRUE(found);
    EXPECT_EQ(found->resources, mPath / "build/res");
    EXPECT_EQ(found->locales, mPath / "build/res/locale");
    EXPECT_EQ(found->platformTheme, theme);
}

TEST_F(InstallationTest, IgnoresTheShareOfAnotherProgramAndAFileNamedRes)
{
    Make("opt/bin");
    Make("opt/" DATA_FOLDER "/mail");
    std::ofstream(mPath / "opt/res") << "no folder";
    Make(DATA_FOLDER "/clock");
    const auto found = FindInstallation(mPath / "opt/bin/clock");
    ASSERT_TRUE(found);
    EXPECT_EQ(found->resources, mPath / DATA_FOLDER "/clock");
}

TEST_F(InstallationTest, MayBeMissing)
{
    EXPECT_FALSE(FindInstallation("/no-such-folder/no-such-program"));
    EXPECT_FALSE(FindInstallation(""));
}

TEST(ResourcePath, IsThatOfTheRunningProgramAndEndsWithASlash)
{
    const auto installation = FindInstallation(RunningExecutable());
    ASSERT_TRUE(installation);
    EXPECT_EQ(installation->program, "app_common_test");
    EXPECT_EQ(Text(app_get_resource_path()), installation->resources.string() + "/");
}

TEST_F(DataPathTest, LiesBelowTheDataHome)
{
    setenv("XDG_DATA_HOME", (mPath / "data").c_str(), 1);
    EXPECT_EQ(Text(app_get_data_path()), (mPath / "data/app_common_test/").string());
}

TEST_F(DataPathTest, LiesBelowTheHomeWithoutADataHome)
{
    const std::string expected = (mPath / ".local/share/app_common_test/").string();
    EXPECT_EQ(Text(app_get_data_path()), expected);
    setenv("XDG_DATA_HOME", "", 1);
    EXPECT_EQ(Text(app_get_data_path()), expected);
    setenv("XDG_DATA_HOME", "relative/path", 1);
    EXPECT_EQ(Text(app_get_data_path()), expected);
}

TEST_F(DataPathTest, IsMadePrivateAllTheWay)
{
    Text(app_get_data_path());
    EXPECT_EQ(Mode(mPath / ".local"), 0700);
    EXPECT_EQ(Mode(mPath / ".local/share"), 0700);
    EXPECT_EQ(Mode(mPath / ".local/share/app_common_test"), 0700);
}

TEST_F(DataPathTest, LeavesFoldersThatAreThereAsTheyAre)
{
    fs::permissions(Make(".local/share"), fs::perms(0755));
    Text(app_get_data_path());
    EXPECT_EQ(Mode(mPath / ".local/share"), 0755);
}

TEST_F(DataPathTest, IsNullWithoutAnAbsoluteHome)
{
    setenv("HOME", "relative", 1);
    EXPECT_THAT(ErrorOfDataPath(), HasSubstr("neither XDG_DATA_HOME nor HOME"));
    unsetenv("HOME");
    EXPECT_THAT(ErrorOfDataPath(), HasSubstr("neither XDG_DATA_HOME nor HOME"));
}

TEST_F(DataPathTest, IsNullWhereAFileStandsInItsPlace)
{
    Make(".local/share");
    std::ofstream(mPath / ".local/share/app_common_test") << "a file";
    EXPECT_THAT(ErrorOfDataPath(), HasSubstr("app_common_test\" cannot be made: Not a directory"));
}

TEST_F(DataPathTest, IsNullWhereAFileStandsInTheWay)
{
    std::ofstream(mPath / ".local") << "a file";
    EXPECT_THAT(ErrorOfDataPath(), HasSubstr("cannot be made: Not a directory"));
}
