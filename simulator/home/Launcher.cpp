#include "home/Launcher.h"

#include "common/Theme.h"
#include "home/Ring.h"

#include <Edje.h>
#include <algorithm>
#include <array>
#include <utility>

namespace
{
constexpr double kPickedX = 180;
constexpr double kPickedY = 257;
constexpr double kPickedSide = 95;

// A picture is shown as large as the picked one at most; a larger file could take all memory.
constexpr int kMostPixels = 4096;
constexpr int kShownPixels = 160;

struct Colour
{
    int red;
    int green;
    int blue;
};

// White letters are read on each of them.
constexpr std::array<Colour, 6> kColours = {
    {{13, 110, 96}, {27, 94, 170}, {122, 62, 158}, {160, 56, 84}, {148, 84, 12}, {70, 98, 36}}};

const Colour& ColourOf(const std::string& id)
{
    return kColours[std::hash<std::string>{}(id) % kColours.size()];
}

std::string FirstLetter(const std::string& text)
{
    int end = 0;
    eina_unicode_utf8_next_get(text.c_str(), &end);
    return text.substr(0, static_cast<size_t>(end));
}

Evas_Object* OpenPicture(Evas* canvas, const std::string& file)
{
    Evas_Object* image = evas_object_image_filled_add(canvas);
    int width = 0;
    int height = 0;
    evas_object_image_file_set(image, file.c_str(), nullptr);
    evas_object_image_size_get(image, &width, &height);
    if (evas_object_image_load_error_get(image) == EVAS_LOAD_ERROR_NONE &&
        std::min(width, height) > 0 && std::max(width, height) <= kMostPixels)
    {
        evas_object_image_file_set(image, nullptr, nullptr);
        evas_object_image_load_size_set(image, kShownPixels, kShownPixels);
        evas_object_image_file_set(image, file.c_str(), nullptr);
        evas_object_size_hint_aspect_set(image, EVAS_ASPECT_CONTROL_BOTH, width, height);
        return image;
    }
    evas_object_del(image);
    return nullptr;
}

// Null when the application has no picture that can be shown.
Evas_Object* AddPicture(Evas* canvas, const InstalledApp& app)
{
    const std::string own = "watch/icon/" + app.id;
    if (edje_file_group_exists(ThemeFile().c_str(), own.c_str()))
        return AddThemed(canvas, own.c_str());
    return app.icon.empty() ? nullptr : OpenPicture(canvas, app.icon);
}

void Remove(Evas_Object* object)
{
    Evas_Object* picture = edje_object_part_swallow_get(object, "icon");
    evas_object_del(object);
    if (picture)
        evas_object_del(picture);
}

void Dress(Evas_Object* object, const InstalledApp& app)
{
    if (Evas_Object* before = edje_object_part_swallow_get(object, "icon"))
        evas_object_del(before);
    const Colour& colour = ColourOf(app.id);
    edje_object_color_class_set(object, "watch/app", colour.red, colour.green, colour.blue, 255, 0,
                                0, 0, 0, 0, 0, 0, 0);
    edje_object_part_text_set(object, "letter", FirstLetter(app.name).c_str());
    Evas_Object* picture = AddPicture(evas_object_evas_get(object), app);
    if (picture)
        edje_object_part_swallow(object, "icon", picture);
    edje_object_signal_emit(object, picture ? "app,pictured" : "app,plain", "watch");
}

void Mark(Evas_Object* object, bool isPicked)
{
    edje_object_signal_emit(object, isPicked ? "app,picked" : "app,left", "watch");
    edje_object_message_signal_process(object);
}
} // namespace

Launcher::Launcher(Evas* canvas, int side, TapCallback onTap)
    : mCanvas(canvas), mUnit(side / kUsualSide), mOnTap(std::move(onTap)),
      mLarge(Add(kPickedX, kPickedY, kPickedSide))
{
    evas_object_hide(mLarge);
}

Launcher::~Launcher()
{
    if (mShowing)
        ecore_job_del(mShowing);
    ClearRing();
    Remove(mLarge);
}

void Launcher::SetApps(const std::vector<InstalledApp>& apps)
{
    if (apps == mApps)
        return;
    const std::string picked = mApps.empty() ? "" : GetPicked().id;
    mApps = apps;
    const auto found = std::find_if(mApps.begin(), mApps.end(),
                                    [&](const InstalledApp& app) { return app.id == picked; });
    mPicked = found == mApps.end() ? 0 : static_cast<int>(found - mApps.begin());
    ClearRing();
    ShowPicked();
}

void Launcher::Turn(int detents)
{
    if (mApps.empty())
        return;
    mPicked = Ring(static_cast<int>(mApps.size())).GetNext(mPicked, detents);
    // A thousand detents may come at once.
    if (!mShowing)
        mShowing = ecore_job_add(SPickedCB, this);
}

void Launcher::SetVisible(bool isVisible)
{
    mIsVisible = isVisible;
    const auto show = isVisible ? evas_object_show : evas_object_hide;
    std::for_each(mRing.begin(), mRing.end(), show);
    if (!mApps.empty())
        show(mLarge);
}

std::string Launcher::GetPickedName() const
{
    return mApps.empty() ? "" : GetPicked().name;
}

Evas_Object* Launcher::Add(double x, double y, double side)
{
    Evas_Object* object = AddThemed(mCanvas, "watch/app");
    const int pixels = static_cast<int>(side * mUnit);
    evas_object_geometry_set(object, static_cast<int>((x - side / 2) * mUnit),
                             static_cast<int>((y - side / 2) * mUnit), pixels, pixels);
    edje_object_signal_callback_add(object, "app,tapped", "home", STappedCB, this);
    return object;
}

// The large one stays while the picked changes: a finger that is on it would lose its tap.
void Launcher::ShowPicked()
{
    if (mApps.empty())
    {
        evas_object_hide(mLarge);
        return;
    }
    Dress(mLarge, GetPicked());
    Mark(mLarge, false);
    if (mRing.empty() || Ring::GetFirst(mPicked) != mFirst)
        BuildRing();
    for (size_t place = 0; place < mRing.size(); ++place)
        Mark(mRing[place], mFirst + static_cast<int>(place) == mPicked);
    SetVisible(mIsVisible);
}

void Launcher::BuildRing()
{
    ClearRing();
    if (mApps.size() < 2)
        return;
    const Ring ring(static_cast<int>(mApps.size()));
    mFirst = Ring::GetFirst(mPicked);
    for (int app = mFirst; app < mFirst + ring.GetCountFrom(mFirst); ++app)
    {
        const Place place = ring.GetPlace(app);
        mRing.push_back(Add(place.x, place.y, place.side));
        Dress(mRing.back(), mApps[static_cast<size_t>(app)]);
    }
}

void Launcher::ClearRing()
{
    std::for_each(mRing.begin(), mRing.end(), Remove);
    mRing.clear();
}

const std::string& Launcher::FindId(Evas_Object* object) const
{
    const auto found = std::find(mRing.begin(), mRing.end(), object);
    const auto place = static_cast<size_t>(mFirst + (found - mRing.begin()));
    return found == mRing.end() ? GetPicked().id : mApps[place].id;
}

void Launcher::SPickedCB(void* data)
{
    auto* launcher = static_cast<Launcher*>(data);
    launcher->mShowing = nullptr;
    launcher->ShowPicked();
}

void Launcher::STappedCB(void* data, Evas_Object* object, const char* /*signal*/,
                         const char* /*source*/)
{
    const auto* launcher = static_cast<Launcher*>(data);
    // The last application may have gone while the finger was down.
    if (!launcher->mApps.empty())
        launcher->mOnTap(launcher->FindId(object));
}
