#ifndef SIMULATOR_COMMON_TURNED_PICTURE_H
#define SIMULATOR_COMMON_TURNED_PICTURE_H

#include <Evas.h>

/** A picture of the theme that can be turned about its own centre, wherever it is put. */
class TurnedPicture
{
public:
    /** Adds the group to the canvas, which owns it; this object must go before its canvas. */
    TurnedPicture(Evas* canvas, const char* group);
    ~TurnedPicture();
    TurnedPicture(const TurnedPicture&) = delete;
    TurnedPicture& operator=(const TurnedPicture&) = delete;

    /** To be placed by who holds it. */
    Evas_Object* GetObject() const { return mHolder; }

    /** @param degrees Clockwise from how it was drawn. */
    void Turn(double degrees);

private:
    void Apply();
    static void SMovedCB(void* data, Evas* canvas, Evas_Object* object, void* event);

    // What holds the picture is what is swallowed: a theme takes the turn off its own parts.
    Evas_Object* const mHolder;
    Evas_Object* const mPicture;
    double mDegrees = 0;
};

#endif
