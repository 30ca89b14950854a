#ifndef WATCH_PORT_APPLICATION_ACCESS_ACCESS_BUS_H
#define WATCH_PORT_APPLICATION_ACCESS_ACCESS_BUS_H

#include "application/access/AccessTree.h"
#include "application/access/calls/AccessCall.h"
#include "bus/BusListener.h"

#include <Ecore.h>

namespace WatchPort
{

/**
 * The application on the readers' bus, as long as the object lives: it is in the readers' registry,
 * answers what they ask about the tree, and tells them each change at the end of a turn of the main
 * loop.
 *
 * The toolkit has such a bridge of its own, which swallows every key, waits for its buses without a
 * deadline, lets a reader move widgets about, and knows no text of a layout.
 *
 * A reader can do what Actions.h has, and else changes nothing. A call of another shape, for an
 * object that is gone or of a method that there is not is answered with an error.
 */
class AccessBus : private BusListener
{
public:
    /**
     * @param bus The readers' bus, which outlives the object.
     * @param display Outlives the object.
     */
    AccessBus(BusConnection& bus, const Display& display);
    ~AccessBus() override;

private:
    static DBusHandlerResult SCallCB(DBusConnection* connection, DBusMessage* message, void* data);
    static Eina_Bool SIdleEntererCB(void* data);

    void OnAppeared() override;
    void OnAnswer(DBusMessage* answer) override;
    void OnSignal(DBusMessage* signal) override;
    void OnGone() override;

    void Embed();
    void Update();
    BusMessage Answer(DBusMessage* call);
    BusMessage AnswerFor(DBusMessage* call, const Accessible& object);

    BusConnection& mReaders;
    AccessTree mTree;
    AccessDesktop mDesktop;
    /** The readers' registry knows the application. */
    bool mIsEmbedded = false;
    AccessTree::Objects mTold;
    Ecore_Idle_Enterer* mIdleEnterer = nullptr;
};

} // namespace WatchPort

#endif
