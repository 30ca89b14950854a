#include "page/stage/Ink.h"
#include "page/stage/Page.h"

#include <gtest/gtest.h>

namespace
{

constexpr const char* kMessageId = "MIDS_QIVOG_BODY_PRESS_N_HOLD_BACK_KEY_ON_ANY_SCREEN_ABB";

/// Texts that a translator should not write, and the page bears all the same.
class EdgeText : public testing::TestWithParam<int>
{
protected:
    size_t Show(const std::string& text)
    {
        mPage.SetTranslation(text);
        mPage.ScrollToTop();
        return mPage.Lines().size();
    }

    // What the reader sees, without markup.
    std::string Seen() const
    {
        char* text = evas_textblock_text_markup_to_utf8(
            nullptr, elm_object_part_text_get(mPage.Layout(), "help_text"));
        std::string seen = text;
        free(text);
        return seen;
    }

    void ExpectReadable()
    {
        for (size_t line = 0; line < mPage.Lines().size(); ++line)
        {
            mPage.BringToMiddle(mPage.Lines()[line].Middle());
            const Box place = mPage.Lines()[line];
            EXPECT_NEAR(place.Middle(), GetParam() / 2, 2) << line;
            EXPECT_LE(Ink::Reach(mPage.Look(), place.top, place.bottom), 0.9) << line;
            EXPECT_GE(place.left, mPage.PartBox("help_text").left);
            EXPECT_LE(place.right, mPage.PartBox("help_text").right);
        }
    }

    Page mPage{GetParam()};
};

TEST_P(EdgeText, WithoutALineFeedBreaksWhereItMust)
{
    EXPECT_EQ(Show("Press and hold the Back key on any screen to open Qivo."), 4U);
    ExpectReadable();
}

TEST_P(EdgeText, ASecondLineFeedIsABlank)
{
    EXPECT_EQ(Show("Hold\nany\nkey"), 2U);
    ExpectReadable();
    EXPECT_EQ(Show("Hold\nany key"), 2U);
}

TEST_P(EdgeText, AnAmpersandShowsTheLineBreakAsText)
{
    Show("Hold & open\nQivo.");
    EXPECT_EQ(Seen(), "Hold & open<br>Qivo.");
    ExpectReadable();
}

TEST_P(EdgeText, WithoutACatalogueTheMessageIdIsBroken)
{
    EXPECT_GT(Show(kMessageId), 2U);
    EXPECT_EQ(Seen(), kMessageId);
    ExpectReadable();
}

TEST_P(EdgeText, AWordLongerThanALineIsBroken)
{
    EXPECT_GT(Show(std::string(200, 'W')), 10U);
    ExpectReadable();
}

TEST_P(EdgeText, AVeryLongTextCanBeReadToItsEnd)
{
    std::string text;
    for (int word = 0; word < 150; ++word)
        text += "Qivo ";
    EXPECT_GT(Show(text), 30U);
    ExpectReadable();
}

TEST_P(EdgeText, AnEmptyTextLeavesThePicture)
{
    const Picture before = mPage.Look();
    Show(" ");
    const Picture after = mPage.Look();
    EXPECT_NE(after, before);
    EXPECT_TRUE(Ink::Within(after, 0, mPage.PartBox("help_image").bottom));
    EXPECT_FALSE(Ink::Within(after, mPage.PartBox("help_text").top, GetParam()));
}

INSTANTIATE_TEST_SUITE_P(OnScreenOf, EdgeText, testing::ValuesIn(Page::Sides()),
                         testing::PrintToStringParamName());

} // namespace
