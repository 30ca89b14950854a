#ifndef SIMULATOR_BODY_LAYOUT_H
#define SIMULATOR_BODY_LAYOUT_H

/** A point of the window in its pixels, from the upper left corner. */
struct Point
{
    int x;
    int y;
};

/** What of the watch a point of the window belongs to. */
enum class Target
{
    Nothing,
    Screen, ///< the round screen
    Ring,   ///< the bezel ring
    BackKey,
    PowerKey,
    Charger
};

/**
 * Where everything of the watch is in its window.
 *
 * The theme is drawn for a window of 680 by 680 and a screen of 360, which is centred at 370,340.
 * Another size or zoom scales all of it; the screen then lies on whole pixels.
 */
class Layout
{
public:
    /**
     * @param screenSize The watch's screen in its own pixels: 360, 390 or 454.
     * @param zoom How many pixels of the window a pixel of the screen takes in each direction.
     */
    Layout(int screenSize, double zoom);

    int GetScreenSize() const { return mScreenSize; }

    /** The side of the square window. */
    int GetWindowSide() const { return mWindowSide; }

    /** The upper left corner and the side of the square about the round screen. */
    Point GetScreenCorner() const { return mCorner; }
    int GetScreenSide() const { return mSide; }

    Target GetTargetAt(Point point) const;

    /** The screen's pixel at a point of the window; that of its edge for a point beyond it. */
    Point GetScreenPixelAt(Point point) const;

    /** The direction of a point from the ring's centre, in degrees clockwise from the right. */
    double GetAngleAt(Point point) const;

private:
    int mScreenSize;
    double mUnit;
    int mWindowSide;
    int mSide;
    Point mCorner;
};

#endif
