#include "qivo-ui-guide/GuideViewController.h"

#include "common/NaviFrame.h"
#include "harness/Toolkit.h"

using QivoUi::GuideViewController;
using QivoUi::NaviFrame;

namespace
{

class GuideViewControllerTest : public ToolkitTest
{
protected:
    void SetUp() override
    {
        ToolkitTest::SetUp();
        Evas_Object* layout = elm_layout_add(mWindow);
        elm_layout_theme_set(layout, "layout", "application", "default");
        NaviFrame::GetInstance()->SetMainWindow(mWindow);
        NaviFrame::GetInstance()->CreateNaviFrame(layout);
        mController = std::make_unique<GuideViewController>();
        Recorder::Name(mController.get(), "controller");
        Recorder::Take();
    }

    void TearDown() override
    {
        // Unlike at the application's end, the widgets go while the controller is there.
        NaviFrame::Destroy();
        evas_object_del(mWindow);
        mWindow = nullptr;
        mController.reset();
        ToolkitTest::TearDown();
    }

    /** The lines that show what the controller itself does, and when. */
    static Lines TakeSteps()
    {
        return Recorder::TakeOnly({"device_", "elm_naviframe_item", "elm_scroller_add", "dgettext",
                                   "elm_box_pack_end", "eext_object_event", "error(",
                                   "elm_object_signal_emit"});
    }

    static Lines Initialization(const std::string& arrow)
    {
        return {
            "device_battery_is_charging()",
            "device_add_callback(2, GuideViewController::DeviceChangedCallback, controller)",
            "elm_scroller_add(layout2)",
            "elm_object_signal_emit(layout3, 'show_arrow', '*')",
            "dgettext('qivo-guide-app', "
            "'MIDS_QIVOG_BODY_PRESS_N_HOLD_BACK_KEY_ON_ANY_SCREEN_ABB')",
            "elm_box_pack_end(box1, layout3)",
            "eext_object_event_callback_add(layout2, 0, BaseView::SLayoutBackCB, ?)",
            "elm_object_signal_emit(layout3, '" + arrow + "', '*')",
        };
    }

    std::unique_ptr<GuideViewController> mController;
};

TEST_F(GuideViewControllerTest, StartsWithoutAView)
{
    EXPECT_EQ(mController->mGuideViewPtr, nullptr);
    EXPECT_EQ(mController->mBaseViewPtr, nullptr);
    EXPECT_EQ(mController->mPopHandlerPtr, nullptr);
    GuideViewController another;
    EXPECT_EQ(Recorder::Take(), Lines());
}

TEST_F(GuideViewControllerTest, BuildsItsViewAndShowsTheArrowWhileNotCharging)
{
    mController->Initialize();

    EXPECT_EQ(TakeSteps(), Initialization("show_arrow"));
    EXPECT_TRUE(mController->mGuideViewPtr->mIsArrowVisible);
}

TEST_F(GuideViewControllerTest, BuildsThePageWithTheArrowAndHidesItThenWhileCharging)
{
    Platform::SetCharging(true);

    mController->Initialize();

    EXPECT_EQ(TakeSteps(), Initialization("hide_arrow"));
    EXPECT_FALSE(mController->mGuideViewPtr->mIsArrowVisible);
}

TEST_F(GuideViewControllerTest, SharesItsViewWithItsBaseAndShowsNothingYet)
{
    mController->Initialize();

    ASSERT_TRUE(mController->mGuideViewPtr);
    EXPECT_EQ(mController->mBaseViewPtr, mController->mGuideViewPtr);
    EXPECT_EQ(mController->mGuideViewPtr.use_count(), 2);
    EXPECT_EQ(mController->mGuideViewPtr->mViewEventListener, nullptr);
    EXPECT_EQ(mController->mPopHandlerPtr, nullptr);
    EXPECT_EQ(Recorder::NameOf(mController->mGuideViewPtr->GetViewLayout()), "layout2");
    EXPECT_EQ(Recorder::TakeOnly({"elm_naviframe_item"}), Lines());
}

TEST_F(GuideViewControllerTest, ReplacesAnEarlierView)
{
    mController->Initialize();
    const std::weak_ptr<QivoUi::GuideView> earlier = mController->mGuideViewPtr;

    mController->Initialize();

    EXPECT_TRUE(earlier.expired());
    EXPECT_EQ(mController->mBaseViewPtr, mController->mGuideViewPtr);
    EXPECT_EQ(Recorder::NameOf(mController->mGuideViewPtr->GetViewLayout()), "layout4");
}

TEST_F(GuideViewControllerTest, GoesOnWithTheArrowWhenTheChargerCannotBeRead)
{
    for (const int result : {-1, 1})
    {
        Platform::SetCharging(true);
        Recorder::Answer("device_battery_is_charging", result);

        mController->Initialize();

        const Lines steps = TakeSteps();
        EXPECT_EQ(Lines(steps.begin(), steps.begin() + 3),
                  Lines({"device_battery_is_charging()",
                         "error(Initialize) device_battery_is_charging is error",
                         "device_add_callback(2, GuideViewController::DeviceChangedCallback, "
                         "controller)"}));
        EXPECT_TRUE(mController->mGuideViewPtr->mIsArrowVisible);
    }
}

TEST_F(GuideViewControllerTest, TakesAChargingStateThatWasReadInSpiteOfAnError)
{
    Platform::SetCharging(true);
    Recorder::Answer("device_battery_is_charging", -1);
    Platform::FillOutputsOnFailure();

    mController->Initialize();

    EXPECT_FALSE(mController->mGuideViewPtr->mIsArrowVisible);
}

TEST_F(GuideViewControllerTest, GoesOnWhenTheChargerCannotBeFollowed)
{
    for (const int result : {-1, 1})
    {
        Platform::SetCharging(true);
        Recorder::Answer("device_add_callback", result);

        mController->Initialize();

        const Lines steps = TakeSteps();
        EXPECT_EQ(
            Lines(steps.begin(), steps.begin() + 3),
            Lines({"device_battery_is_charging()",
                   "device_add_callback(2, GuideViewController::DeviceChangedCallback, controller)",
                   "error(Initialize) device_add_callback is error"}));
        EXPECT_FALSE(mController->mGuideViewPtr->mIsArrowVisible);
    }
    Platform::UnplugCharger();
    EXPECT_EQ(Recorder::Take(), Lines());
}

TEST_F(GuideViewControllerTest, ReportsBothFailuresAndBuildsTheViewAllTheSame)
{
    Recorder::Answer("device_battery_is_charging", -1);
    Recorder::Answer("device_add_callback", -1);

    mController->Initialize();

    Lines expected = Initialization("show_arrow");
    expected.insert(expected.begin() + 1, "error(Initialize) device_battery_is_charging is error");
    expected.insert(expected.begin() + 3, "error(Initialize) device_add_callback is error");
    EXPECT_EQ(TakeSteps(), expected);
}

TEST_F(GuideViewControllerTest, SetsTheArrowAlsoWhenNoPageCouldBeBuilt)
{
    NaviFrame::Destroy();

    mController->Initialize();

    EXPECT_EQ(Recorder::TakeOnly({"device_", "elm_layout_add", "error(", "elm_object_signal_emit"}),
              Lines({"device_battery_is_charging()",
                     "device_add_callback(2, GuideViewController::DeviceChangedCallback, "
                     "controller)",
                     "error(CreateView) [Failed] Invalid parent",
                     "elm_object_signal_emit(null, 'show_arrow', '*')"}));
    ASSERT_TRUE(mController->mGuideViewPtr);
    EXPECT_EQ(mController->mBaseViewPtr, mController->mGuideViewPtr);
}

TEST_F(GuideViewControllerTest, FollowsTheChargerWithOneSignalAChange)
{
    mController->Initialize();
    Recorder::Take();

    Platform::PlugCharger();
    EXPECT_EQ(Recorder::Take(), Lines({"elm_object_signal_emit(layout3, 'hide_arrow', '*')"}));

    Platform::UnplugCharger();
    EXPECT_EQ(Recorder::Take(), Lines({"elm_object_signal_emit(layout3, 'show_arrow', '*')"}));
}

TEST_F(GuideViewControllerTest, TakesTheChangedValueFromThePointerItself)
{
    mController->Initialize();
    Recorder::Take();
    int zero = 0;

    GuideViewController::DeviceChangedCallback(DEVICE_CALLBACK_BATTERY_CHARGING, &zero,
                                               mController.get());
    EXPECT_EQ(Recorder::Take(), Lines({"elm_object_signal_emit(layout3, 'hide_arrow', '*')"}));

    GuideViewController::DeviceChangedCallback(DEVICE_CALLBACK_BATTERY_CHARGING,
                                               reinterpret_cast<void*>(-1), mController.get());
    EXPECT_EQ(Recorder::Take(), Lines({"elm_object_signal_emit(layout3, 'hide_arrow', '*')"}));
}

TEST_F(GuideViewControllerTest, DoesNotLookAtTheKindOfAChange)
{
    mController->Initialize();
    Recorder::Take();

    GuideViewController::DeviceChangedCallback(static_cast<device_callback_e>(0), nullptr,
                                               mController.get());

    EXPECT_EQ(Recorder::Take(), Lines({"elm_object_signal_emit(layout3, 'show_arrow', '*')"}));
}

TEST_F(GuideViewControllerTest, ReportsAChangeWithoutAController)
{
    GuideViewController::DeviceChangedCallback(DEVICE_CALLBACK_BATTERY_CHARGING, nullptr, nullptr);

    EXPECT_EQ(Recorder::Take(), Lines({"error(DeviceChangedCallback) pThis is NULL"}));
}

TEST_F(GuideViewControllerTest, ReportsAChangeBeforeThereIsAView)
{
    GuideViewController::DeviceChangedCallback(DEVICE_CALLBACK_BATTERY_CHARGING, nullptr,
                                               mController.get());

    EXPECT_EQ(Recorder::Take(), Lines({"error(DeviceChangedCallback) mGuideViewPtr is NULL"}));
}

TEST_F(GuideViewControllerTest, StopsFollowingTheChargerAndKeepsTheView)
{
    mController->Initialize();
    Recorder::Take();

    mController->DeInitialize();

    EXPECT_EQ(Recorder::Take(), Lines({"device_remove_callback(2, "
                                       "GuideViewController::DeviceChangedCallback)"}));
    EXPECT_EQ(mController->mGuideViewPtr.use_count(), 2);
    Platform::PlugCharger();
    EXPECT_EQ(Recorder::Take(), Lines());
}

TEST_F(GuideViewControllerTest, StopsFollowingTheChargerWhenTheLayoutIsDeleted)
{
    mController->Initialize();
    mController->ShowView(true);
    Recorder::Take();

    NaviFrame::Destroy();
    evas_object_del(mWindow);
    mWindow = nullptr;

    EXPECT_EQ(Recorder::TakeOnly({"device_"}),
              Lines({"device_remove_callback(2, GuideViewController::DeviceChangedCallback)"}));
    Platform::PlugCharger();
    Platform::UnplugCharger();
    EXPECT_EQ(Recorder::Take(), Lines());
}

TEST_F(GuideViewControllerTest, ReleasesItsViewAndLeavesTheCallbackWhenItGoes)
{
    mController->Initialize();
    const std::weak_ptr<QivoUi::GuideView> view = mController->mGuideViewPtr;
    Recorder::Take();

    mController.reset();

    EXPECT_TRUE(view.expired());
    EXPECT_EQ(Recorder::TakeOnly({"device_"}), Lines());
}

} // namespace
