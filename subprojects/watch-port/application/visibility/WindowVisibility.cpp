#include "application/visibility/WindowVisibility.h"

#include "application/visibility/OffScreenSight.h"
#include "application/visibility/WaylandSight.h"
#include "application/visibility/X11Sight.h"
#include "application/windows/LeftWindows.h"
#include "application/windows/Windows.h"

#include <algorithm>
#include <functional>
#include <utility>

namespace WatchPort
{

namespace
{
constexpr double kAwaitSeconds = 5;

// Set on a window that could be seen if the application had not left it.
constexpr char kUncovered[] = "watch-port-uncovered";

std::unique_ptr<Sight> NewSight(const Display& display)
{
    switch (display.GetKind())
    {
    case Display::Kind::X11:
        return std::make_unique<X11Sight>(display);
    case Display::Kind::Wayland:
        return std::make_unique<WaylandSight>(display);
    default:
        return std::make_unique<OffScreenSight>(display);
    }
}
} // namespace

WindowVisibility::WindowVisibility(const Display& display)
    : mDisplay(display), mSight(NewSight(display))
{
    NoteLeaving(display);
}

WindowVisibility::~WindowVisibility()
{
    if (mAwaitTimer)
        ecore_timer_del(mAwaitTimer);
}

void WindowVisibility::Update()
{
    mSight->Update();
    for (Ecore_Evas* window : ListWindows(mDisplay))
    {
        const bool isUncovered = mSight->CanBeSeen(window);
        const bool wasUncovered = ecore_evas_data_get(window, kUncovered) != nullptr;
        if (IsGone(window) && ((isUncovered && !wasUncovered) || mSight->IsAskedFor(window)))
            NoteReturn(window);
        ecore_evas_data_set(window, kUncovered, isUncovered ? window : nullptr);
        NoteGone(window);
    }
}

Ecore_Evas* WindowVisibility::FindVisibleWindow() const
{
    for (Ecore_Evas* window : ListWindows(mDisplay))
    {
        if (IsVisible(window))
            return window;
    }
    return nullptr;
}

bool WindowVisibility::IsVisible(const Ecore_Evas* window) const
{
    return mSight->CanBeSeen(window) && !IsLeft(window);
}

bool WindowVisibility::IsInSight()
{
    Windows shown;
    Windows visible;
    for (const Ecore_Evas* window : ListWindows(mDisplay))
    {
        if (IsVisible(window))
            visible.insert(window);
        if (IsVisible(window) ||
            (!IsHidden(window) && !IsLeft(window) && !ecore_evas_iconified_get(window)))
            shown.insert(window);
    }
    const bool isOneTakenAway =
        !std::includes(shown.begin(), shown.end(), mVisible.begin(), mVisible.end(), std::less<>());
    Windows awaited;
    for (const Ecore_Evas* window : shown)
    {
        if (visible.count(window) == 0 &&
            (isOneTakenAway || mShown.count(window) == 0 || mAwaited.count(window) != 0))
            awaited.insert(window);
    }
    mIsInSight = !visible.empty() || (mIsInSight && !awaited.empty());
    mShown = std::move(shown);
    mVisible = std::move(visible);
    Await(std::move(awaited));
    return mIsInSight;
}

void WindowVisibility::Await(Windows awaited)
{
    const bool isNew = !std::includes(mAwaited.begin(), mAwaited.end(), awaited.begin(),
                                      awaited.end(), std::less<>());
    mAwaited = std::move(awaited);
    if (mAwaitTimer && (isNew || mAwaited.empty()))
        ecore_timer_del(std::exchange(mAwaitTimer, nullptr));
    if (isNew)
        mAwaitTimer = ecore_timer_add(kAwaitSeconds, SAwaitedLongCB, this);
}

Eina_Bool WindowVisibility::SAwaitedLongCB(void* data)
{
    auto* visibility = static_cast<WindowVisibility*>(data);
    visibility->mAwaitTimer = nullptr;
    visibility->mAwaited.clear();
    return ECORE_CALLBACK_CANCEL;
}

} // namespace WatchPort
