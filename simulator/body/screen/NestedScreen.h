#ifndef SIMULATOR_BODY_SCREEN_NESTED_SCREEN_H
#define SIMULATOR_BODY_SCREEN_NESTED_SCREEN_H

#include <Ecore.h>
#include <Eina.h>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <xcb/damage.h>
#include <xcb/shm.h>
#include <xcb/xcb.h>

/**
 * The watch's screen: the X server that the applications draw on, over a connection of our own.
 *
 * Pixels are fetched when the server reports damage, and only the damaged rectangle. While nothing
 * is drawn, nothing is sent in either direction.
 */
class NestedScreen
{
public:
    /** Called with a rectangle whose pixels (see GetPixels()) are new. */
    using ChangeCallback = std::function<void(const Eina_Rectangle& area)>;

    /** Called once, when the server has gone; nothing is called after it. */
    using GoneCallback = std::function<void()>;

    /**
     * Connects; nothing is called before Start().
     *
     * Throws std::runtime_error, with the display's name, when there is no such server, its screen
     * has another size (in pixels) or depth than 24 bits, or an extension is missing.
     */
    NestedScreen(const std::string& display, int size, ChangeCallback onChange,
                 GoneCallback onGone);
    ~NestedScreen();
    NestedScreen(const NestedScreen&) = delete;
    NestedScreen& operator=(const NestedScreen&) = delete;

    /** Starts reporting changes, first the whole screen. */
    void Start();

    int GetSize() const { return mSize; }

    /** All of the screen, row by row, 0x__RRGGBB; the first byte is undefined. */
    const uint32_t* GetPixels() const { return mPixels.get(); }

    /** The finger, at a pixel of the screen. These do nothing once the server has gone. */
    void PressTouch(int x, int y);
    void MoveTouch(int x, int y);
    void ReleaseTouch(int x, int y);

private:
    class SharedMemory;

    void RequireExtensions();
    void WatchDamage();
    void Fetch(const Eina_Rectangle& area);
    Eina_Rectangle TakeDamage();
    bool TakeEvents();
    void Update();
    void FakePointer(uint8_t type, uint8_t detail, int x, int y);
    [[noreturn]] void Refuse(const std::string& why) const;

    static Eina_Bool SReadableCB(void* data, Ecore_Fd_Handler* handler);

    const std::string mDisplay;
    const int mSize;
    const ChangeCallback mOnChange;
    const GoneCallback mOnGone;
    const std::unique_ptr<xcb_connection_t, decltype(&xcb_disconnect)> mConnection;
    xcb_window_t mRoot = 0;
    uint8_t mDamageEvent = 0;
    xcb_damage_damage_t mDamage = 0;
    uint32_t mRegion = 0;
    std::unique_ptr<SharedMemory> mShared;
    std::unique_ptr<uint32_t[]> mPixels;
    Ecore_Fd_Handler* mHandler = nullptr;
};

#endif
