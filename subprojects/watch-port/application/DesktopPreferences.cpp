#include "application/DesktopPreferences.h"

#include "application/windows/ThemedObjects.h"
#include "dlog/PortLog.h"
#include "ui-extension/Appearance.h"

#include <cmath>
#include <optional>

namespace WatchPort
{

namespace
{
constexpr char kAppearance[] = "org.freedesktop.appearance";
constexpr char kTextSize[] = "text-scaling-factor";
constexpr char kAnimations[] = "enable-animations";
constexpr char kContrast[] = "contrast";
constexpr dbus_uint32_t kHigherContrast = 1;

// Nothing for a value of another type.
template <typename Value> std::optional<Value> Read(DBusMessageIter* iter, const char* signature)
{
    if (!HasSignature(iter, signature))
        return std::nullopt;
    Value value{};
    dbus_message_iter_get_basic(iter, &value);
    return value;
}
} // namespace

DesktopPreferences::DesktopPreferences()
    : mPortal(PortalSettings::Follow(
          {{kDesktopInterface, kTextSize, [this](auto* value) { TakeTextSize(value); }},
           {kDesktopInterface, kAnimations, [this](auto* value) { TakeAnimations(value); }},
           {kAppearance, kContrast, [this](auto* value) { TakeContrast(value); }}},
          [this] { Apply(); }))
{
}

void DesktopPreferences::Begin(const Display& display)
{
    if (mPortal)
        mPortal->TakeAnswer();
    mDisplay = &display;
    Apply();
}

void DesktopPreferences::TakeTextSize(DBusMessageIter* value)
{
    if (const auto factor = Read<double>(value, "d"); factor && std::isfinite(*factor))
        Accept(kTextSize, mWanted.textSize, *factor);
    else
        Refuse(kTextSize, "not a finite number of type \"d\"");
}

void DesktopPreferences::TakeAnimations(DBusMessageIter* value)
{
    if (const auto isMoving = Read<dbus_bool_t>(value, "b"))
        Accept(kAnimations, mWanted.isStill, *isMoving == 0);
    else
        Refuse(kAnimations, "not of type \"b\"");
}

void DesktopPreferences::TakeContrast(DBusMessageIter* value)
{
    if (const auto contrast = Read<dbus_uint32_t>(value, "u"))
        Accept(kContrast, mWanted.hasHighContrast, *contrast == kHigherContrast);
    else
        Refuse(kContrast, "not of type \"u\"");
}

template <typename Value>
void DesktopPreferences::Accept(const char* key, Value& wanted, Value value)
{
    mRefused.erase(key);
    wanted = value;
}

void DesktopPreferences::Refuse(const char* key, const char* why)
{
    if (mRefused.insert(key).second)
        PORT_LOG_WARN("the desktop's %s is ignored: %s", key, why);
}

void DesktopPreferences::Apply()
{
    if (!mDisplay)
        return;
    if (mWanted.textSize != mShown.textSize)
    {
        SetTextSize(mWanted.textSize);
        SizeLayouts(*mDisplay);
    }
    if (mWanted.isStill != mShown.isStill)
        SetReducedMotion(mWanted.isStill);
    if (mWanted.hasHighContrast != mShown.hasHighContrast)
        SetHighContrast(mWanted.hasHighContrast);
    mShown = mWanted;
}

} // namespace WatchPort
