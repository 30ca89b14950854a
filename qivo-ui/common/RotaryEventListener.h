#ifndef QIVO_UI_COMMON_ROTARYEVENTLISTENER_H
#define QIVO_UI_COMMON_ROTARYEVENTLISTENER_H

#include <Evas.h>

namespace QivoUi
{

/**
 * A screen that wants the bezel's detents.
 *
 * Register with RotaryEventManager::RegisterEventListener(), which does not take ownership.
 */
class RotaryEventListener
{
public:
    virtual ~RotaryEventListener() = default;

    /** The object on which the detents are received; owned by the widget tree. */
    virtual Evas_Object* GetRotaryViewObject() = 0;

    /**
     * A detent, as OnRotaryDetent() passes it on.
     *
     * The step is 1 clockwise and -1 counter-clockwise, the time stamp the event's own in
     * milliseconds.
     */
    virtual void OnRotaryEvent(int /*step*/, unsigned int /*timeStamp*/) {}

    /** One detent while this listener is on top; passes it to OnRotaryEvent() by default. */
    virtual void OnRotaryDetent(int step, unsigned int timeStamp)
    {
        OnRotaryEvent(step, timeStamp);
    }
};

} // namespace QivoUi

#endif
