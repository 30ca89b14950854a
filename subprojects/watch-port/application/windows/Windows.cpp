#include "application/windows/Windows.h"

#include "application/windows/LeftWindows.h"

#include <algorithm>
#include <string_view>

namespace WatchPort
{

namespace
{
bool IsWindow(const Ecore_Evas* canvas, Display::Kind kind)
{
    const std::string_view engine = ecore_evas_engine_name_get(canvas);
    switch (kind)
    {
    case Display::Kind::X11:
        return engine == "software_x11" || engine == "opengl_x11";
    case Display::Kind::Wayland:
        // There the pointer's picture is a canvas of this engine too, but no window's.
        return engine.rfind("wayland_", 0) == 0 && WindowObject(canvas);
    default:
        return true;
    }
}
} // namespace

std::vector<Ecore_Evas*> ListWindows(const Display& display)
{
    std::vector<Ecore_Evas*> windows;
    Eina_List* list = ecore_evas_ecore_evas_list_get();
    for (; list; list = eina_list_remove_list(list, list))
    {
        auto* window = static_cast<Ecore_Evas*>(eina_list_data_get(list));
        if (IsWindow(window, display.GetKind()))
            windows.push_back(window);
    }
    return windows;
}

Evas_Object* WindowObject(const Ecore_Evas* window)
{
    // The name under which the toolkit keeps it.
    return static_cast<Evas_Object*>(ecore_evas_data_get(window, "elm_win"));
}

bool IsHidden(const Ecore_Evas* window)
{
    const Evas_Object* object = WindowObject(window);
    return !object || !evas_object_visible_get(object);
}

void SizeWindows(const Display& display)
{
    for (Ecore_Evas* window : ListWindows(display))
    {
        int width = 0;
        int height = 0;
        ecore_evas_request_geometry_get(window, nullptr, nullptr, &width, &height);
        // Toolkit windows begin with one pixel.
        if (width <= 1 && height <= 1)
            ecore_evas_resize(window, display.GetScreenSize(), display.GetScreenSize());
    }
}

void PresentWindow(const Display& display)
{
    const std::vector<Ecore_Evas*> windows = ListWindows(display);
    const auto window = std::find_if_not(windows.begin(), windows.end(), IsHidden);
    if (window == windows.end())
        return;
    NoteReturn(*window);
    if (display.GetKind() == Display::Kind::X11)
        ecore_evas_activate(*window);
}

} // namespace WatchPort
