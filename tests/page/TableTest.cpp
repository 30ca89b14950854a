#include "page/stage/Ink.h"
#include "page/stage/Page.h"

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>

namespace
{

/// Colours and fonts are the tables' alone.
class Table : public testing::Test
{
protected:
    ~Table() override
    {
        Page::UseOwnTables();
        std::filesystem::remove(mFile);
    }

    std::string Write(const std::string& table) const
    {
        std::ofstream(mFile) << table;
        return mFile;
    }

    // Of the first line, where it is read.
    int LettersHeight()
    {
        mPage.BringToMiddle(mPage.Lines().front().Middle());
        const Box line = mPage.Lines().front();
        return Ink::Within(mPage.Look(), line.top, line.bottom).value().Height();
    }

    std::string mFile = testing::TempDir() + "page-table-" + std::to_string(getpid()) + ".xml";
    Page mPage{360};
};

TEST_F(Table, AnotherColourColoursTheText)
{
    Page::SetColorTable(
        Write(R"(<ColorTable><Color id="qivo/text" r="255" g="200" b="0" a="255"/></ColorTable>)"));
    mPage.SetLanguage("en");
    const Picture picture = mPage.Look();
    const Box line = mPage.Lines().front();
    int coloured = 0;
    for (int y = line.top; y < line.bottom; ++y)
    {
        for (int x = 0; x < picture.Side(); ++x)
        {
            EXPECT_EQ(picture.At(x, y) & 0xff, 0U);
            coloured += picture.At(x, y) == 0xffc800;
        }
    }
    EXPECT_GT(coloured, 100);
}

TEST_F(Table, ALargerFontMakesLargerLettersAndHigherLines)
{
    const int line = mPage.Lines().front().Height();
    const int letters = LettersHeight();
    Page::SetFontTable(Write(
        R"(<FontTable><Font id="qivo/body" name="Noto Sans" style="Regular" size="36"/></FontTable>)"));
    mPage.SetLanguage("en");
    EXPECT_NEAR(LettersHeight(), letters * 36 / 28, 2);
    EXPECT_GT(mPage.Lines().front().Height(), line);
}

TEST_F(Table, AnotherFontWithABlankInItsNameIsTaken)
{
    const Picture before = mPage.Look();
    Page::SetFontTable(Write(
        R"(<FontTable><Font id="qivo/body" name="Noto Serif" style="Bold" size="28"/></FontTable>)"));
    mPage.SetLanguage("en");
    const Box line = mPage.Lines().front();
    const std::optional<Box> ink = Ink::Within(mPage.Look(), line.top, line.bottom);
    EXPECT_NE(mPage.Look(), before);
    EXPECT_GT(ink.value().Width(), Ink::Within(before, line.top, line.bottom).value().Width());
}

} // namespace
