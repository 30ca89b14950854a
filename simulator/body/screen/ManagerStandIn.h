#ifndef SIMULATOR_BODY_SCREEN_MANAGER_STAND_IN_H
#define SIMULATOR_BODY_SCREEN_MANAGER_STAND_IN_H

#include <Ecore.h>
#include <Evas.h>

/**
 * Stands in for the window manager on an X display that has none: puts a window in the middle,
 * gives it the focus, and sets the state that says it is shown, without which the toolkit draws
 * nothing.
 *
 * The window stays an ordinary one: a manager that starts later manages it. When a manager ends,
 * the stand-in takes over again.
 */
class ManagerStandIn
{
public:
    /** @param window The toolkit's; must outlive this object. An off-screen one needs nothing. */
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
