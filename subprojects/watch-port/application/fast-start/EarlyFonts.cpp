#include "application/fast-start/EarlyFonts.h"

#include <clocale>
#include <dlfcn.h>
#include <utility>

namespace WatchPort
{

namespace
{
FcConfig* sKept = nullptr;

FcConfig* Load()
{
    static const auto next = reinterpret_cast<decltype(&FcInitLoadConfigAndFonts)>(
        dlsym(RTLD_NEXT, "FcInitLoadConfigAndFonts"));
    return next();
}

FcConfig* LoadAside()
{
    // Meanwhile the toolkit sets the locale of all threads that have none of their own.
    uselocale(newlocale(LC_ALL_MASK, "C", nullptr));
    return Load();
}
} // namespace

extern "C" FcPublic FcConfig* FcInitLoadConfigAndFonts()
{
    FcConfig* kept = std::exchange(sKept, nullptr);
    return kept ? kept : Load();
}

// Where no thread can be had, Keep() loads.
EarlyFonts::EarlyFonts()
    : mLoading(std::async(std::launch::async | std::launch::deferred, LoadAside))
{
}

EarlyFonts::~EarlyFonts()
{
    if (mLoading.valid())
        Keep();
    if (sKept)
        FcConfigDestroy(std::exchange(sKept, nullptr));
}

void EarlyFonts::Keep()
{
    sKept = mLoading.get();
}

} // namespace WatchPort
