#include "common/util/ImageUtil.h"

#include "harness/Toolkit.h"

using QivoUi::ImageUtil;

namespace
{

constexpr const char* kHelpImage = "pay_payment_help_image01.png";
constexpr const char* kHelpImageInTheme = "'RES/edje/qivoui.edj', 'pay_payment_help_image01.png'";

class ImageUtilTest : public ToolkitTest
{
protected:
    void SetUp() override
    {
        ToolkitTest::SetUp();
        mThemePath = Platform::ResourceDirectory() + "edje/qivoui.edj";
    }

    // What making an image is recorded as that is loaded from there, and what comes after.
    static Lines Loading(const std::string& fileAndGroup, const Lines& then = {})
    {
        Lines lines = {"elm_image_add(window)", "elm_image_file_set(image1, " + fileAndGroup + ")",
                       "evas_object_size_hint_align_set(image1, -1, -1)",
                       "evas_object_size_hint_weight_set(image1, 1, 1)"};
        lines.insert(lines.end(), then.begin(), then.end());
        return lines;
    }

    // Whether the widget of this name is there still, under the window.
    bool IsUnderTheWindow(const std::string& name)
    {
        Evas_Object* object = evas_object_bottom_get(evas_object_evas_get(mWindow));
        while (object && Recorder::NameOf(object) != name)
        {
            object = evas_object_above_get(object);
        }
        return object && elm_object_parent_widget_get(object) == mWindow;
    }

    std::string mThemePath;
};

TEST_F(ImageUtilTest, LoadsAGroupOfTheAppsOwnThemeWithoutAThemeFile)
{
    Evas_Object* image = ImageUtil::MakeImageObject(mWindow, kHelpImage, "", false, "");

    EXPECT_EQ(Recorder::NameOf(image), "image1");
    EXPECT_EQ(Recorder::Take(), Loading(kHelpImageInTheme));
}

TEST_F(ImageUtilTest, LoadsAGroupOfTheGivenThemeFile)
{
    Recorder::Answer("elm_image_file_set", EINA_TRUE);

    Evas_Object* image = ImageUtil::MakeImageObject(mWindow, "group", "", false, "other/theme.edj");

    EXPECT_EQ(Recorder::NameOf(image), "image1");
    EXPECT_EQ(Recorder::Take(), Loading("'other/theme.edj', 'group'"));
}

TEST_F(ImageUtilTest, LoadsAFileWithItsPathUnchangedAndNoGroup)
{
    Recorder::Answer("elm_image_file_set", EINA_TRUE);

    Evas_Object* image = ImageUtil::MakeImageObject(mWindow, "some/picture.png", "", true, "");

    EXPECT_EQ(Recorder::NameOf(image), "image1");
    EXPECT_EQ(Recorder::Take(), Loading("'some/picture.png', null"));
}

TEST_F(ImageUtilTest, LoadsAFileEvenWhenAThemeFileIsGiven)
{
    Recorder::Answer("elm_image_file_set", EINA_TRUE);

    ImageUtil::MakeImageObject(mWindow, "picture.png", "", true, "theme.edj");

    EXPECT_EQ(Recorder::TakeOnly({"elm_image_file_set"}),
              Lines({"elm_image_file_set(image1, 'picture.png', null)"}));
}

TEST_F(ImageUtilTest, TintsALoadedImageLast)
{
    Evas_Object* image = ImageUtil::MakeImageObject(mWindow, kHelpImage, "qivo/text", false, "");

    EXPECT_EQ(Recorder::NameOf(image), "image1");
    EXPECT_EQ(Recorder::Take(),
              Loading(kHelpImageInTheme, {"uxt_theme_object_set_color(image1, 'qivo/text')"}));
}

TEST_F(ImageUtilTest, GivesNothingForAnImageThatCannotBeLoaded)
{
    EXPECT_EQ(ImageUtil::MakeImageObject(mWindow, "no such group", "code", false, ""), nullptr);

    EXPECT_EQ(Recorder::Take(),
              Lines({"elm_image_add(window)",
                     "elm_image_file_set(image1, 'RES/edje/qivoui.edj', 'no such group')",
                     "error(MakeImageObject) image Path is wrong : no such group"}));
}

TEST_F(ImageUtilTest, GivesNothingForAFileThatCannotBeLoaded)
{
    EXPECT_EQ(ImageUtil::MakeImageObject(mWindow, "no/such.png", "", true, ""), nullptr);

    EXPECT_EQ(Recorder::Take(),
              Lines({"elm_image_add(window)", "elm_image_file_set(image1, 'no/such.png', null)",
                     "error(MakeImageObject) image Path is wrong : no/such.png"}));
}

TEST_F(ImageUtilTest, LeavesAnImageThatCannotBeLoadedUnderItsParent)
{
    ImageUtil::MakeImageObject(mWindow, "no such group", "", false, "");

    EXPECT_TRUE(IsUnderTheWindow("image1"));
}

TEST_F(ImageUtilTest, GivesNothingForAColourCodeThatIsNotAccepted)
{
    Recorder::Answer("uxt_theme_object_set_color", 1);

    EXPECT_EQ(ImageUtil::MakeImageObject(mWindow, kHelpImage, "no such code", false, ""), nullptr);

    EXPECT_EQ(Recorder::Take(),
              Loading(kHelpImageInTheme,
                      {"uxt_theme_object_set_color(image1, 'no such code')",
                       "error(MakeImageObject) Fail to Set Color Code : no such code"}));
    EXPECT_TRUE(IsUnderTheWindow("image1"));
}

TEST_F(ImageUtilTest, TakesANegativeResultOfTheTintAsAFailureToo)
{
    Recorder::Answer("uxt_theme_object_set_color", -1);

    EXPECT_EQ(ImageUtil::MakeImageObject(mWindow, kHelpImage, "code", false, ""), nullptr);
}

TEST_F(ImageUtilTest, GoesOnWithoutAWidget)
{
    Recorder::Fail("elm_image_add");
    Recorder::Answer("elm_image_file_set", EINA_TRUE);

    EXPECT_EQ(ImageUtil::MakeImageObject(mWindow, "group", "", false, "theme.edj"), nullptr);

    EXPECT_EQ(Recorder::Take(),
              Lines({"elm_image_add(window)", "elm_image_file_set(null, 'theme.edj', 'group')",
                     "evas_object_size_hint_align_set(null, -1, -1)",
                     "evas_object_size_hint_weight_set(null, 1, 1)"}));
}

TEST_F(ImageUtilTest, AsksForAWidgetInEveryFormEvenWithoutAParent)
{
    for (int form = 1; form <= 4; ++form)
    {
        Recorder::Fail("elm_image_add", form);
        Recorder::Fail("elm_image_file_set", form);
    }

    EXPECT_EQ(ImageUtil::MakeImageObject(nullptr, "group", "", false, "theme.edj"), nullptr);
    EXPECT_EQ(ImageUtil::MakeImageObject(nullptr, "group", ""), nullptr);
    EXPECT_EQ(ImageUtil::MakeImageObjectWithEdje(nullptr, "theme.edj", "group", ""), nullptr);
    EXPECT_EQ(ImageUtil::MakeImageObjectFromFile(nullptr, "group", ""), nullptr);

    const std::string error = "error(MakeImageObject) image Path is wrong : group";
    EXPECT_EQ(
        Recorder::Take(),
        Lines({"elm_image_add(null)", "elm_image_file_set(null, 'theme.edj', 'group')", error,
               "elm_image_add(null)", "elm_image_file_set(null, 'RES/edje/qivoui.edj', 'group')",
               error, "elm_image_add(null)", "elm_image_file_set(null, 'theme.edj', 'group')",
               error, "elm_image_add(null)", "elm_image_file_set(null, 'group', null)", error}));
}

TEST_F(ImageUtilTest, LooksForTheAppsOwnThemeOnlyWhenItIsNeeded)
{
    Recorder::Answer("elm_image_file_set", EINA_TRUE, 1);
    Recorder::Answer("elm_image_file_set", EINA_TRUE, 2);
    Recorder::Answer("elm_image_file_set", EINA_TRUE, 3);
    Recorder::Fail("app_get_resource_path");

    ImageUtil::MakeImageObject(mWindow, "a.png", "", true, "");
    ImageUtil::MakeImageObject(mWindow, "group", "", false, "theme.edj");
    ImageUtil::MakeImageObject(mWindow, "group", "", false, "");

    EXPECT_EQ(Recorder::TakeOnly({"elm_image_file_set"}),
              Lines({"elm_image_file_set(image1, 'a.png', null)",
                     "elm_image_file_set(image2, 'theme.edj', 'group')",
                     "elm_image_file_set(image3, '', 'group')"}));
}

TEST_F(ImageUtilTest, ShortFormLoadsAGroupOfTheAppsOwnTheme)
{
    Evas_Object* image = ImageUtil::MakeImageObject(mWindow, kHelpImage, "");

    EXPECT_EQ(Recorder::NameOf(image), "image1");
    EXPECT_EQ(Recorder::Take(), Loading(kHelpImageInTheme));
}

TEST_F(ImageUtilTest, ShortFormPassesTheColourCodeOn)
{
    ImageUtil::MakeImageObject(mWindow, kHelpImage, "code");

    EXPECT_EQ(Recorder::TakeOnly({"uxt_"}), Lines({"uxt_theme_object_set_color(image1, 'code')"}));
}

TEST_F(ImageUtilTest, ThemeFormTakesTheFileBeforeTheGroup)
{
    Evas_Object* image =
        ImageUtil::MakeImageObjectWithEdje(mWindow, mThemePath, kHelpImage, "code");

    EXPECT_EQ(Recorder::NameOf(image), "image1");
    EXPECT_EQ(Recorder::Take(),
              Loading(kHelpImageInTheme, {"uxt_theme_object_set_color(image1, 'code')"}));
}

TEST_F(ImageUtilTest, FileFormPassesARelativePathOnUnchanged)
{
    Recorder::Answer("elm_image_file_set", EINA_TRUE);

    Evas_Object* image = ImageUtil::MakeImageObjectFromFile(mWindow, "some/picture.png", "code");

    EXPECT_EQ(Recorder::NameOf(image), "image1");
    EXPECT_EQ(Recorder::Take(),
              Loading("'some/picture.png', null", {"uxt_theme_object_set_color(image1, 'code')"}));
}

} // namespace
