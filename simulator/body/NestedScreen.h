#ifndef SIMULATOR_BODY_NESTED_SCREEN_H
#define SIMULATOR_BODY_NESTED_SCREEN_H

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
 * Pixels are fetched when the server reports damage, and only the damaged rectangle; as long as
 * nothing is drawn nothing is sent in either direction.
 */
class NestedScreen
{
public:
    /** Told of a rectangle whose pixels (see GetPixels()) are new. */
    using ChangeCallback = std::function<void(const Eina_Rectangle& area)>;

    /** Told once that the server has gone; nothing is told after it. */
    using GoneCallback = std::function<void()>;

    /**
     * Connects; nothing is told before Start().
     *
     * Throws std::runtime_error, with the display's name, when there is no such server, when its
     * screen has not the size (pixels in each direction) and 24 bits, or an extension is missing.
     */
    NestedScreen(const std::string& display, int size, ChangeCallback onChange,
                 GoneCallback onGone);
    ~NestedScreen();
    NestedScreen(const NestedScreen&) = delete;
    NestedScreen& operator=(const NestedScreen&) = delete;

    /** From now on what changes is told, to begin with the whole screen. */
    void Start();

    int GetSize() const { return mSize; }

    /** All of the screen, row by row, 0x__RRGGBB; the first byte means nothing. */
    const uint32_t* GetPixels() const { return mPixels.get(); }

    /** The finger, at a pixel of the screen. They do nothing when the server has gone. */
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
