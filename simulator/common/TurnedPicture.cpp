#include "common/TurnedPicture.h"

#include "common/Theme.h"

#include <cmath>

TurnedPicture::TurnedPicture(Evas* canvas, const char* group)
    : mHolder(evas_object_table_add(canvas)), mPicture(AddThemed(canvas, group))
{
    evas_object_size_hint_weight_set(mPicture, EVAS_HINT_EXPAND, EVAS_HINT_EXPAND);
    evas_object_size_hint_align_set(mPicture, EVAS_HINT_FILL, EVAS_HINT_FILL);
    evas_object_table_pack(mHolder, mPicture, 0, 0, 1, 1);
    evas_object_show(mHolder);
    evas_object_event_callback_add(mPicture, EVAS_CALLBACK_MOVE, SMovedCB, this);
    evas_object_event_callback_add(mPicture, EVAS_CALLBACK_RESIZE, SMovedCB, this);
}

TurnedPicture::~TurnedPicture()
{
    evas_object_event_callback_del_full(mPicture, EVAS_CALLBACK_MOVE, SMovedCB, this);
    evas_object_event_callback_del_full(mPicture, EVAS_CALLBACK_RESIZE, SMovedCB, this);
}

void TurnedPicture::Turn(double degrees)
{
    mDegrees = std::fmod(degrees, 360);
    Apply();
}

// Upright it is shown as it is, without a map: a map's pixels are a little softer.
void TurnedPicture::Apply()
{
    const bool isTurned = mDegrees != 0;
    evas_object_map_enable_set(mPicture, isTurned);
    if (!isTurned)
        return;
    int x = 0;
    int y = 0;
    int width = 0;
    int height = 0;
    evas_object_geometry_get(mPicture, &x, &y, &width, &height);
    Evas_Map* map = evas_map_new(4);
    evas_map_util_points_populate_from_object(map, mPicture);
    evas_map_util_rotate(map, mDegrees, x + width / 2, y + height / 2);
    evas_map_smooth_set(map, EINA_TRUE);
    evas_map_alpha_set(map, EINA_TRUE);
    evas_object_map_set(mPicture, map);
    evas_map_free(map);
}

void TurnedPicture::SMovedCB(void* data, Evas* /*canvas*/, Evas_Object* /*object*/, void* /*event*/)
{
    static_cast<TurnedPicture*>(data)->Apply();
}
