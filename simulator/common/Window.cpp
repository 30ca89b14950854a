#include "common/Window.h"

#include <Elementary.h>
#include <stdexcept>

namespace
{
Evas_Object* AddWindow(const char* name, const std::string& title, int side)
{
    Evas_Object* window = elm_win_add(nullptr, name, ELM_WIN_BASIC);
    if (!window)
        throw std::runtime_error("no window on the display");
    elm_win_title_set(window, title.c_str());
    evas_object_size_hint_min_set(window, side, side);
    evas_object_size_hint_max_set(window, side, side);
    evas_object_resize(window, side, side);
    return window;
}
} // namespace

Window::Window(const char* name, const std::string& title, int side)
    : mWindow(AddWindow(name, title, side))
{
    evas_object_smart_callback_add(mWindow, "delete,request", SCloseCB, this);
    evas_event_callback_add(GetCanvas(), EVAS_CALLBACK_RENDER_POST, SDrawnCB, this);
}

Window::~Window()
{
    evas_event_callback_del_full(GetCanvas(), EVAS_CALLBACK_RENDER_POST, SDrawnCB, this);
    evas_object_event_callback_del_full(mWindow, EVAS_CALLBACK_RESIZE, SResizedCB, this);
    evas_object_del(mWindow);
}

Evas* Window::GetCanvas() const
{
    return evas_object_evas_get(mWindow);
}

void Window::Show()
{
    evas_object_show(mWindow);
}

void Window::SetResizable(int leastSide, SizeCallback onResized)
{
    mOnResized = std::move(onResized);
    evas_object_size_hint_min_set(mWindow, leastSide, leastSide);
    evas_object_size_hint_max_set(mWindow, -1, -1);
    evas_object_event_callback_add(mWindow, EVAS_CALLBACK_RESIZE, SResizedCB, this);
}

void Window::SetIcon(Evas_Object* image)
{
    elm_win_icon_object_set(mWindow, image);
}

void Window::Raise()
{
    elm_win_raise(mWindow);
}

void Window::SResizedCB(void* data, Evas* /*canvas*/, Evas_Object* object, void* /*event*/)
{
    int width = 0;
    int height = 0;
    evas_object_geometry_get(object, nullptr, nullptr, &width, &height);
    static_cast<Window*>(data)->mOnResized(width, height);
}

void Window::SDrawnCB(void* data, Evas* canvas, void* /*event*/)
{
    auto* window = static_cast<Window*>(data);
    evas_event_callback_del_full(canvas, EVAS_CALLBACK_RENDER_POST, SDrawnCB, window);
    if (window->mOnDrawn)
        window->mOnDrawn();
}

void Window::SCloseCB(void* data, Evas_Object* /*object*/, void* /*event*/)
{
    const Callback& onClose = static_cast<Window*>(data)->mOnClose;
    if (onClose)
        onClose();
}
