#include "common/NaviFrame.h"
#include "harness/Toolkit.h"
#include "qivo-ui-guide/Application.h"
#include "qivo-ui-guide/application/TestApplication.h"

using QivoUi::Application;
using QivoUi::NaviFrame;

namespace
{

const Lines kAppInfo = {"elm_theme_extension_add(null, 'RES/edje/qivoui.edj')",
                        "elm_app_base_scale_set(1.3)"};
const Lines kWindow = {"elm_win_add(null, 'qivo-guide-app', 0)",
                       "elm_win_title_set(window1, 'qivo-guide-app')",
                       "elm_win_autodel_set(window1, true)", "evas_object_show(window1)",
                       "elm_win_indicator_mode_set(window1, 1)"};
const Lines kTables = {
    "uxt_theme_set_changeable_ui_enabled(true)",
    "uxt_theme_add_color_table('RES/tables/com.velmora.qivo-app_ChangeableColorTable.xml')",
    "uxt_theme_set_color_table(colorTable)",
    "uxt_theme_add_font_table('RES/tables/com.velmora.qivo-app_FontInfoTable.xml')",
    "uxt_theme_set_font_table(fontTable)"};

class ApplicationWindowTest : public ToolkitTest
{
protected:
    void TearDown() override
    {
        evas_object_del(Application::mWindow);
        Application::mWindow = nullptr;
        elm_theme_extension_del(nullptr,
                                (Platform::ResourceDirectory() + "edje/qivoui.edj").c_str());
        elm_app_base_scale_set(1.0);
        ToolkitTest::TearDown();
    }

    PlainApplication mApp;
};

TEST_F(ApplicationWindowTest, CreatesThemeWindowAndTablesInThisOrder)
{
    mApp.OnAppCreateImpl();

    EXPECT_EQ(Recorder::Take(), Join({kAppInfo, kWindow, kTables}));
    EXPECT_EQ(Recorder::NameOf(Application::mWindow), "window1");
    EXPECT_EQ(Recorder::NameOf(mApp.mColorTable), "colorTable");
    EXPECT_EQ(Recorder::NameOf(mApp.mFontTable), "fontTable");
}

TEST_F(ApplicationWindowTest, BuildsNoScreenOnCreation)
{
    mApp.OnAppCreateImpl();

    EXPECT_EQ(mApp.mBackGround, nullptr);
    EXPECT_EQ(mApp.mAppConformant, nullptr);
    EXPECT_EQ(mApp.mMainLayout, nullptr);
    EXPECT_EQ(NaviFrame::mInstance, nullptr);
}

TEST_F(ApplicationWindowTest, LoadsNoTablesWithoutAWindow)
{
    Recorder::Fail("elm_win_add");

    mApp.OnAppCreateImpl();

    EXPECT_EQ(Recorder::Take(),
              Join({kAppInfo,
                    {"elm_win_add(null, 'qivo-guide-app', 0)", "error(CreateWindow) elm_win_add",
                     "error(OnAppCreateImpl) [Failed] Create Window"}}));
    EXPECT_EQ(Application::mWindow, nullptr);
    EXPECT_EQ(mApp.mColorTable, nullptr);
    EXPECT_EQ(mApp.mFontTable, nullptr);
}

TEST_F(ApplicationWindowTest, ReplacesTheWindowByAFailedOne)
{
    mApp.OnAppCreateImpl();
    evas_object_del(Application::mWindow);
    Recorder::Fail("elm_win_add");

    mApp.OnAppCreateImpl();

    EXPECT_EQ(Application::mWindow, nullptr);
}

TEST_F(ApplicationWindowTest, CreatesAWindowWithoutKeepingIt)
{
    Evas_Object* window = mApp.CreateWindow();

    EXPECT_EQ(Recorder::Take(), kWindow);
    EXPECT_EQ(Recorder::NameOf(window), "window1");
    EXPECT_EQ(Application::mWindow, nullptr);
    evas_object_del(window);
}

TEST_F(ApplicationWindowTest, ReportsAWindowThatCannotBeMade)
{
    Recorder::Fail("elm_win_add");

    EXPECT_EQ(mApp.CreateWindow(), nullptr);

    EXPECT_EQ(Recorder::Take(),
              Lines({"elm_win_add(null, 'qivo-guide-app', 0)", "error(CreateWindow) elm_win_add"}));
}

TEST_F(ApplicationWindowTest, SetsTablesThatCouldNotBeAdded)
{
    Recorder::Fail("uxt_theme_add_color_table");
    Recorder::Fail("uxt_theme_add_font_table");

    mApp.LoadColorTable();

    Lines expected = kTables;
    expected[2] = "uxt_theme_set_color_table(null)";
    expected[4] = "uxt_theme_set_font_table(null)";
    EXPECT_EQ(Recorder::Take(), expected);
    EXPECT_EQ(mApp.mColorTable, nullptr);
    EXPECT_EQ(mApp.mFontTable, nullptr);
}

TEST_F(ApplicationWindowTest, NamesTheTablesOfTheWallet)
{
    EXPECT_EQ(mApp.GetColorTablePath(), Platform::ResourceDirectory() +
                                            "tables/com.velmora.qivo-app_ChangeableColorTable.xml");
    EXPECT_EQ(mApp.GetFontTablePath(),
              Platform::ResourceDirectory() + "tables/com.velmora.qivo-app_FontInfoTable.xml");
}

TEST_F(ApplicationWindowTest, GoesOnWithoutAResourceDirectory)
{
    Recorder::Fail("app_get_resource_path", 1);
    Recorder::Fail("app_get_resource_path", 2);
    Recorder::Fail("app_get_resource_path", 3);

    mApp.OnAppCreateImpl();

    Lines expected = Join({kAppInfo, kWindow, kTables});
    expected[0] = "elm_theme_extension_add(null, '')";
    expected[8] = "uxt_theme_add_color_table('')";
    expected[10] = "uxt_theme_add_font_table('')";
    EXPECT_EQ(Recorder::Take(), expected);
}

// Names other tables than the base, and looks whether one is kept already.
class RestyledApplication : public PlainApplication
{
public:
    std::string GetColorTablePath() override { return mColorTable ? "" : "colours"; }
    std::string GetFontTablePath() override { return mColorTable ? "" : "fonts"; }
};

TEST_F(ApplicationWindowTest, LoadsTheTablesThatADerivedApplicationNames)
{
    RestyledApplication app;

    app.LoadColorTable();

    EXPECT_EQ(Recorder::TakeOnly({"uxt_theme_add"}),
              Lines({"uxt_theme_add_color_table('colours')", "uxt_theme_add_font_table('fonts')"}));
}

} // namespace
