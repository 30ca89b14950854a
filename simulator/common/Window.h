#ifndef SIMULATOR_COMMON_WINDOW_H
#define SIMULATOR_COMMON_WINDOW_H

#include <Evas.h>
#include <functional>
#include <utility>

/**
 * The one window of a program of the watch, of a size that stays. It is deleted with this object.
 */
class Window
{
public:
    using Callback = std::function<void()>;

    /** @param name The window's class, and its title where one is shown. */
    Window(const char* name, const char* title, int side);
    ~Window();
    Window(const Window&) = delete;
    Window& operator=(const Window&) = delete;

    Evas* GetCanvas() const;

    /** What is to be done once, when the first frame is drawn. */
    void OnDrawn(Callback onDrawn) { mOnDrawn = std::move(onDrawn); }

    void Show();

    /** What is to be done when the window is closed; the window stays. */
    void OnClose(Callback onClose) { mOnClose = std::move(onClose); }

    /** Puts the window above all others. */
    void Raise();

private:
    static void SDrawnCB(void* data, Evas* canvas, void* event);
    static void SCloseCB(void* data, Evas_Object* object, void* event);

    Evas_Object* const mWindow;
    Callback mOnDrawn;
    Callback mOnClose;
};

#endif
