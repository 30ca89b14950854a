#ifndef TESTS_PORT_CIRCLE_SCROLLER_FIXTURE_H
#define TESTS_PORT_CIRCLE_SCROLLER_FIXTURE_H

#include "port/OffScreen.h"

#include "efl_extension.h"

/// Scrollers over the whole window that the bezel moves.
class CircleScrollerFixture : public OffScreenTest
{
protected:
    static constexpr int kStep = kSize / 4;

    static void CountCB(void* data, Evas_Object*, void*) { ++*static_cast<int*>(data); }

    Evas_Object* AddActivated(Evas_Object* scroller, Eext_Circle_Surface* surface = nullptr)
    {
        Evas_Object* circleObject = eext_circle_object_scroller_add(scroller, surface);
        eext_rotary_object_event_activated_set(circleObject, EINA_TRUE);
        return circleObject;
    }

    static int TopOf(Evas_Object* scroller)
    {
        int top = 0;
        elm_scroller_region_get(scroller, nullptr, &top, nullptr, nullptr);
        return top;
    }

    Evas_Object* AddScroller(int contentWidth, int contentHeight)
    {
        Evas_Object* scroller = OffScreenTest::AddScroller(contentWidth, contentHeight);
        evas_object_smart_callback_add(scroller, "scroll,anim,start", CountCB, &mStarts);
        evas_object_smart_callback_add(scroller, "scroll,anim,stop", CountCB, &mStops);
        return scroller;
    }

    /// Turns the bezel and lets the motion come to its end.
    void TurnAndWait(int detents)
    {
        TurnWheel(detents);
        EXPECT_GT(mStarts, mStops);
        EXPECT_TRUE(Toolkit::RunUntil([&] { return mStarts == mStops; }));
    }

    Eext_Circle_Surface* AddSurface()
    {
        mConformant = elm_conformant_add(mWindow);
        evas_object_resize(mConformant, kSize, kSize);
        evas_object_show(mConformant);
        return eext_circle_surface_conformant_add(mConformant);
    }

    Evas_Object* mConformant = nullptr;
    int mStarts = 0;
    int mStops = 0;
};

#endif
