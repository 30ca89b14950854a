#include "application/windows/ThemedObjects.h"

#include "application/windows/Shape.h"
#include "application/windows/Windows.h"

#include <Elementary.h>
#include <cstring>

namespace WatchPort
{

namespace
{
void Collect(Evas_Object* object, std::vector<Evas_Object*>& themed)
{
    if (std::strcmp(evas_object_type_get(object), "edje") == 0)
        themed.push_back(object);
    if (IsShape(object))
        return;
    Eina_List* members = evas_object_smart_members_get(object);
    for (; members; members = eina_list_remove_list(members, members))
        Collect(static_cast<Evas_Object*>(eina_list_data_get(members)), themed);
}

bool IsLayout(Evas_Object* object)
{
    return object && elm_object_widget_check(object) &&
           std::strcmp(elm_object_widget_type_get(object), "Elm_Layout") == 0;
}
} // namespace

std::vector<Evas_Object*> ListThemed(const Display& display)
{
    std::vector<Evas_Object*> themed;
    for (const Ecore_Evas* window : ListWindows(display))
    {
        Evas_Object* object = evas_object_bottom_get(ecore_evas_get(window));
        for (; object; object = evas_object_above_get(object))
            Collect(object, themed);
    }
    return themed;
}

void SizeLayouts(const Display& display)
{
    for (const Evas_Object* object : ListThemed(display))
    {
        Evas_Object* layout = evas_object_smart_parent_get(object);
        if (IsLayout(layout))
            elm_layout_sizing_eval(layout);
    }
}

} // namespace WatchPort
