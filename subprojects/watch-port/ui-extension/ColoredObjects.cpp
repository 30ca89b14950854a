#include "ui-extension/ColoredObjects.h"

namespace WatchPort
{

namespace
{

// As the canvas takes it.
Color Paint(const Color& plain, Contrast contrast)
{
    Color color = WithContrast(plain, contrast);
    evas_color_argb_premul(color.a, &color.r, &color.g, &color.b);
    return color;
}

bool IsPainted(const Evas_Object* object, const Color& paint)
{
    Color color{};
    evas_object_color_get(object, &color.r, &color.g, &color.b, &color.a);
    return color.r == paint.r && color.g == paint.g && color.b == paint.b && color.a == paint.a;
}

void SetPaint(Evas_Object* object, const Color& paint)
{
    evas_object_color_set(object, paint.r, paint.g, paint.b, paint.a);
}

} // namespace

void ColoredObjects::SetColor(Evas_Object* object, const Color& color)
{
    if (mColors.insert_or_assign(object, color).second)
        evas_object_event_callback_add(object, EVAS_CALLBACK_DEL, SObjectDeletedCB, this);
    SetPaint(object, Paint(color, mContrast));
}

void ColoredObjects::SetContrast(Contrast contrast)
{
    for (const auto& [object, color] : mColors)
    {
        // Otherwise the application has given it another one since.
        if (IsPainted(object, Paint(color, mContrast)))
            SetPaint(object, Paint(color, contrast));
    }
    mContrast = contrast;
}

void ColoredObjects::SObjectDeletedCB(void* data, Evas*, Evas_Object* object, void*)
{
    static_cast<ColoredObjects*>(data)->mColors.erase(object);
}

} // namespace WatchPort
