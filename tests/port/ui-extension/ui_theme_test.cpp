#include "port/OffScreen.h"

#include "ui_extension.h"

#include <gmock/gmock.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <optional>
#include <sys/stat.h>
#include <unistd.h>

using testing::AllOf;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::SizeIs;

namespace
{

using Rgba = std::vector<int>;

class UiTheme : public OffScreenTest
{
protected:
    void SetUp() override
    {
        OffScreenTest::SetUp();
        char name[] = "/tmp/ui-theme-test-XXXXXX";
        ASSERT_NE(mkdtemp(name), nullptr);
        mDirectory = name;
        // Tables that are set stay set from one test to the next.
        uxt_theme_set_color_table(AddColors("<ColorTable/>"));
        uxt_theme_set_font_table(AddFonts("<FontTable/>"));
    }

    void TearDown() override
    {
        uxt_theme_set_changeable_ui_enabled(EINA_FALSE);
        std::filesystem::remove_all(mDirectory);
        OffScreenTest::TearDown();
    }

    std::string Write(const std::string& text)
    {
        std::string path = mDirectory / ("table" + std::to_string(mFiles++) + ".xml");
        std::ofstream(path) << text;
        return path;
    }

    uxt_theme_color_table_h AddColors(const std::string& text)
    {
        return uxt_theme_add_color_table(Write(text).c_str());
    }

    uxt_theme_font_table_h AddFonts(const std::string& text)
    {
        return uxt_theme_add_font_table(Write(text).c_str());
    }

    // The colour that a table gives an object: 0 0 0 0 without an entry of that id.
    Rgba ColorFor(uxt_theme_color_table_h table, const char* id)
    {
        Rgba color(4);
        Evas_Object* object = AddRectangle();
        evas_object_color_set(object, 0, 0, 0, 0);
        EXPECT_EQ(uxt_theme_set_color_table(table), UXT_THEME_ERROR_NONE);
        uxt_theme_object_set_color(object, id);
        evas_object_color_get(object, &color[0], &color[1], &color[2], &color[3]);
        evas_object_del(object);
        return color;
    }

    static Rgba ColorClass(const char* id)
    {
        Rgba color(4);
        if (!edje_color_class_get(id, &color[0], &color[1], &color[2], &color[3], nullptr, nullptr,
                                  nullptr, nullptr, nullptr, nullptr, nullptr, nullptr))
            return {};
        return color;
    }

    static std::string TextClass(const char* id)
    {
        const char* font = nullptr;
        Evas_Font_Size size = 0;
        if (!edje_text_class_get(id, &font, &size) || !font)
            return "";
        return std::string(font) + " " + std::to_string(size);
    }

    std::filesystem::path mDirectory;
    int mFiles = 0;
};

constexpr const char* kRed =
    R"(<ColorTable><Color id="test/text" r="255" g="0" b="0" a="128"/></ColorTable>)";
constexpr const char* kBody =
    R"(<FontTable><Font id="test/body" name="Sans" style="Bold" size="30"/></FontTable>)";

using NoTable = OffScreenTest;

// In a process of its own, as a table that is set stays set.
TEST_F(NoTable, GivesNoColourBeforeATableIsSet)
{
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    EXPECT_EXIT(
        {
            int result = uxt_theme_object_set_color(AddRectangle(), "test/text");
            _exit(result == UXT_THEME_ERROR_NO_TABLE && LogLines().size() == 1 ? 0 : 1);
        },
        testing::ExitedWithCode(0), "");
}

TEST_F(UiTheme, MakesColoursColourClassesWhileChangeable)
{
    uxt_theme_set_changeable_ui_enabled(EINA_TRUE);
    uxt_theme_color_table_h table = AddColors(kRed);
    ASSERT_NE(table, nullptr);
    EXPECT_THAT(ColorClass("test/text"), Not(Rgba({255, 0, 0, 128})));
    EXPECT_EQ(uxt_theme_set_color_table(table), UXT_THEME_ERROR_NONE);
    EXPECT_THAT(ColorClass("test/text"), Rgba({255, 0, 0, 128}));
    EXPECT_THAT(LogLines(), IsEmpty());
}

TEST_F(UiTheme, ColoursThePartsOfTheTheme)
{
    Evas_Object* background = elm_bg_add(mWindow);
    evas_object_resize(background, kSize, kSize);
    evas_object_show(background);
    uxt_theme_set_changeable_ui_enabled(EINA_TRUE);
    uxt_theme_set_color_table(AddColors(
        R"(<ColorTable>
            <Color id="/bg/normal/background" r="255" g="0" b="0" a="128"/></ColorTable>)"));
    // Half transparent red over the black of an empty window, as Edje multiplies it itself.
    EXPECT_TRUE(Toolkit::RunUntil([&] { return (PixelAt(180, 180) & 0xffffff) == 0x800000; }))
        << std::hex << PixelAt(180, 180);
}

TEST_F(UiTheme, MakesFontsTextClassesWhileChangeable)
{
    uxt_theme_set_changeable_ui_enabled(EINA_TRUE);
    uxt_theme_font_table_h table = AddFonts(kBody);
    ASSERT_NE(table, nullptr);
    EXPECT_EQ(uxt_theme_set_font_table(table), UXT_THEME_ERROR_NONE);
    EXPECT_EQ(TextClass("test/body"), "Sans:style=Bold 30");
}

TEST_F(UiTheme, NamesFontsWithoutBlanksWhichWouldEndTheNameInAStyle)
{
    uxt_theme_set_changeable_ui_enabled(EINA_TRUE);
    uxt_theme_set_font_table(AddFonts(R"(<FontTable>
            <Font id="test/body" name="Noto Sans Tamil" style="Semi Bold" size="30"/></FontTable>)"));
    EXPECT_EQ(TextClass("test/body"), "NotoSansTamil:style=SemiBold 30");
}

TEST_F(UiTheme, AppliesTablesThatWereSetBeforeOnceChangeableAndTakesThemOffAgain)
{
    uxt_theme_set_color_table(AddColors(kRed));
    uxt_theme_set_font_table(AddFonts(kBody));
    EXPECT_THAT(ColorClass("test/text"), Not(Rgba({255, 0, 0, 128})));
    EXPECT_EQ(TextClass("test/body"), "");

    EXPECT_EQ(uxt_theme_set_changeable_ui_enabled(EINA_TRUE), UXT_THEME_ERROR_NONE);
    EXPECT_THAT(ColorClass("test/text"), Rgba({255, 0, 0, 128}));
    EXPECT_EQ(TextClass("test/body"), "Sans:style=Bold 30");

    EXPECT_EQ(uxt_theme_set_changeable_ui_enabled(EINA_FALSE), UXT_THEME_ERROR_NONE);
    EXPECT_THAT(ColorClass("test/text"), Not(Rgba({255, 0, 0, 128})));
    EXPECT_EQ(TextClass("test/body"), "");
}

TEST_F(UiTheme, ReplacesTheTableBefore)
{
    uxt_theme_set_changeable_ui_enabled(EINA_TRUE);
    uxt_theme_set_color_table(AddColors(kRed));
    uxt_theme_set_font_table(AddFonts(kBody));
    uxt_theme_set_color_table(
        AddColors(R"(<ColorTable><Color id="test/other" r="1" g="2" b="3" a="4"/></ColorTable>)"));
    uxt_theme_set_font_table(AddFonts(
        R"(<FontTable>
            <Font id="test/title" name="Serif" style="Regular" size="40"/></FontTable>)"));
    EXPECT_THAT(ColorClass("test/text"), Not(Rgba({255, 0, 0, 128})));
    EXPECT_THAT(ColorClass("test/other"), Rgba({1, 2, 3, 4}));
    EXPECT_EQ(TextClass("test/body"), "");
    EXPECT_EQ(TextClass("test/title"), "Serif:style=Regular 40");
}

TEST_F(UiTheme, RefusesANullTableAndKeepsTheOneBefore)
{
    uxt_theme_set_changeable_ui_enabled(EINA_TRUE);
    uxt_theme_set_color_table(AddColors(kRed));
    uxt_theme_set_font_table(AddFonts(kBody));
    EXPECT_EQ(uxt_theme_set_color_table(nullptr), UXT_THEME_ERROR_INVALID_PARAMETER);
    EXPECT_EQ(uxt_theme_set_font_table(nullptr), UXT_THEME_ERROR_INVALID_PARAMETER);
    EXPECT_THAT(ColorClass("test/text"), Rgba({255, 0, 0, 128}));
    EXPECT_EQ(TextClass("test/body"), "Sans:style=Bold 30");
    EXPECT_THAT(LogLines(), ElementsAre(HasSubstr("table is null"), HasSubstr("table is null")));
}

TEST_F(UiTheme, GivesAnObjectThePremultipliedColourOfACode)
{
    EXPECT_THAT(ColorFor(AddColors(R"(<ColorTable>
        <Color id="test/text" r="255" g="100" b="0" a="128"/></ColorTable>)"),
                         "test/text"),
                Rgba({128, 50, 0, 128}));
}

TEST_F(UiTheme, LeavesAnObjectAloneWhenTheCodeIsUnknown)
{
    EXPECT_THAT(ColorFor(AddColors(kRed), "test/none"), Rgba({0, 0, 0, 0}));
    EXPECT_EQ(uxt_theme_object_set_color(AddRectangle(), "test/none"),
              UXT_THEME_ERROR_UNKNOWN_CODE);
    EXPECT_EQ(uxt_theme_object_set_color(nullptr, "test/text"), UXT_THEME_ERROR_INVALID_PARAMETER);
    EXPECT_EQ(uxt_theme_object_set_color(AddRectangle(), nullptr),
              UXT_THEME_ERROR_INVALID_PARAMETER);
    EXPECT_THAT(LogLines(), SizeIs(4));
}

TEST_F(UiTheme, TakesTheLastOfEntriesWithTheSameId)
{
    EXPECT_THAT(ColorFor(AddColors(R"(<ColorTable>
        <Color id="test/text" r="255" g="0" b="0" a="255"/>
        <Color id="test/text" r="0" g="255" b="0" a="255"/></ColorTable>)"),
                         "test/text"),
                Rgba({0, 255, 0, 255}));
    EXPECT_THAT(LogLines(), ElementsAre(AllOf(HasSubstr(".xml:3: "), HasSubstr("last"))));
}

TEST_F(UiTheme, AcceptsEntriesThatAreNotEmptyCommentsAndAnEmptyTable)
{
    EXPECT_THAT(ColorFor(AddColors(R"(<?xml version="1.0"?><!-- colours --><ColorTable>
        <Color id='test/text' r='1' g='2' b='3' a='255'> </Color></ColorTable>)"),
                         "test/text"),
                Rgba({1, 2, 3, 255}));
    EXPECT_NE(AddColors("<ColorTable/>"), nullptr);
    EXPECT_NE(AddColors("<ColorTable></ColorTable>"), nullptr);
    EXPECT_THAT(LogLines(), IsEmpty());
}

struct BadEntry
{
    const char* name;
    const char* entry;
    const char* line;
};

std::string NameOf(const testing::TestParamInfo<BadEntry>& info)
{
    return info.param.name;
}

class BadColor : public UiTheme, public testing::WithParamInterface<BadEntry>
{
};

TEST_P(BadColor, IsLeftOutWithOneLineAndTheOthersCount)
{
    std::string text = std::string("<ColorTable>\n") + GetParam().entry +
                       R"(<Color id="test/good" r="0" g="0" b="255" a="255"/></ColorTable>)";
    uxt_theme_color_table_h table = AddColors(text);
    ASSERT_NE(table, nullptr);
    EXPECT_THAT(LogLines(), ElementsAre(AllOf(HasSubstr(".xml:2: "), HasSubstr(GetParam().line))));
    EXPECT_THAT(ColorFor(table, "test/good"), Rgba({0, 0, 255, 255}));
    EXPECT_THAT(ColorFor(table, "test/bad"), Rgba({0, 0, 0, 0}));
}

INSTANTIATE_TEST_SUITE_P(
    Tables, BadColor,
    testing::Values(
        BadEntry{"NoId", R"(<Color r="1" g="1" b="1" a="1"/>)", "id is missing"},
        BadEntry{"NoAttributes", "<Color/>", "id is missing"},
        BadEntry{"EmptyId", R"(<Color id="" r="1" g="1" b="1" a="1"/>)", "1 to 255"},
        BadEntry{"NoBlue", R"(<Color id="test/bad" r="1" g="1" a="1"/>)", "b is missing"},
        BadEntry{"TooBright", R"(<Color id="test/bad" r="256" g="1" b="1" a="1"/>)", "0 to 255"},
        BadEntry{"Negative", R"(<Color id="test/bad" r="-1" g="1" b="1" a="1"/>)", "0 to 255"},
        BadEntry{"Huge", R"(<Color id="test/bad" r="99999999999999" g="1" b="1" a="1"/>)",
                 "0 to 255"},
        BadEntry{"NoNumber", R"(<Color id="test/bad" r="red" g="1" b="1" a="1"/>)", "\"red\""},
        BadEntry{"NumberAndMore", R"(<Color id="test/bad" r="1" g="1x" b="1" a="1"/>)", "\"1x\""},
        BadEntry{"EmptyNumber", R"(<Color id="test/bad" r="1" g="1" b="1" a=""/>)", "a is \"\""},
        BadEntry{"Entity", R"(<Color id="test/bad" r="&#49;" g="1" b="1" a="1"/>)", "\"&#49;\""},
        BadEntry{"OtherElement", R"(<Font id="test/bad" name="Sans"/>)", "\"Font\""}),
    NameOf);

class BadFont : public UiTheme, public testing::WithParamInterface<BadEntry>
{
};

TEST_P(BadFont, IsLeftOutWithOneLineAndTheOthersCount)
{
    std::string text = std::string("<FontTable>\n") + GetParam().entry +
                       R"(<Font id="test/good" name="Sans" style="Bold" size="9"/></FontTable>)";
    uxt_theme_font_table_h table = AddFonts(text);
    ASSERT_NE(table, nullptr);
    EXPECT_THAT(LogLines(), ElementsAre(AllOf(HasSubstr(".xml:2: "), HasSubstr(GetParam().line))));
    uxt_theme_set_font_table(table);
    uxt_theme_set_changeable_ui_enabled(EINA_TRUE);
    EXPECT_EQ(TextClass("test/good"), "Sans:style=Bold 9");
    EXPECT_EQ(TextClass("test/bad"), "");
}

INSTANTIATE_TEST_SUITE_P(
    Tables, BadFont,
    testing::Values(
        BadEntry{"NoName", R"(<Font id="test/bad" style="Bold" size="9"/>)", "name is missing"},
        BadEntry{"NoStyle", R"(<Font id="test/bad" name="Sans" size="9"/>)", "style is missing"},
        BadEntry{"NoSize", R"(<Font id="test/bad" name="Sans" style="Bold"/>)", "size is missing"},
        BadEntry{"SizeZero", R"(<Font id="test/bad" name="Sans" style="Bold" size="0"/>)",
                 "1 to 500"},
        BadEntry{"SizeTooLarge", R"(<Font id="test/bad" name="Sans" style="Bold" size="501"/>)",
                 "1 to 500"},
        BadEntry{"ColonInName", R"(<Font id="test/bad" name="Sans:x" style="Bold" size="9"/>)",
                 "without :"}),
    NameOf);

struct BadFile
{
    const char* name;
    const char* text;
    const char* line;
};

class BadTable : public UiTheme, public testing::WithParamInterface<BadFile>
{
};

TEST_P(BadTable, IsNullWithOneLine)
{
    EXPECT_EQ(AddColors(GetParam().text), nullptr);
    EXPECT_THAT(LogLines(), ElementsAre(HasSubstr(GetParam().line)));
}

INSTANTIATE_TEST_SUITE_P(
    Tables, BadTable,
    testing::Values(BadFile{"Empty", "", "breaks off"},
                    BadFile{"NoXml", "colours, please", "breaks off"},
                    BadFile{"OtherTable", "<FontTable/>", "\"FontTable\""},
                    BadFile{"OtherRoot", "<html><ColorTable/></html>", "\"html\""},
                    BadFile{"OpenTag", "<ColorTable><Color id=\"x", "breaks off"},
                    BadFile{"OpenRoot", "<ColorTable>", "breaks off"}),
    [](const auto& info) { return info.param.name; });

TEST_F(UiTheme, KeepsTheEntriesBeforeXmlThatBreaksOff)
{
    std::string whole(kRed);
    uxt_theme_color_table_h table = AddColors(whole.substr(0, whole.find("</ColorTable>")) + "<Co");
    ASSERT_NE(table, nullptr);
    EXPECT_THAT(LogLines(), ElementsAre(HasSubstr("breaks off after 1 entries")));
    EXPECT_THAT(ColorFor(table, "test/text"), Rgba({128, 0, 0, 128}));
}

class BadAttributes : public UiTheme, public testing::WithParamInterface<const char*>
{
};

TEST_P(BadAttributes, LeaveTheirEntryOutWithOneLine)
{
    uxt_theme_color_table_h table =
        AddColors(std::string("<ColorTable><Color ") + GetParam() +
                  R"(/><Color id="test/text" r="255" g="0" b="0" a="255"/></ColorTable>)");
    ASSERT_NE(table, nullptr);
    EXPECT_THAT(LogLines(), ElementsAre(HasSubstr("NAME=\"VALUE\"")));
    EXPECT_THAT(ColorFor(table, "test/text"), Rgba({255, 0, 0, 255}));
}

INSTANTIATE_TEST_SUITE_P(Tables, BadAttributes,
                         testing::Values(R"(="1")", R"(=r="1")", "id", "id=", "id=x", R"(a b="1")",
                                         R"('a'="1")", R"(a&b="1")"));

TEST_F(UiTheme, ReadsNoDocumentTypeAndNoEntity)
{
    std::string secret = Write("255");
    uxt_theme_color_table_h table =
        AddColors("<!DOCTYPE ColorTable [<!ENTITY e SYSTEM \"" + secret + "\">]>\n<ColorTable>" +
                  R"(<Color id="test/bad" r="&e;" g="0" b="0" a="255"/></ColorTable>)");
    ASSERT_NE(table, nullptr);
    EXPECT_THAT(ColorFor(table, "test/bad"), Rgba({0, 0, 0, 0}));
    EXPECT_THAT(LogLines(), ElementsAre(HasSubstr("document type"), HasSubstr("\"&e;\""),
                                        HasSubstr("colour code")));
}

TEST_F(UiTheme, WritesNoControlCharactersOfAFileIntoTheLog)
{
    AddColors("<ColorTable><Color id=\"test/bad\" r=\"1\nforged\x1b[31m\" g=\"1\" b=\"1\" a=\"1\"/>"
              "</ColorTable>");
    EXPECT_THAT(LogLines(), ElementsAre(HasSubstr(R"("1\x0aforged\x1b[31m")")));
}

TEST_F(UiTheme, IsNullWithOneLineForAFileThatCannotBeRead)
{
    EXPECT_EQ(uxt_theme_add_color_table(nullptr), nullptr);
    EXPECT_EQ(uxt_theme_add_color_table((mDirectory / "none.xml").c_str()), nullptr);
    EXPECT_EQ(uxt_theme_add_font_table(mDirectory.c_str()), nullptr);
    std::string fifo = mDirectory / "fifo";
    ASSERT_EQ(mkfifo(fifo.c_str(), 0600), 0);
    EXPECT_EQ(uxt_theme_add_font_table(fifo.c_str()), nullptr);
    EXPECT_THAT(LogLines(),
                ElementsAre(HasSubstr("path is null"), HasSubstr("No such file"),
                            HasSubstr("not a regular file"), HasSubstr("not a regular file")));
}

TEST_F(UiTheme, AcceptsAFileOfOneMebibyteAndNoMore)
{
    constexpr std::size_t kLimit = 1024 * 1024;
    std::string text(kRed);
    text.insert(text.find("<Color id"), std::string(kLimit - text.size(), ' '));
    EXPECT_NE(AddColors(text), nullptr);
    EXPECT_THAT(LogLines(), IsEmpty());
    EXPECT_EQ(AddColors(text + "\n"), nullptr);
    EXPECT_THAT(LogLines(), ElementsAre(HasSubstr("at most 1048576")));
}

TEST_F(UiTheme, LeavesOutAnEntryOfUnreasonableLength)
{
    EXPECT_NE(AddColors("<ColorTable><Color id=\"" + std::string(100000, 'x') +
                        R"(" r="1" g="1" b="1" a="1"/></ColorTable>)"),
              nullptr);
    EXPECT_THAT(LogLines(), ElementsAre(HasSubstr("4096 bytes")));
}

} // namespace
