#ifndef SIMULATOR_BODY_PICTURE_LAYOUT_H
#define SIMULATOR_BODY_PICTURE_LAYOUT_H

/** A point of the window in its pixels, from the upper left corner. */
struct Point
{
    int x;
    int y;
};

/** The part of the watch at a point of the window. */
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
 * The theme is drawn for a square of 680 by 680 and a screen of 360 with its centre at 370,340. In
 * a window of another size the square is as large as fits, in the middle; the screen is on whole
 * pixels.
 */
class Layout
{
public:
    /**
     * @param screenSize The watch's screen in its own pixels: 360, 390 or 454.
     * @param width Of the window in pixels, greater than 0; so is its height.
     */
    Layout(int screenSize, int width, int height);

    /** The side of the square in which a pixel of the screen is one of the window. */
    static int GetUsualSide(int screenSize);

    int GetScreenSize() const { return mScreenSize; }

    int GetWindowWidth() const { return mWidth; }
    int GetWindowHeight() const { return mHeight; }

    /** The upper left corner and the side of the square that holds the watch. */
    Point GetOrigin() const { return mOrigin; }
    int GetWatchSide() const { return mWatchSide; }

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
    int mWidth;
    int mHeight;
    int mWatchSide;
    double mUnit;
    Point mOrigin;
    int mSide;
    Point mCorner;
};

#endif
