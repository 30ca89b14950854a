#ifndef WATCH_PORT_UI_EXTENSION_COLORED_OBJECTS_H
#define WATCH_PORT_UI_EXTENSION_COLORED_OBJECTS_H

#include "ui-extension/Contrast.h"

#include <Evas.h>
#include <unordered_map>

namespace WatchPort
{

/** The objects that have a colour of a table, as long as they live. */
class ColoredObjects
{
public:
    /** Gives an object a colour, which follows the contrast. */
    void SetColor(Evas_Object* object, const Color& color);
    void SetContrast(Contrast contrast);

private:
    static void SObjectDeletedCB(void* data, Evas* canvas, Evas_Object* object, void* event);

    std::unordered_map<Evas_Object*, Color> mColors;
    Contrast mContrast = Contrast::Normal;
};

} // namespace WatchPort

#endif
