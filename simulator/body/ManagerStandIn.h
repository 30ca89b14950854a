#ifndef SIMULATOR_BODY_MANAGER_STAND_IN_H
#define SIMULATOR_BODY_MANAGER_STAND_IN_H

#include <Ecore.h>
#include <Evas.h>

/**
 * Does for a window what a window manager would, on an X display that has none: puts it in the
 * middle, gives it the focus, and states that it is shown, without which the toolkit draws nothing.
 *
 * The window stays an ordinary one. A manager that comes later manages it, and when one goes its
 * work is taken over again.
 */
class ManagerStandIn
{
public:
    /** @param window The toolkit's, which outlives this object; one off screen needs nothing. */
    explicit ManagerStandIn(Evas_Object* window);
    ~ManagerStandIn();
    ManagerStandIn(const ManagerStandIn&) = delete;
    ManagerStandIn& operator=(const ManagerStandIn&) = delete;

private:
    void Manage() const;
    void Centre() const;

    static Eina_Bool SShownCB(void* data, int type, void* event);
    static Eina_Bool SPropertyCB(void* data, int type, void* event);

    Evas_Object* const mWindow;
    Ecore_Event_Handler* mShownHandler = nullptr;
    Ecore_Event_Handler* mPropertyHandler = nullptr;
};

#endif
