#include "efl-extension/circle/CircleScroller.h"

#include "efl-extension/Rotary.h"

#include <algorithm>
#include <cstdlib>

namespace WatchPort
{

namespace
{

constexpr const char* kDataKey = "watch-port/circle-scroller";
constexpr double kArcLingers = 0.5;
// In its first hundredth of a second a motion covers one part of the way in:
constexpr int kFirstParts = 15;

Eina_Rectangle GeometryOf(const Evas_Object* object)
{
    Eina_Rectangle geometry{};
    evas_object_geometry_get(object, &geometry.x, &geometry.y, &geometry.w, &geometry.h);
    return geometry;
}

// The toolkit (1.26) pulls aside what cannot scroll sideways, even when that is locked. And the
// motion back never ends: it ticks until the next touch, which counts as its stop and for nothing
// else.
void KeepFromBouncingSideways(Evas_Object* scroller)
{
    Eina_Bool isBouncingVertically = EINA_FALSE;
    elm_scroller_bounce_get(scroller, nullptr, &isBouncingVertically);
    elm_scroller_bounce_set(scroller, EINA_FALSE, isBouncingVertically);
}

// A motion covers less than a pixel in its first milliseconds. So it begins with this step, and the
// next frame shows it however soon it comes. Something is left for the motion.
int FirstStep(int way)
{
    if (std::abs(way) < 2)
        return 0;
    return way / kFirstParts + (way > 0 ? 1 : -1);
}

} // namespace

Evas_Object* CircleScroller::Create(Evas_Object* scroller, Evas_Object* conformant)
{
    return (new CircleScroller(scroller, conformant))->mCircleObject;
}

CircleScroller* CircleScroller::Of(Evas_Object* circleObject)
{
    return static_cast<CircleScroller*>(evas_object_data_get(circleObject, kDataKey));
}

CircleScroller::CircleScroller(Evas_Object* scroller, Evas_Object* conformant)
    : mScroller(scroller), mConformant(conformant),
      mCircleObject(evas_object_vg_add(evas_object_evas_get(scroller))), mWholeLines(scroller)
{
    try
    {
        Rotary::GetInstance().AddCallback(mCircleObject, EVAS_CALLBACK_PRIORITY_DEFAULT, SRotaryCB,
                                          this);
    }
    catch (...)
    {
        evas_object_del(mCircleObject);
        throw;
    }
    KeepFromBouncingSideways(mScroller);
    evas_object_data_set(mCircleObject, kDataKey, this);
    evas_object_pass_events_set(mCircleObject, EINA_TRUE);
    evas_object_event_callback_add(mCircleObject, EVAS_CALLBACK_DEL, SCircleObjectDeletedCB, this);
    evas_object_event_callback_add(mScroller, EVAS_CALLBACK_DEL, SScrollerDeletedCB, this);
    evas_object_smart_callback_add(mScroller, "scroll,anim,stop", STargetLostCB, this);
    evas_object_smart_callback_add(mScroller, "scroll,drag,start", STargetLostCB, this);
    if (mConformant)
        StartDrawing();
}

CircleScroller::~CircleScroller()
{
    evas_object_event_callback_del_full(mScroller, EVAS_CALLBACK_DEL, SScrollerDeletedCB, this);
    evas_object_smart_callback_del_full(mScroller, "scroll,anim,stop", STargetLostCB, this);
    evas_object_smart_callback_del_full(mScroller, "scroll,drag,start", STargetLostCB, this);
    if (mConformant)
        StopDrawing();
}

void CircleScroller::SScrollerDeletedCB(void* data, Evas*, Evas_Object*, void*)
{
    evas_object_del(static_cast<CircleScroller*>(data)->mCircleObject);
}

void CircleScroller::SCircleObjectDeletedCB(void* data, Evas*, Evas_Object* object, void*)
{
    evas_object_data_del(object, kDataKey);
    delete static_cast<CircleScroller*>(data);
}

void CircleScroller::SConformantDeletedCB(void* data, Evas*, Evas_Object*, void*)
{
    static_cast<CircleScroller*>(data)->StopDrawing();
}

// As a member of the scroller the arc is hidden, clipped and stacked together with it.
void CircleScroller::StartDrawing()
{
    mArc.emplace(mCircleObject);
    evas_object_smart_member_add(mCircleObject, mScroller);
    evas_object_event_callback_add(mConformant, EVAS_CALLBACK_DEL, SConformantDeletedCB, this);
    evas_object_smart_callback_add(mScroller, "scroll", SScrollCB, this);
    // Every change of geometry, content or position comes by here.
    evas_event_callback_add(evas_object_evas_get(mScroller), EVAS_CALLBACK_RENDER_PRE, SRenderPreCB,
                            this);
}

void CircleScroller::StopDrawing()
{
    if (mLingerTimer)
        ecore_timer_del(mLingerTimer);
    mLingerTimer = nullptr;
    evas_event_callback_del_full(evas_object_evas_get(mScroller), EVAS_CALLBACK_RENDER_PRE,
                                 SRenderPreCB, this);
    evas_object_smart_callback_del_full(mScroller, "scroll", SScrollCB, this);
    evas_object_event_callback_del_full(mConformant, EVAS_CALLBACK_DEL, SConformantDeletedCB, this);
    evas_object_smart_member_del(mCircleObject);
    mArc->Hide();
    mArc.reset();
    mConformant = nullptr;
}

void CircleScroller::SetPolicy(Elm_Scroller_Policy horizontal, Elm_Scroller_Policy vertical)
{
    mHorizontalPolicy = horizontal;
    mVerticalPolicy = vertical;
    if (mArc)
        UpdateArc();
}

Eina_Bool CircleScroller::SRotaryCB(void* data, Evas_Object*, Eext_Rotary_Event_Info* info)
{
    bool isClockwise = info->direction == EEXT_ROTARY_DIRECTION_CLOCKWISE;
    static_cast<CircleScroller*>(data)->Turn(isClockwise ? 1 : -1);
    return EINA_FALSE;
}

void CircleScroller::STargetLostCB(void* data, Evas_Object*, void*)
{
    static_cast<CircleScroller*>(data)->mTarget.reset();
}

ScrollPosition CircleScroller::Position() const
{
    Eina_Rectangle region{};
    int contentWidth = 0;
    int contentHeight = 0;
    elm_scroller_region_get(mScroller, &region.x, &region.y, &region.w, &region.h);
    elm_scroller_child_size_get(mScroller, &contentWidth, &contentHeight);
    if (contentHeight > region.h)
        return {true, region.y, region.h, contentHeight};
    return {false, region.x, region.w, contentWidth};
}

bool CircleScroller::IsLocked(bool isVertical) const
{
    if (elm_object_scroll_freeze_get(mScroller) > 0)
        return true;
    int blocked = elm_scroller_movement_block_get(mScroller);
    if (isVertical)
        return elm_object_scroll_lock_y_get(mScroller) ||
               (blocked & ELM_SCROLLER_MOVEMENT_BLOCK_VERTICAL);
    return elm_object_scroll_lock_x_get(mScroller) ||
           (blocked & ELM_SCROLLER_MOVEMENT_BLOCK_HORIZONTAL);
}

void CircleScroller::Turn(int direction)
{
    ScrollPosition now = Position();
    if (IsLocked(now.isVertical))
        return;
    int step = WholeLines::Step(now.viewport);
    int end = std::max(0, now.content - now.viewport);
    int target = std::clamp(mTarget.value_or(now.position) + direction * step, 0, end);
    if (target != now.position || mTarget)
        BringIn(target, now.isVertical);
}

// Both steps call the application, which may delete the scroller or the circle object. The scroller
// must not be deleted during the step, so the reference delays its end.
void CircleScroller::BringIn(int target, bool isVertical)
{
    Eina_Rectangle region{};
    Evas_Object* scroller = mScroller;
    const std::weak_ptr<bool> life = mLife;
    evas_object_ref(scroller);
    elm_scroller_region_get(scroller, &region.x, &region.y, &region.w, &region.h);
    int& position = isVertical ? region.y : region.x;
    const bool isStill = elm_config_scroll_animation_disabled_get() != EINA_FALSE;
    position += isStill ? target - position : FirstStep(target - position);
    elm_scroller_region_show(scroller, region.x, region.y, region.w, region.h);
    position = target;
    if (!life.expired())
        elm_scroller_region_bring_in(scroller, region.x, region.y, region.w, region.h);
    // Starting a motion ends the previous one, and its target is lost.
    if (!life.expired())
        mTarget = target;
    evas_object_unref(scroller);
}

void CircleScroller::SScrollCB(void* data, Evas_Object*, void*)
{
    auto* self = static_cast<CircleScroller*>(data);
    if (self->mLingerTimer)
        ecore_timer_reset(self->mLingerTimer);
    else
        self->mLingerTimer = ecore_timer_add(kArcLingers, SLingerOverCB, self);
    self->UpdateArc();
}

Eina_Bool CircleScroller::SLingerOverCB(void* data)
{
    auto* self = static_cast<CircleScroller*>(data);
    self->mLingerTimer = nullptr;
    self->UpdateArc();
    return ECORE_CALLBACK_CANCEL;
}

void CircleScroller::SRenderPreCB(void* data, Evas*, void*)
{
    static_cast<CircleScroller*>(data)->UpdateArc();
}

bool CircleScroller::IsArcWanted(const ScrollPosition& position) const
{
    if (!evas_object_visible_get(mScroller))
        return false;
    switch (position.isVertical ? mVerticalPolicy : mHorizontalPolicy)
    {
    case ELM_SCROLLER_POLICY_ON:
        return true;
    case ELM_SCROLLER_POLICY_AUTO:
        return mLingerTimer && position.content > position.viewport;
    default:
        return false;
    }
}

void CircleScroller::UpdateArc()
{
    ScrollPosition position = Position();
    Eina_Rectangle screen = GeometryOf(mConformant);
    bool isWanted = IsArcWanted(position);
    bool isAsDrawn = position == mDrawnPosition && eina_rectangle_equal(&screen, &mDrawnScreen);
    // Not when it was made: showing a scroller shows its members too.
    bool isShown = evas_object_visible_get(mCircleObject);
    if (isWanted == isShown && (isAsDrawn || !isWanted))
        return;
    mDrawnPosition = position;
    mDrawnScreen = screen;
    if (isWanted)
        mArc->Draw(screen, position);
    else
        mArc->Hide();
}

} // namespace WatchPort
