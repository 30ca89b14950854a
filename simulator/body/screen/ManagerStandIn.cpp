#include "body/screen/ManagerStandIn.h"

#include <Ecore_X.h>
#include <Elementary.h>

namespace
{
// Only one client may redirect requests for the root's children: the manager.
bool HasManager()
{
    Ecore_X_Window_Attributes root{};
    ecore_x_window_attributes_get(ecore_x_window_root_first_get(), &root);
    return (root.event_mask.all & ECORE_X_EVENT_MASK_WINDOW_MANAGE) != 0;
}
} // namespace

ManagerStandIn::ManagerStandIn(Evas_Object* window) : mWindow(window)
{
    if (elm_win_xwindow_get(window) == 0)
        return;
    mShownHandler = ecore_event_handler_add(ECORE_X_EVENT_WINDOW_SHOW, SShownCB, this);
    mPropertyHandler = ecore_event_handler_add(ECORE_X_EVENT_WINDOW_PROPERTY, SPropertyCB, this);
}

ManagerStandIn::~ManagerStandIn()
{
    if (!mShownHandler)
        return;
    ecore_event_handler_del(mPropertyHandler);
    ecore_event_handler_del(mShownHandler);
}

void ManagerStandIn::Manage() const
{
    const Ecore_X_Window window = elm_win_xwindow_get(mWindow);
    if (ecore_x_icccm_state_get(window) != ECORE_X_WINDOW_STATE_HINT_NORMAL && !HasManager())
        ecore_x_icccm_state_set(window, ECORE_X_WINDOW_STATE_HINT_NORMAL);
}

void ManagerStandIn::Centre() const
{
    int screenWidth = 0;
    int screenHeight = 0;
    int width = 0;
    int height = 0;
    ecore_x_window_size_get(ecore_x_window_root_first_get(), &screenWidth, &screenHeight);
    evas_object_geometry_get(mWindow, nullptr, nullptr, &width, &height);
    evas_object_move(mWindow, (screenWidth - width) / 2, (screenHeight - height) / 2);
}

Eina_Bool ManagerStandIn::SShownCB(void* data, int /*type*/, void* event)
{
    const auto* manager = static_cast<ManagerStandIn*>(data);
    const Ecore_X_Window window = elm_win_xwindow_get(manager->mWindow);
    if (static_cast<Ecore_X_Event_Window_Show*>(event)->win != window || HasManager())
        return ECORE_CALLBACK_PASS_ON;
    manager->Centre();
    ecore_x_window_focus(window);
    manager->Manage();
    return ECORE_CALLBACK_PASS_ON;
}

Eina_Bool ManagerStandIn::SPropertyCB(void* data, int /*type*/, void* event)
{
    const auto* manager = static_cast<ManagerStandIn*>(data);
    const auto* change = static_cast<Ecore_X_Event_Window_Property*>(event);
    if (change->win == elm_win_xwindow_get(manager->mWindow) &&
        change->atom == ECORE_X_ATOM_WM_STATE)
        manager->Manage();
    return ECORE_CALLBACK_PASS_ON;
}
