#include "efl-extension/circle/CircleSurface.h"

#include <algorithm>
#include <memory>
#include <vector>

namespace
{

using Surfaces = std::vector<std::unique_ptr<Eext_Circle_Surface>>;

Surfaces& LivingSurfaces()
{
    static Surfaces surfaces;
    return surfaces;
}

void ConformantDeletedCB(void*, Evas*, Evas_Object* conformant, void*)
{
    Surfaces& living = LivingSurfaces();
    auto isOf = [conformant](const auto& surface) { return surface->conformant == conformant; };
    living.erase(std::remove_if(living.begin(), living.end(), isOf), living.end());
}

} // namespace

Eext_Circle_Surface* Eext_Circle_Surface::Create(Evas_Object* conformant)
{
    LivingSurfaces().push_back(std::make_unique<Eext_Circle_Surface>());
    LivingSurfaces().back()->conformant = conformant;
    evas_object_event_callback_add(conformant, EVAS_CALLBACK_DEL, ConformantDeletedCB, nullptr);
    return LivingSurfaces().back().get();
}

bool Eext_Circle_Surface::IsAlive(const Eext_Circle_Surface* surface)
{
    const Surfaces& living = LivingSurfaces();
    return std::any_of(living.begin(), living.end(),
                       [surface](const auto& known) { return known.get() == surface; });
}
