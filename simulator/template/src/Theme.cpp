#include "Theme.h"

#include "common/util/CommonUtil.h"
#include <Elementary.h>
#include <libintl.h>

std::string Theme::File()
{
    return QivoUi::CommonUtil::GetResourcePath("edje/theme.edj");
}

Evas_Object* Theme::MakeLayout(Evas_Object* parent, const char* group)
{
    Evas_Object* layout = elm_layout_add(parent);
    elm_layout_file_set(layout, File().c_str(), group);
    evas_object_size_hint_weight_set(layout, EVAS_HINT_EXPAND, EVAS_HINT_EXPAND);
    evas_object_show(layout);
    return layout;
}

std::string Theme::Text(const char* id)
{
    return dgettext("newapp", id);
}
