#include "port/OffScreen.h"
#include "ui-extension/Appearance.h"
#include "ui-extension/Contrast.h"
#include "ui_extension.h"

#include <gmock/gmock.h>

#include <cmath>
#include <filesystem>
#include <fstream>

using WatchPort::Color;
using WatchPort::Contrast;

namespace
{

using Rgba = std::vector<int>;

constexpr const char* kColors = R"(<ColorTable>
    <Color id="test/light" r="128" g="128" b="160" a="200"/>
    <Color id="test/dark" r="60" g="40" b="40" a="255"/></ColorTable>)";
constexpr const char* kFonts =
    R"(<FontTable><Font id="test/body" name="Sans" style="Bold" size="30"/></FontTable>)";

/// What the user asks of all text and colours.
class Appearance : public OffScreenTest
{
protected:
    void SetUp() override
    {
        OffScreenTest::SetUp();
        uxt_theme_set_changeable_ui_enabled(EINA_TRUE);
        uxt_theme_set_color_table(uxt_theme_add_color_table(Write("colors", kColors).c_str()));
        uxt_theme_set_font_table(uxt_theme_add_font_table(Write("fonts", kFonts).c_str()));
    }

    void TearDown() override
    {
        WatchPort::SetTextSize(1.0);
        WatchPort::SetHighContrast(false);
        uxt_theme_set_changeable_ui_enabled(EINA_FALSE);
        for (const std::string& file : mFiles)
            std::filesystem::remove(file);
        OffScreenTest::TearDown();
    }

    std::string Write(const std::string& name, const std::string& text)
    {
        mFiles.push_back(testing::TempDir() + "appearance-" + std::to_string(getpid()) + name);
        std::ofstream(mFiles.back()) << text;
        return mFiles.back();
    }

    Evas_Object* AddLabel()
    {
        Evas_Object* label = elm_label_add(mWindow);
        elm_object_text_set(label, "Qivo");
        evas_object_show(label);
        return label;
    }

    int HeightOf(Evas_Object* label) const
    {
        int height = 0;
        evas_smart_objects_calculate(mCanvas);
        edje_object_size_min_calc(elm_layout_edje_get(label), nullptr, &height);
        return height;
    }

    static int FontSize()
    {
        const char* font = nullptr;
        Evas_Font_Size size = 0;
        edje_text_class_get("test/body", &font, &size);
        return size;
    }

    // Percent and height of a line, as a theme gets them.
    static std::pair<int, int> TextSizeClass()
    {
        std::pair<int, int> least;
        edje_size_class_get(WatchPort::kTextSizeClass, &least.first, &least.second, nullptr,
                            nullptr);
        return least;
    }

    static Rgba ColorClass(const char* id)
    {
        Rgba color(4);
        edje_color_class_get(id, &color[0], &color[1], &color[2], &color[3], nullptr, nullptr,
                             nullptr, nullptr, nullptr, nullptr, nullptr, nullptr);
        return color;
    }

    static Rgba ColorOf(Evas_Object* object)
    {
        Rgba color(4);
        evas_object_color_get(object, &color[0], &color[1], &color[2], &color[3]);
        return color;
    }

    std::vector<std::string> mFiles;
};

double Luminance(const Color& color)
{
    auto light = [](int channel)
    {
        const double value = channel / 255.0;
        return value <= 0.04045 ? value / 12.92 : std::pow((value + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * light(color.r) + 0.7152 * light(color.g) + 0.0722 * light(color.b);
}

TEST_F(Appearance, TextSizeMakesTheFontsOfTheTableLarger)
{
    WatchPort::SetTextSize(1.3);
    EXPECT_EQ(FontSize(), 39);
    WatchPort::SetTextSize(0.8);
    EXPECT_EQ(FontSize(), 24);
    WatchPort::SetTextSize(1.0);
    EXPECT_EQ(FontSize(), 30);
}

TEST_F(Appearance, TextSizeHoldsForATableThatIsSetLater)
{
    WatchPort::SetTextSize(2.0);
    uxt_theme_set_font_table(uxt_theme_add_font_table(Write("later", kFonts).c_str()));
    EXPECT_EQ(FontSize(), 60);
    uxt_theme_set_changeable_ui_enabled(EINA_FALSE);
    uxt_theme_set_changeable_ui_enabled(EINA_TRUE);
    EXPECT_EQ(FontSize(), 60);
}

TEST_F(Appearance, TextSizeHoldsForTheToolkitsTextsWhenATableThatHadThemIsTakenOff)
{
    constexpr char kButtonFont[] = R"(<FontTable>
        <Font id="button" name="Noto Sans" style="Regular" size="30"/></FontTable>)";
    WatchPort::SetTextSize(2.0);
    uxt_theme_set_font_table(uxt_theme_add_font_table(Write("button", kButtonFont).c_str()));
    uxt_theme_set_changeable_ui_enabled(EINA_FALSE);
    const char* font = nullptr;
    Evas_Font_Size size = 0;
    edje_text_class_get("button", &font, &size);
    EXPECT_EQ(size, -200);
}

TEST_F(Appearance, TextSizeStaysInItsRange)
{
    WatchPort::SetTextSize(0.1);
    EXPECT_EQ(FontSize(), 24);
    WatchPort::SetTextSize(HUGE_VAL);
    EXPECT_EQ(FontSize(), 60);
    WatchPort::SetTextSize(NAN);
    EXPECT_EQ(FontSize(), 30);
}

TEST_F(Appearance, TextSizeReachesTheToolkitsOwnTextsShownNowAndLater)
{
    Evas_Object* label = AddLabel();
    const int usual = HeightOf(label);
    WatchPort::SetTextSize(2.0);
    EXPECT_NEAR(HeightOf(label), 2 * usual, 3);
    EXPECT_EQ(HeightOf(AddLabel()), HeightOf(label));
    WatchPort::SetTextSize(1.0);
    EXPECT_EQ(HeightOf(label), usual);
}

TEST_F(Appearance, TextSizeTellsThemesHowHighALineIs)
{
    for (auto [factor, percent, line] :
         {std::tuple(0.8, 80, 45), {1.1, 110, 60}, {1.3, 130, 60}, {1.6, 160, 72}, {2.0, 200, 90}})
    {
        WatchPort::SetTextSize(factor);
        EXPECT_EQ(TextSizeClass(), std::pair(percent, line));
    }
}

TEST_F(Appearance, HighContrastHoldsForTheTablesColoursAndBack)
{
    WatchPort::SetHighContrast(true);
    const Rgba light = ColorClass("test/light");
    EXPECT_GE((Luminance({light[0], light[1], light[2], 255}) + 0.05) / 0.05, 15);
    EXPECT_GT(light[2], light[0]) << "still bluish";
    EXPECT_EQ(light[3], 200);
    const Rgba dark = ColorClass("test/dark");
    EXPECT_GE(1.05 / (Luminance({dark[0], dark[1], dark[2], 255}) + 0.05), 15);
    EXPECT_GT(dark[0], dark[1]) << "still reddish";
    WatchPort::SetHighContrast(false);
    EXPECT_EQ(ColorClass("test/light"), Rgba({128, 128, 160, 200}));
}

TEST_F(Appearance, HighContrastHoldsForColouredObjectsShownNowAndLater)
{
    Evas_Object* before = AddRectangle();
    uxt_theme_object_set_color(before, "test/dark");
    WatchPort::SetHighContrast(true);
    Evas_Object* after = AddRectangle();
    uxt_theme_object_set_color(after, "test/dark");
    EXPECT_LT(ColorOf(before)[0], 60);
    EXPECT_EQ(ColorOf(after), ColorOf(before));
    evas_object_del(after);
    WatchPort::SetHighContrast(false);
    EXPECT_EQ(ColorOf(before), Rgba({60, 40, 40, 255}));
}

TEST_F(Appearance, HighContrastLeavesAColourThatTheApplicationGaveSince)
{
    Evas_Object* object = AddRectangle();
    uxt_theme_object_set_color(object, "test/dark");
    evas_object_color_set(object, 1, 2, 3, 255);
    WatchPort::SetHighContrast(true);
    EXPECT_EQ(ColorOf(object), Rgba({1, 2, 3, 255}));
}

TEST(HighContrast, IsReachedByEveryColour)
{
    for (int grey = 0; grey <= 255; ++grey)
    {
        for (const Color& color : {Color{grey, grey, grey, 255}, Color{grey, 0, 0, 255},
                                   Color{0, grey, 0, 255}, Color{255, grey, 0, 255}})
        {
            const Color high = WatchPort::WithContrast(color, Contrast::High);
            const double luminance = Luminance(high);
            EXPECT_GE(std::max((luminance + 0.05) / 0.05, 1.05 / (luminance + 0.05)), 15)
                << color.r << " " << color.g << " " << color.b;
        }
    }
}

} // namespace
