#ifndef WATCH_PORT_EFL_EXTENSION_H
#define WATCH_PORT_EFL_EXTENSION_H

#include <Elementary.h>

#ifdef __cplusplus
extern "C" {
#endif

typedef enum
{
    EEXT_CALLBACK_BACK,
} Eext_Callback_Type;

typedef void (*Eext_Event_Cb)(void* data, Evas_Object* object, void* event_info);

void eext_object_event_callback_add(Evas_Object* object, Eext_Callback_Type type,
                                    Eext_Event_Cb callback, void* data);

typedef struct _Eext_Circle_Surface Eext_Circle_Surface;

Eext_Circle_Surface* eext_circle_surface_conformant_add(Evas_Object* conformant);

Evas_Object* eext_circle_object_scroller_add(Evas_Object* scroller, Eext_Circle_Surface* surface);
void eext_circle_object_scroller_policy_set(Evas_Object* object, Elm_Scroller_Policy horizontal,
                                            Elm_Scroller_Policy vertical);

typedef enum
{
    EEXT_ROTARY_DIRECTION_CLOCKWISE = 0,
    EEXT_ROTARY_DIRECTION_COUNTER_CLOCKWISE = 1,
} Eext_Rotary_Event_Direction;

typedef struct
{
    Eext_Rotary_Event_Direction direction;
    unsigned int time_stamp;
} Eext_Rotary_Event_Info;

typedef Eina_Bool (*Eext_Rotary_Event_Cb)(void* data, Evas_Object* object,
                                          Eext_Rotary_Event_Info* info);

Eina_Bool eext_rotary_object_event_callback_priority_add(Evas_Object* object,
                                                         Evas_Callback_Priority priority,
                                                         Eext_Rotary_Event_Cb callback, void* data);
void* eext_rotary_object_event_callback_del(Evas_Object* object, Eext_Rotary_Event_Cb callback);
void eext_rotary_object_event_activated_set(Evas_Object* object, Eina_Bool activated);

#ifdef __cplusplus
}
#endif

#endif
