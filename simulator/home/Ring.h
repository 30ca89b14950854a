#ifndef SIMULATOR_HOME_RING_H
#define SIMULATOR_HOME_RING_H

/** The side of the screen for which the face is drawn; on another one it is scaled. */
constexpr double kUsualSide = 360;

/** Where a small picture is on the face, and how large. */
struct Place
{
    double x; ///< of its centre
    double y;
    double side;
};

/**
 * The places of applications around the face, on a face of 360: the first at 12 o'clock, then
 * clockwise, at the hours while there are no more than twelve, else closer and smaller. More than
 * kMostPlaces are shown in pages.
 */
class Ring
{
public:
    static constexpr int kMostPlaces = 30;

    /** @param count The number of applications */
    explicit Ring(int count) : mCount(count) {}

    /** The first application on the page of another one. */
    static int GetFirst(int app) { return app / kMostPlaces * kMostPlaces; }

    /** How many are on that page. */
    int GetCountFrom(int first) const;

    /** @param app Its number */
    Place GetPlace(int app) const;

    /** The application that is so many detents further; behind the last comes the first. */
    int GetNext(int app, int detents) const { return ((app + detents) % mCount + mCount) % mCount; }

private:
    int mCount;
};

#endif
