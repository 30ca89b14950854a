#ifndef SIMULATOR_COMMON_WINDOW_H
#define SIMULATOR_COMMON_WINDOW_H

#include <Evas.h>
#include <functional>
#include <string>
#include <utility>

/**
 * The one window of a program of the watch, of a size that stays unless SetResizable() is called.
 * It is deleted with this object.
 */
class Window
{
public:
    using Callback = std::function<void()>;
    using SizeCallback = std::function<void(int width, int height)>;

    /** @param name The window's class, and its title where one is shown. */
    Window(const char* name, const std::string& title, int side);
    ~Window();
    Window(const Window&) = delete;
    Window& operator=(const Window&) = delete;

    Evas* GetCanvas() const;

    /** The toolkit's window, owned by this object. */
    Evas_Object* GetObject() const { return mWindow; }

    /** Sets what to do once, when the first frame is drawn. */
    void OnDrawn(Callback onDrawn) { mOnDrawn = std::move(onDrawn); }

    void Show();

    /**
     * Lets the window have any size.
     *
     * @param leastSide In both directions.
     * @param onResized Called with each new size.
     */
    void SetResizable(int leastSide, SizeCallback onResized);

    /** @param image Owned by the canvas; its pixels are taken as they are now. */
    void SetIcon(Evas_Object* image);

    /** Sets what to do when the window is closed; the window stays. */
    void OnClose(Callback onClose) { mOnClose = std::move(onClose); }

    /** Raises the window above all others. */
    void Raise();

private:
    static void SResizedCB(void* data, Evas* canvas, Evas_Object* object, void* event);
    static void SDrawnCB(void* data, Evas* canvas, void* event);
    static void SCloseCB(void* data, Evas_Object* object, void* event);

    Evas_Object* const mWindow;
    SizeCallback mOnResized;
    Callback mOnDrawn;
    Callback mOnClose;
};

#endif
