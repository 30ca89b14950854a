#ifndef TESTS_PORT_OFF_SCREEN_H
#define TESTS_PORT_OFF_SCREEN_H

#include "support/Toolkit.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

/// A watch's window of 360 by 360 pixels on the off-screen engine, a fresh one for every test, and
/// the gestures on it. Input goes through the real event queue.
class OffScreenTest : public testing::Test
{
protected:
    void SetUp() override;
    void TearDown() override;

    static constexpr int kSize = Toolkit::kSide;

    /// Ends the toolkit and starts it anew, between a TearDown() and a SetUp().
    static void RestartToolkit();

    /// A shown rectangle of the whole window.
    Evas_Object* AddRectangle();
    /// A shown scroller over the whole window with content of a size, laid out.
    Evas_Object* AddScroller(int contentWidth, int contentHeight, const char* style = "default");

    /// Each gesture returns when the whole event queue has been worked off.
    static void PressKey(const char* keyname);
    static void ReleaseKey(const char* keyname);
    static void TurnWheel(int notches, unsigned int timestamp = 0, int direction = 0);
    static void DeliverEvents();

    /// The pixel of the window's picture as it now is, 0xAARRGGBB.
    unsigned int PixelAt(int x, int y) const;

    /// The lines of the watch port's log since the test began.
    static const std::vector<std::string>& LogLines();

    Evas_Object* mWindow = nullptr;
    Evas* mCanvas = nullptr;
};

#endif
