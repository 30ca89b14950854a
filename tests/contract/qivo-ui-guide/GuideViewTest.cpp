#include "qivo-ui-guide/GuideView.h"

#include "common/DirtyMemory.h"
#include "common/RotaryEventManager.h"
#include "qivo-ui-guide/GuideViewFixture.h"

using QivoUi::GuideView;
using QivoUi::RotaryEventManager;

namespace
{

class GuideViewTest : public GuideViewFixture
{
protected:
    /** Everything that the page's making is recorded as. */
    Lines Creation()
    {
        return {
            "elm_layout_add(window)",
            "elm_layout_file_set(layout1, 'RES/edje/qivoui.edj', 'tutorial/scroller')",
            "evas_object_size_hint_weight_set(layout1, 1, 1)",
            "evas_object_show(layout1)",
            "elm_scroller_add(layout1)",
            "elm_object_style_set(scroller1, 'effect')",
            "elm_scroller_loop_set(scroller1, false, false)",
            "evas_object_size_hint_weight_set(scroller1, 1, 1)",
            "evas_object_size_hint_align_set(scroller1, -1, -1)",
            "elm_object_scroll_lock_x_set(scroller1, true)",
            "elm_object_scroll_lock_y_set(scroller1, false)",
            "elm_object_part_content_set(layout1, 'scroller', scroller1)",
            "evas_object_smart_callback_add(scroller1, 'scroll', GuideView::SOnScrollCB, view)",
            "evas_object_show(scroller1)",
            "eext_circle_object_scroller_add(scroller1, null)",
            "eext_circle_object_scroller_policy_set(circle1, 2, 2)",
            "warn(ActivateRotateEvent) object :" + Address(Platform::ActivatedObject()),
            "eext_rotary_object_event_activated_set(circle1, true)",
            "evas_object_event_callback_add(circle1, 19, "
            "RotaryEventManager::SViewObjectDeleteCB, manager)",
            "elm_box_add(scroller1)",
            "elm_box_horizontal_set(box1, false)",
            "elm_box_homogeneous_set(box1, false)",
            "elm_object_part_content_set(scroller1, null, box1)",
            "evas_object_show(box1)",
            "elm_layout_add(box1)",
            "elm_layout_file_set(layout2, 'RES/edje/qivoui.edj', 'tutorial/page/guide')",
            "evas_object_size_hint_weight_set(layout2, 1, 1)",
            "evas_object_size_hint_align_set(layout2, -1, -1)",
            "evas_object_show(layout2)",
            "elm_object_mirrored_automatic_set(layout2, false)",
            "elm_object_mirrored_set(layout2, false)",
            "elm_image_add(layout2)",
            "elm_image_file_set(image1, 'RES/edje/qivoui.edj', 'pay_payment_help_image01.png')",
            "evas_object_size_hint_align_set(image1, -1, -1)",
            "evas_object_size_hint_weight_set(image1, 1, 1)",
            "elm_object_part_content_set(layout2, 'help_image', image1)",
            "elm_image_add(layout2)",
            "elm_image_file_set(image2, 'RES/edje/qivoui.edj', 'pay_homescreen_guide.png')",
            "evas_object_size_hint_align_set(image2, -1, -1)",
            "evas_object_size_hint_weight_set(image2, 1, 1)",
            "elm_object_part_content_set(layout2, 'arrow_image', image2)",
            "elm_object_signal_emit(layout2, 'show_arrow', '*')",
            kDgettext,
            "elm_object_part_text_set(layout2, 'help_text', 'Press and hold')",
            "elm_box_pack_end(box1, layout2)",
        };
    }

    /** As far as the second layout, which is not made. */
    Lines CreationWithoutPage()
    {
        Lines lines = Creation();
        lines.resize(25);
        lines.push_back("error(CreateLayout) elm_layout_add failed.");
        return lines;
    }
};

TEST_F(GuideViewTest, StartsWithoutWidgetsAndWithTheArrowVisible)
{
    InDirtyMemory<GuideView> view;

    EXPECT_EQ(view->mGuideLayout, nullptr);
    EXPECT_EQ(view->mScroller, nullptr);
    EXPECT_EQ(view->mBox, nullptr);
    EXPECT_TRUE(view->mIsArrowVisible);
    EXPECT_EQ(view->mLayout, nullptr);
    EXPECT_EQ(view->mViewEventListener, nullptr);
    EXPECT_EQ(view->mNaviFramItemDataPtr, nullptr);
    EXPECT_EQ(Recorder::Take(), Lines());
}

TEST_F(GuideViewTest, BuildsThePageStepByStep)
{
    Evas_Object* layout = mView.CreateLayout(mWindow);

    EXPECT_EQ(Recorder::Take(), Creation());
    EXPECT_EQ(Recorder::NameOf(layout), "layout1");
    EXPECT_EQ(Recorder::NameOf(mView.mScroller), "scroller1");
    EXPECT_EQ(Recorder::NameOf(mView.mBox), "box1");
    EXPECT_EQ(Recorder::NameOf(mView.mGuideLayout), "layout2");
    EXPECT_TRUE(mView.mIsArrowVisible);
}

TEST_F(GuideViewTest, ReturnsARecordOfTheOuterLayoutAlone)
{
    const std::shared_ptr<QivoUi::NaviFrameItemData> record = mView.CreateViewImpl(mWindow);

    EXPECT_EQ(Recorder::Take(), Creation());
    ASSERT_TRUE(record);
    EXPECT_EQ(record.use_count(), 1);
    EXPECT_EQ(Recorder::NameOf(record->mViewLayout), "layout1");
    EXPECT_EQ(record->mReserved, nullptr);
    EXPECT_EQ(record->mTitle, "");
    EXPECT_EQ(record->mStateListener, nullptr);
}

TEST_F(GuideViewTest, RefusesANullParent)
{
    EXPECT_EQ(mView.CreateViewImpl(nullptr), nullptr);

    EXPECT_EQ(Recorder::Take(), Lines({"error(CreateViewImpl) [Failed] Invalid parent"}));
}

TEST_F(GuideViewTest, MakesARecordWithoutALayoutWhenTheOuterLayoutFails)
{
    Recorder::Fail("elm_layout_add");

    const std::shared_ptr<QivoUi::NaviFrameItemData> record = mView.CreateViewImpl(mWindow);

    EXPECT_EQ(Recorder::Take(),
              Lines({"elm_layout_add(window)", "error(CreateLayout) elm_layout_add failed."}));
    EXPECT_EQ(Recorder::TimesMade().count("app_get_resource_path"), 0U);
    ASSERT_TRUE(record);
    EXPECT_EQ(record->mViewLayout, nullptr);
    EXPECT_EQ(mView.mScroller, nullptr);
    EXPECT_EQ(mView.mBox, nullptr);
    EXPECT_EQ(mView.mGuideLayout, nullptr);
}

TEST_F(GuideViewTest, LeavesItsWidgetsUnderTheParentWhenThePageFails)
{
    Recorder::Fail("elm_layout_add", 2);

    EXPECT_EQ(mView.CreateLayout(mWindow), nullptr);

    EXPECT_EQ(Recorder::Take(), CreationWithoutPage());
    EXPECT_EQ(mView.mGuideLayout, nullptr);
    EXPECT_EQ(elm_object_content_get(mView.mScroller), mView.mBox);
    Evas_Object* outerLayout = elm_object_parent_widget_get(mView.mScroller);
    EXPECT_EQ(Recorder::NameOf(outerLayout), "layout1");
    EXPECT_EQ(elm_object_part_content_get(outerLayout, "scroller"), mView.mScroller);
    EXPECT_EQ(elm_object_parent_widget_get(outerLayout), mWindow);
}

TEST_F(GuideViewTest, MakesARecordWithoutALayoutWhenThePageFails)
{
    Recorder::Fail("elm_layout_add", 2);

    const std::shared_ptr<QivoUi::NaviFrameItemData> record = mView.CreateViewImpl(mWindow);

    ASSERT_TRUE(record);
    EXPECT_EQ(record->mViewLayout, nullptr);
}

TEST_F(GuideViewTest, KeepsTheFormerPageWhenAnotherFails)
{
    mView.CreateLayout(mWindow);
    Evas_Object* page = mView.mGuideLayout;
    Recorder::Fail("elm_layout_add", 2);

    mView.CreateLayout(mWindow);

    EXPECT_EQ(mView.mGuideLayout, page);
}

TEST_F(GuideViewTest, IgnoresThemeFilesThatCannotBeLoaded)
{
    Recorder::Fail("elm_layout_file_set", 1);
    Recorder::Fail("elm_layout_file_set", 2);

    EXPECT_EQ(Recorder::NameOf(mView.CreateLayout(mWindow)), "layout1");

    EXPECT_EQ(Recorder::Take(), Creation());
}

TEST_F(GuideViewTest, ResolvesTheThemeFileOnceForBothLayouts)
{
    Recorder::Fail("app_get_resource_path", 1);

    mView.CreateLayout(mWindow);

    EXPECT_EQ(
        Recorder::TakeOnly({"elm_layout_file_set", "elm_image_file_set"}),
        Lines({"elm_layout_file_set(layout1, '', 'tutorial/scroller')",
               "elm_layout_file_set(layout2, '', 'tutorial/page/guide')",
               "elm_image_file_set(image1, 'RES/edje/qivoui.edj', 'pay_payment_help_image01.png')",
               "elm_image_file_set(image2, 'RES/edje/qivoui.edj', 'pay_homescreen_guide.png')"}));
}

TEST_F(GuideViewTest, AsksForALayoutEvenUnderNothingAndWithoutItForNoThemeFile)
{
    Recorder::Fail("elm_layout_add");

    EXPECT_EQ(mView.CreateLayout(nullptr), nullptr);

    EXPECT_EQ(Recorder::Take(),
              Lines({"elm_layout_add(null)", "error(CreateLayout) elm_layout_add failed."}));
    EXPECT_EQ(Recorder::TimesMade().count("app_get_resource_path"), 0u);
}

TEST_F(GuideViewTest, PutsImagesThatCannotBeMadeIntoTheirPartsAsNull)
{
    Recorder::Fail("elm_image_file_set", 1);
    Recorder::Fail("elm_image_file_set", 2);

    EXPECT_EQ(Recorder::NameOf(mView.CreateLayout(mWindow)), "layout1");

    EXPECT_EQ(Recorder::TakeOnly({"error(", "elm_object_part_content_set(layout2", "elm_box_pack"}),
              Lines({"error(MakeImageObject) image Path is wrong : pay_payment_help_image01.png",
                     "elm_object_part_content_set(layout2, 'help_image', null)",
                     "error(MakeImageObject) image Path is wrong : pay_homescreen_guide.png",
                     "elm_object_part_content_set(layout2, 'arrow_image', null)",
                     "elm_box_pack_end(box1, layout2)"}));
}

TEST_F(GuideViewTest, GivesTheCircleScrollerTheSurfaceThatThereIs)
{
    RotaryEventManager::GetInstance();
    RotaryEventManager::CreateCircleSurface(mWindow);

    mView.CreateLayout(mWindow);

    EXPECT_EQ(Recorder::TakeOnly({"eext_circle_object"}),
              Lines({"eext_circle_object_scroller_add(scroller1, surface1)",
                     "eext_circle_object_scroller_policy_set(circle1, 2, 2)"}));
}

TEST_F(GuideViewTest, MakesTheRotaryManagerBeforeItAsksForTheSurface)
{
    RotaryEventManager::Destroy();
    // The manager forgets a surface that was there before it.
    RotaryEventManager::CreateCircleSurface(mWindow);

    mView.CreateLayout(mWindow);

    EXPECT_EQ(Recorder::TakeOnly({"eext_circle_object_scroller_add"}),
              Lines({"eext_circle_object_scroller_add(scroller1, null)"}));
}

TEST_F(GuideViewTest, TakesTheSameStepsWithoutAScroller)
{
    Recorder::Fail("elm_scroller_add");

    mView.CreateLayout(mWindow);

    EXPECT_EQ(Recorder::TakeOnly({"elm_scroller_", "elm_object_part_content_set", "eext_"}),
              Lines({"elm_scroller_add(layout1)", "elm_scroller_loop_set(null, false, false)",
                     "elm_object_part_content_set(layout1, 'scroller', null)",
                     "eext_circle_object_scroller_add(null, null)",
                     "eext_circle_object_scroller_policy_set(null, 2, 2)",
                     "elm_object_part_content_set(null, null, null)"}));
}

TEST_F(GuideViewTest, TakesTheSameStepsWithoutABox)
{
    Recorder::Fail("elm_box_add");

    mView.CreateLayout(mWindow);

    EXPECT_EQ(
        Recorder::TakeOnly({"elm_box_", "elm_object_part_content_set", "elm_layout_add"}),
        Lines({"elm_layout_add(window)",
               "elm_object_part_content_set(layout1, 'scroller', scroller1)",
               "elm_box_add(scroller1)", "elm_box_horizontal_set(null, false)",
               "elm_box_homogeneous_set(null, false)",
               "elm_object_part_content_set(scroller1, null, null)", "elm_layout_add(null)"}));
}

TEST_F(GuideViewTest, GoesOnWithoutACircleScroller)
{
    Recorder::Fail("eext_circle_object_scroller_add");

    EXPECT_EQ(Recorder::NameOf(mView.CreateLayout(mWindow)), "layout1");

    EXPECT_EQ(
        Recorder::TakeOnly({"eext_", "warn(", "error(", "elm_box_add"}),
        Lines({"eext_circle_object_scroller_add(scroller1, null)",
               "eext_circle_object_scroller_policy_set(null, 2, 2)", "elm_box_add(scroller1)"}));
    EXPECT_TRUE(RotaryEventManager::GetInstance()->mRotaryEventDataList.empty());
}

TEST_F(GuideViewTest, PutsItsCircleScrollerOnTopOfTheRotaryStack)
{
    mView.CreateLayout(mWindow);

    EXPECT_EQ(Recorder::NameOf(Platform::ActivatedObject()), "circle1");
    const auto& stack = RotaryEventManager::GetInstance()->mRotaryEventDataList;
    ASSERT_EQ(stack.size(), 1U);
    EXPECT_EQ(Recorder::NameOf(stack.back()->mViewObject), "circle1");
    EXPECT_EQ(stack.back()->mEventListener, nullptr);
}

TEST_F(GuideViewTest, LeavesThePageUnmirroredForALanguageFromRightToLeft)
{
    mView.CreateLayout(mWindow);
    elm_config_mirrored_set(EINA_TRUE);

    EXPECT_FALSE(elm_object_mirrored_get(mView.mGuideLayout));
    EXPECT_TRUE(elm_object_mirrored_get(mView.mScroller));
    elm_config_mirrored_set(EINA_FALSE);
}

TEST_F(GuideViewTest, LeavesItsWidgetsAloneWhenItGoes)
{
    auto view = std::make_unique<GuideView>();
    view->CreateViewImpl(mWindow);
    Recorder::Take();

    view.reset();

    EXPECT_EQ(Recorder::Take(), Lines());
}

} // namespace
