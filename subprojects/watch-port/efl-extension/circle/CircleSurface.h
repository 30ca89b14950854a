#ifndef WATCH_PORT_EFL_EXTENSION_CIRCLE_CIRCLE_SURFACE_H
#define WATCH_PORT_EFL_EXTENSION_CIRCLE_CIRCLE_SURFACE_H

#include <efl_extension.h>

/** A surface stands for its conformant while that lives. */
struct _Eext_Circle_Surface
{
    /** Makes a surface that is freed with its conformant. */
    static Eext_Circle_Surface* Create(Evas_Object* conformant);
    /** Whether the conformant of a surface that was made earlier still lives. */
    static bool IsAlive(const Eext_Circle_Surface* surface);

    Evas_Object* conformant;
};

#endif
