#include "qivo-ui-guide/GuideView.h"

#include "common/NaviFrame.h"
#include "qivo-ui-guide/GuideViewFixture.h"

using QivoUi::GuideView;

namespace
{

using GuideViewArrowTest = GuideViewFixture;

TEST_F(GuideViewArrowTest, IsShownAndHiddenWithOneSignalEach)
{
    mView.CreateLayout(mWindow);
    Recorder::Take();

    mView.SetArrowVisible(false);
    EXPECT_FALSE(mView.mIsArrowVisible);
    EXPECT_EQ(Recorder::Take(), Lines({"elm_object_signal_emit(layout2, 'hide_arrow', '*')"}));

    mView.SetArrowVisible(true);
    EXPECT_TRUE(mView.mIsArrowVisible);
    EXPECT_EQ(Recorder::Take(), Lines({"elm_object_signal_emit(layout2, 'show_arrow', '*')"}));
}

TEST_F(GuideViewArrowTest, GetsItsSignalAlsoWhenNothingChanges)
{
    mView.CreateLayout(mWindow);
    Recorder::Take();

    mView.SetArrowVisible(true);

    EXPECT_EQ(Recorder::Take(), Lines({"elm_object_signal_emit(layout2, 'show_arrow', '*')"}));
}

TEST_F(GuideViewArrowTest, GetsItsSignalWithoutAPageToo)
{
    mView.SetArrowVisible(false);

    EXPECT_FALSE(mView.mIsArrowVisible);
    EXPECT_EQ(Recorder::Take(), Lines({"elm_object_signal_emit(null, 'hide_arrow', '*')"}));
}

TEST_F(GuideViewArrowTest, IsHiddenWhileThePageIsBuiltWhenItWasHiddenBefore)
{
    mView.SetArrowVisible(false);
    Recorder::Take();

    mView.CreateViewImpl(mWindow);

    EXPECT_EQ(Recorder::TakeOnly({"elm_object_signal_emit"}),
              Lines({"elm_object_signal_emit(layout2, 'hide_arrow', '*')"}));
    EXPECT_FALSE(mView.mIsArrowVisible);
}

class GuideViewTextTest : public GuideViewFixture
{
protected:
    void SetUp() override
    {
        GuideViewFixture::SetUp();
        mView.CreateLayout(mWindow);
        Recorder::Take();
    }

    Lines ChangeTo(const char* text)
    {
        Translate(text);
        mView.OnLanguageChanged();
        return Recorder::Take();
    }
};

TEST_F(GuideViewTextTest, IsAllThatALanguageChangeReplaces)
{
    EXPECT_EQ(
        ChangeTo("Gedrückt halten"),
        Lines({kDgettext, "elm_object_part_text_set(layout2, 'help_text', 'Gedrückt halten')"}));
}

TEST_F(GuideViewTextTest, ReachesThePage)
{
    ChangeTo("Gedrückt halten");

    EXPECT_STREQ(elm_object_part_text_get(mView.mGuideLayout, "help_text"), "Gedrückt halten");
}

TEST_F(GuideViewTextTest, BreaksTheLineAtTheFirstLineFeedOnly)
{
    EXPECT_EQ(ChangeTo("a\nb\nc"),
              Lines({kDgettext, "elm_object_part_text_set(layout2, 'help_text', 'a<br>b\nc')"}));
}

TEST_F(GuideViewTextTest, StandsAsItIsWithoutAnAmpersand)
{
    EXPECT_EQ(
        ChangeTo("<b>a</b> < \"b\"\r"),
        Lines({kDgettext, "elm_object_part_text_set(layout2, 'help_text', '<b>a</b> < \"b\"\r')"}));
    EXPECT_EQ(ChangeTo(""),
              Lines({kDgettext, "elm_object_part_text_set(layout2, 'help_text', '')"}));
}

TEST_F(GuideViewTextTest, IsConvertedAsAWholeWithAnAmpersand)
{
    EXPECT_EQ(ChangeTo("a\nb & c\nd"),
              Lines({kDgettext, "elm_entry_utf8_to_markup('a<br>b & c\nd')",
                     "elm_object_part_text_set(layout2, 'help_text', "
                     "'a&lt;br&gt;b &amp; c<br/>d')"}));
}

TEST_F(GuideViewTextTest, IsConvertedWithAnAmpersandAtItsStartOrEnd)
{
    EXPECT_EQ(ChangeTo("& a"),
              Lines({kDgettext, "elm_entry_utf8_to_markup('& a')",
                     "elm_object_part_text_set(layout2, 'help_text', '&amp; a')"}));
    EXPECT_EQ(ChangeTo("a&"), Lines({kDgettext, "elm_entry_utf8_to_markup('a&')",
                                     "elm_object_part_text_set(layout2, 'help_text', 'a&amp;')"}));
}

TEST_F(GuideViewTextTest, LeavesTheConvertedTextUnreleased)
{
    static char sMarkup[] = "from nowhere that can be released";
    Recorder::Answer("elm_entry_utf8_to_markup", reinterpret_cast<std::intptr_t>(sMarkup));

    EXPECT_EQ(ChangeTo("a & b"), Lines({kDgettext, "elm_entry_utf8_to_markup('a & b')",
                                        "elm_object_part_text_set(layout2, 'help_text', "
                                        "'from nowhere that can be released')"}));
}

TEST_F(GuideViewTextTest, FollowsTheSameStepsWhileThePageIsBuilt)
{
    Translate("a\nb & c");

    mView.CreateLayout(mWindow);

    EXPECT_EQ(Recorder::TakeOnly({"dgettext", "elm_entry", "elm_object_part_text_set"}),
              Lines({kDgettext, "elm_entry_utf8_to_markup('a<br>b & c')",
                     "elm_object_part_text_set(layout4, 'help_text', "
                     "'a&lt;br&gt;b &amp; c')"}));
}

TEST_F(GuideViewTextTest, IsSetWithoutAPageToo)
{
    GuideView view;
    Translate("text");

    view.OnLanguageChanged();

    EXPECT_EQ(Recorder::Take(),
              Lines({kDgettext, "elm_object_part_text_set(null, 'help_text', 'text')"}));
}

TEST_F(GuideViewTextTest, FollowsTheToolkitsLanguage)
{
    Evas_Object* layout = elm_layout_add(mWindow);
    elm_layout_theme_set(layout, "layout", "application", "default");
    QivoUi::NaviFrame::GetInstance()->CreateNaviFrame(layout);
    GuideView view;
    view.CreateView();
    Recorder::Take();
    Translate("text");

    elm_language_set("C.UTF-8");

    EXPECT_EQ(Recorder::TakeOnly({"dgettext", "elm_object_part_text_set", "elm_object_signal"}),
              Lines({kDgettext, "elm_object_part_text_set(layout5, 'help_text', 'text')"}));
}

class GuideViewScrollTest : public GuideViewFixture
{
protected:
    void SetUp() override
    {
        GuideViewFixture::SetUp();
        mOuterLayout = mView.CreateLayout(mWindow);
        Recorder::Take();
    }

    Lines Scroll()
    {
        evas_object_smart_callback_call(mView.mScroller, "scroll", nullptr);
        return Recorder::Take();
    }

    int CountBoxed() const
    {
        Eina_List* children = elm_box_children_get(mView.mBox);
        const int count = static_cast<int>(eina_list_count(children));
        eina_list_free(children);
        Recorder::Take();
        return count;
    }

    static Lines PadAppended(const std::string& pad)
    {
        return {"elm_layout_add(box1)",
                "elm_layout_file_set(" + pad + ", 'RES/edje/qivoui.edj', 'tutorial/pad')",
                "elm_box_pack_end(box1, " + pad + ")",
                "evas_object_smart_callback_del(scroller1, 'scroll', GuideView::SOnScrollCB)"};
    }

    Evas_Object* mOuterLayout = nullptr;
};

TEST_F(GuideViewScrollTest, AppendsOnePadTheFirstTime)
{
    EXPECT_EQ(Scroll(), PadAppended("layout3"));
    EXPECT_EQ(Scroll(), Lines());
    EXPECT_EQ(CountBoxed(), 2);
}

TEST_F(GuideViewScrollTest, AppendsThePadAfterThePage)
{
    Scroll();

    Eina_List* children = elm_box_children_get(mView.mBox);
    EXPECT_EQ(eina_list_data_get(children), mView.mGuideLayout);
    EXPECT_EQ(Recorder::NameOf(eina_list_last_data_get(children)), "layout3");
    eina_list_free(children);
}

TEST_F(GuideViewScrollTest, TriesAgainWhenThePadCannotBeMade)
{
    Recorder::Fail("elm_layout_add");

    EXPECT_EQ(Scroll(),
              Lines({"elm_layout_add(box1)", "error(SOnScrollCB) elm_layout_add failed."}));
    EXPECT_EQ(CountBoxed(), 1);

    EXPECT_EQ(Scroll(), PadAppended("layout3"));
    EXPECT_EQ(Scroll(), Lines());
}

TEST_F(GuideViewScrollTest, AppendsAPadWhoseThemeCannotBeLoaded)
{
    Recorder::Fail("elm_layout_file_set");

    EXPECT_EQ(Scroll(), PadAppended("layout3"));
}

TEST_F(GuideViewScrollTest, ResolvesTheThemeFileAnew)
{
    Recorder::Fail("app_get_resource_path");

    EXPECT_EQ(Scroll(),
              Lines({"elm_layout_add(box1)", "elm_layout_file_set(layout3, '', 'tutorial/pad')",
                     "elm_box_pack_end(box1, layout3)",
                     "evas_object_smart_callback_del(scroller1, 'scroll', "
                     "GuideView::SOnScrollCB)"}));
}

TEST_F(GuideViewScrollTest, DoesNothingWithoutAView)
{
    GuideView::SOnScrollCB(nullptr, mView.mScroller, nullptr);

    EXPECT_EQ(Recorder::Take(), Lines());
    EXPECT_EQ(CountBoxed(), 1);
}

TEST_F(GuideViewScrollTest, AppendsOnePadWhenTheRealScrollerMoves)
{
    elm_win_resize_object_add(mWindow, mOuterLayout);
    // However short the page is.
    Evas_Object* longer = evas_object_rectangle_add(evas_object_evas_get(mWindow));
    evas_object_size_hint_min_set(longer, 360, 360);
    elm_box_pack_end(mView.mBox, longer);
    const auto height = [&]
    {
        int h = 0;
        elm_scroller_child_size_get(mView.mScroller, nullptr, &h);
        return h;
    };
    ASSERT_TRUE(Toolkit::RunUntil([&] { return height() >= 2 * 360; }));
    EXPECT_EQ(CountBoxed(), 2);

    for (const int y : {20, 40})
    {
        elm_scroller_region_show(mView.mScroller, 0, y, 360, 360);
        const auto position = [&]
        {
            int shown = 0;
            elm_scroller_region_get(mView.mScroller, nullptr, &shown, nullptr, nullptr);
            return shown;
        };
        ASSERT_TRUE(Toolkit::RunUntil([&] { return position() == y; }));
        ASSERT_TRUE(Toolkit::RunUntil([&] { return CountBoxed() > 2; }));
        EXPECT_EQ(CountBoxed(), 3);
    }
}

} // namespace
