#include "harness/Toolkit.h"
#include <Edje.h>

namespace
{

/** The theme file that the guide's view draws itself with. */
class GuideThemeTest : public ToolkitTest
{
protected:
    void SetUp() override
    {
        ToolkitTest::SetUp();
        mFile = Platform::ResourceDirectory() + "edje/qivoui.edj";
    }

    /** A shown layout of the group, as large as the screen. */
    Evas_Object* AddLayout(const char* group)
    {
        Evas_Object* layout = elm_layout_add(mWindow);
        EXPECT_TRUE(elm_layout_file_set(layout, mFile.c_str(), group));
        evas_object_resize(layout, 360, 360);
        evas_object_show(layout);
        return layout;
    }

    bool TakesContent(Evas_Object* layout, const char* part)
    {
        Evas_Object* content = evas_object_rectangle_add(evas_object_evas_get(mWindow));
        return elm_layout_content_set(layout, part, content) &&
               elm_layout_content_get(layout, part) == content;
    }

    /** How much of an object its clippers let through, 255 for all of it. */
    static int Alpha(const Evas_Object* object)
    {
        int least = 255;
        for (; object; object = evas_object_clip_get(object))
        {
            int alpha = 0;
            evas_object_color_get(object, nullptr, nullptr, nullptr, &alpha);
            least = std::min(least, alpha);
        }
        return least;
    }

    std::string mFile;
};

TEST_F(GuideThemeTest, HasEveryGroupOfTheView)
{
    for (const char* group : {"tutorial/scroller", "tutorial/page/guide", "tutorial/pad",
                              "pay_payment_help_image01.png", "pay_homescreen_guide.png"})
    {
        EXPECT_TRUE(edje_file_group_exists(mFile.c_str(), group)) << group;
    }
}

TEST_F(GuideThemeTest, TakesTheScroller)
{
    EXPECT_TRUE(TakesContent(AddLayout("tutorial/scroller"), "scroller"));
}

TEST_F(GuideThemeTest, TakesTheImagesAndTheTextOfThePage)
{
    Evas_Object* page = AddLayout("tutorial/page/guide");

    EXPECT_TRUE(TakesContent(page, "help_image"));
    EXPECT_TRUE(TakesContent(page, "arrow_image"));
    EXPECT_TRUE(elm_layout_text_set(page, "help_text", "a<br>b"));
    EXPECT_STREQ(elm_layout_text_get(page, "help_text"), "a<br>b");
}

TEST_F(GuideThemeTest, GivesThePadAHeight)
{
    int height = 0;
    edje_object_size_min_calc(elm_layout_edje_get(AddLayout("tutorial/pad")), nullptr, &height);
    EXPECT_GT(height, 0);
}

TEST_F(GuideThemeTest, MakesThePageLongerThanTheScreen)
{
    Evas_Object* page = AddLayout("tutorial/page/guide");
    elm_layout_text_set(page, "help_text", "a<br>b<br>c");
    int height = 0;
    edje_object_size_min_calc(elm_layout_edje_get(page), nullptr, &height);
    EXPECT_GT(height, 360);
}

TEST_F(GuideThemeTest, LoadsBothImages)
{
    for (const char* group : {"pay_payment_help_image01.png", "pay_homescreen_guide.png"})
    {
        const Evas_Object* image =
            edje_object_part_object_get(elm_layout_edje_get(AddLayout(group)), "image");
        int width = 0;
        int height = 0;
        evas_object_image_size_get(image, &width, &height);
        EXPECT_GT(width, 0) << group;
        EXPECT_GT(height, 0) << group;
        EXPECT_EQ(evas_object_image_load_error_get(image), EVAS_LOAD_ERROR_NONE) << group;
    }
}

TEST_F(GuideThemeTest, ShowsTheArrowAtFirst)
{
    Evas_Object* page = AddLayout("tutorial/page/guide");
    Evas_Object* arrow = evas_object_rectangle_add(evas_object_evas_get(mWindow));
    elm_layout_content_set(page, "arrow_image", arrow);
    edje_object_calc_force(elm_layout_edje_get(page));

    EXPECT_TRUE(evas_object_visible_get(arrow));
    EXPECT_EQ(Alpha(arrow), 255);
}

TEST_F(GuideThemeTest, FadesTheArrowOutAndIn)
{
    Evas_Object* page = AddLayout("tutorial/page/guide");
    Evas_Object* arrow = evas_object_rectangle_add(evas_object_evas_get(mWindow));
    Evas_Object* help = evas_object_rectangle_add(evas_object_evas_get(mWindow));
    elm_layout_content_set(page, "arrow_image", arrow);
    elm_layout_content_set(page, "help_image", help);

    elm_layout_signal_emit(page, "hide_arrow", "*");
    EXPECT_TRUE(Toolkit::RunUntil([&] { return Alpha(arrow) == 0; }));
    EXPECT_EQ(Alpha(help), 255);

    elm_layout_signal_emit(page, "show_arrow", "*");
    EXPECT_TRUE(Toolkit::RunUntil([&] { return Alpha(arrow) == 255; }));
}

TEST_F(GuideThemeTest, HearsTheArrowsSignalsFromAnySource)
{
    Evas_Object* page = AddLayout("tutorial/page/guide");
    Evas_Object* arrow = evas_object_rectangle_add(evas_object_evas_get(mWindow));
    elm_layout_content_set(page, "arrow_image", arrow);

    elm_layout_signal_emit(page, "hide_arrow", "anyone");
    EXPECT_TRUE(Toolkit::RunUntil([&] { return Alpha(arrow) == 0; }));

    elm_layout_signal_emit(page, "show_arrow", "");
    EXPECT_TRUE(Toolkit::RunUntil([&] { return Alpha(arrow) == 255; }));
}

} // namespace
