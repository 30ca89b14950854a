#include "common/NaviFrame.h"
#include "common/NaviFrameLowerEventListener.h"
#include "harness/Toolkit.h"
#include "qivo-ui-guide/Application.h"
#include "qivo-ui-guide/application/TestApplication.h"

using QivoUi::AppEventListener;
using QivoUi::Application;
using QivoUi::NaviFrame;
using QivoUi::NaviFrameLowerEventListener;

namespace
{

const Lines kBackGround = {
    "elm_bg_add(window)", "evas_object_size_hint_weight_set(background1, 1, 1)",
    "elm_win_resize_object_add(window, background1)", "evas_object_show(background1)"};
const Lines kNoBackGround = {"elm_bg_add(window)", "evas_object_size_hint_weight_set(null, 1, 1)",
                             "elm_win_resize_object_add(window, null)", "evas_object_show(null)"};
const Lines kConformant = {
    "elm_conformant_add(window)", "evas_object_size_hint_weight_set(conformant1, 1, 1)",
    "elm_win_resize_object_add(window, conformant1)", "evas_object_show(conformant1)"};
const Lines kNoConformant = {"elm_conformant_add(window)",
                             "evas_object_size_hint_weight_set(null, 1, 1)",
                             "elm_win_resize_object_add(window, null)", "evas_object_show(null)",
                             "error(CreateConformant) [Failed] comformant object create"};
const Lines kMainLayout = {"elm_layout_add(conformant1)",
                           "elm_layout_theme_set(layout1, 'layout', 'application', 'default')",
                           "evas_object_size_hint_weight_set(layout1, 1, 1)",
                           "evas_object_show(layout1)",
                           "elm_object_part_content_set(conformant1, null, layout1)"};
const Lines kFrame = {"elm_naviframe_add(layout1)",
                      "elm_object_part_content_set(layout1, 'elm.swallow.content', naviframe1)"};
const Lines kShown = {"ShowView()"};

class ApplicationLayoutTest : public ToolkitTest
{
protected:
    void SetUp() override
    {
        ToolkitTest::SetUp();
        Application::mWindow = mWindow;
    }

    void TearDown() override
    {
        Application::mWindow = nullptr;
        ToolkitTest::TearDown();
    }

    PlainApplication mApp;
};

TEST_F(ApplicationLayoutTest, BuildsTheTreeAndTheFrameThenShowsTheView)
{
    EXPECT_TRUE(mApp.OnSetupLayout());

    EXPECT_EQ(Recorder::Take(), Join({kBackGround, kConformant, kMainLayout, kFrame, kShown}));
    EXPECT_EQ(Recorder::NameOf(mApp.mBackGround), "background1");
    EXPECT_EQ(Recorder::NameOf(mApp.mAppConformant), "conformant1");
    EXPECT_EQ(Recorder::NameOf(mApp.mMainLayout), "layout1");
    EXPECT_EQ(NaviFrame::GetInstance()->mWindow, mWindow);
    EXPECT_EQ(Recorder::NameOf(NaviFrame::GetInstance()->GetParent()), "naviframe1");
}

TEST_F(ApplicationLayoutTest, AnswersWhatTheViewAnswers)
{
    mApp.mIsViewShown = false;

    EXPECT_FALSE(mApp.OnSetupLayout());

    EXPECT_EQ(Recorder::Take().back(), "ShowView()");
}

TEST_F(ApplicationLayoutTest, RegistersTheFrameAsItsListener)
{
    mApp.OnSetupLayout();

    EXPECT_EQ(mApp.mAppEventListenerList, std::list<AppEventListener*>({NaviFrame::GetInstance()}));
}

TEST_F(ApplicationLayoutTest, ReplacesAnEarlierLowerListenerByNone)
{
    int listener = 0;
    NaviFrame::GetInstance()->mNaviFrmaeLowerEventListener =
        reinterpret_cast<NaviFrameLowerEventListener*>(&listener);

    mApp.OnSetupLayout();

    EXPECT_EQ(NaviFrame::GetInstance()->mNaviFrmaeLowerEventListener, nullptr);
}

// Hears when the frame lowers the window, and looks around when its view is to be shown.
class LoweringApplication : public PlainApplication, public NaviFrameLowerEventListener
{
public:
    void OnNaviFrameLowered() override {}

    bool ShowView() override
    {
        NaviFrame* frame = NaviFrame::GetInstance();
        EXPECT_EQ(frame->mNaviFrmaeLowerEventListener, this);
        EXPECT_EQ(mAppEventListenerList, std::list<AppEventListener*>({frame}));
        return PlainApplication::ShowView();
    }
};

TEST_F(ApplicationLayoutTest, HasTheFrameReadyBeforeTheViewIsShown)
{
    LoweringApplication app;
    Application::mWindow = mWindow;

    app.OnSetupLayout();

    EXPECT_EQ(Recorder::TakeOnly({"elm_naviframe", "ShowView"}),
              Lines({"elm_naviframe_add(layout1)", "ShowView()"}));
    NaviFrame::GetInstance()->mNaviFrmaeLowerEventListener = nullptr;
}

TEST_F(ApplicationLayoutTest, StopsWithoutABackGround)
{
    Recorder::Fail("elm_bg_add");

    EXPECT_FALSE(mApp.OnSetupLayout());

    EXPECT_EQ(Recorder::Take(),
              Join({kNoBackGround, {"error(OnSetupLayout) [Failed] Create BackGround"}}));
    EXPECT_EQ(mApp.mBackGround, nullptr);
    EXPECT_EQ(mApp.mAppConformant, nullptr);
    EXPECT_EQ(mApp.mMainLayout, nullptr);
    EXPECT_EQ(NaviFrame::mInstance, nullptr);
    EXPECT_TRUE(mApp.mAppEventListenerList.empty());
}

TEST_F(ApplicationLayoutTest, GoesOnWithoutAConformant)
{
    Evas_Object* layout = elm_layout_add(mWindow);
    Recorder::Take();
    Recorder::Fail("elm_conformant_add");
    Recorder::Answer("elm_layout_add", reinterpret_cast<std::intptr_t>(layout));

    EXPECT_TRUE(mApp.OnSetupLayout());

    Lines mainLayout = kMainLayout;
    mainLayout.front() = "elm_layout_add(null)";
    mainLayout.back() = "elm_object_part_content_set(null, null, layout1)";
    EXPECT_EQ(Recorder::Take(), Join({kBackGround, kNoConformant, mainLayout, kFrame, kShown}));
    EXPECT_EQ(mApp.mAppConformant, nullptr);
}

TEST_F(ApplicationLayoutTest, EndsOnTheToolkitsOwnRefusalOfANullConformant)
{
    Recorder::Fail("elm_conformant_add");

    EXPECT_FALSE(mApp.OnSetupLayout());

    EXPECT_EQ(Recorder::Take(),
              Join({kBackGround,
                    kNoConformant,
                    {"elm_layout_add(null)", "error(CreateMainLayout) Failed elm_layout_add.",
                     "error(OnSetupLayout) [Failed] Create Main Layout"}}));
}

TEST_F(ApplicationLayoutTest, StopsWithoutAMainLayout)
{
    Recorder::Fail("elm_layout_add");

    EXPECT_FALSE(mApp.OnSetupLayout());

    EXPECT_EQ(Recorder::Take(), Join({kBackGround,
                                      kConformant,
                                      {"elm_layout_add(conformant1)",
                                       "error(CreateMainLayout) Failed elm_layout_add.",
                                       "error(OnSetupLayout) [Failed] Create Main Layout"}}));
    EXPECT_EQ(Recorder::NameOf(mApp.mBackGround), "background1");
    EXPECT_EQ(Recorder::NameOf(mApp.mAppConformant), "conformant1");
    EXPECT_EQ(mApp.mMainLayout, nullptr);
    EXPECT_EQ(NaviFrame::mInstance, nullptr);
    EXPECT_TRUE(mApp.mAppEventListenerList.empty());
}

TEST_F(ApplicationLayoutTest, MakesEachPieceByItself)
{
    EXPECT_EQ(Recorder::NameOf(mApp.CreateBackGround(mWindow)), "background1");
    EXPECT_EQ(Recorder::Take(), kBackGround);
    Evas_Object* conformant = mApp.CreateConformant(mWindow);
    EXPECT_EQ(Recorder::NameOf(conformant), "conformant1");
    EXPECT_EQ(Recorder::Take(), kConformant);
    EXPECT_EQ(Recorder::NameOf(mApp.CreateMainLayout(conformant)), "layout1");
    EXPECT_EQ(Recorder::Take(), kMainLayout);

    EXPECT_EQ(mApp.mBackGround, nullptr);
    EXPECT_EQ(mApp.mAppConformant, nullptr);
    EXPECT_EQ(mApp.mMainLayout, nullptr);
}

TEST_F(ApplicationLayoutTest, AsksForEachPieceEvenWithNothingToPutItOn)
{
    Recorder::Fail("elm_bg_add");
    Recorder::Fail("elm_conformant_add");

    EXPECT_EQ(mApp.CreateBackGround(nullptr), nullptr);
    EXPECT_EQ(Recorder::Take(),
              Lines({"elm_bg_add(null)", "evas_object_size_hint_weight_set(null, 1, 1)",
                     "elm_win_resize_object_add(null, null)", "evas_object_show(null)"}));
    EXPECT_EQ(mApp.CreateConformant(nullptr), nullptr);
    EXPECT_EQ(Recorder::Take(),
              Lines({"elm_conformant_add(null)", "evas_object_size_hint_weight_set(null, 1, 1)",
                     "elm_win_resize_object_add(null, null)", "evas_object_show(null)",
                     "error(CreateConformant) [Failed] comformant object create"}));
}

TEST_F(ApplicationLayoutTest, AnswersNullForEachPieceThatCannotBeMade)
{
    Recorder::Fail("elm_bg_add");
    Recorder::Fail("elm_conformant_add");
    Recorder::Fail("elm_layout_add");

    EXPECT_EQ(mApp.CreateBackGround(mWindow), nullptr);
    EXPECT_EQ(Recorder::Take(), kNoBackGround);
    EXPECT_EQ(mApp.CreateConformant(mWindow), nullptr);
    EXPECT_EQ(Recorder::Take(), kNoConformant);
    EXPECT_EQ(mApp.CreateMainLayout(mWindow), nullptr);
    EXPECT_EQ(Recorder::Take(),
              Lines({"elm_layout_add(window)", "error(CreateMainLayout) Failed elm_layout_add."}));
}

} // namespace
