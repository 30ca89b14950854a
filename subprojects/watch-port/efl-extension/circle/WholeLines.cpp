#include "efl-extension/circle/WholeLines.h"

#include "ui-extension/Appearance.h"

#include <algorithm>
#include <cstdlib>

namespace WatchPort
{

namespace
{

constexpr int kDetentsPerViewport = 4;
constexpr int kUsualLines = 8;
constexpr int kThemeHeight = 360;
// The signal of the port's scroller styles.
constexpr const char* kTextSizeSignal = "watch,text,size";
constexpr const char* kContentSizeSignal = "watch,content,size";

int LinesPerViewport()
{
    int height = 0;
    edje_size_class_get(kTextSizeClass, nullptr, &height, nullptr, nullptr);
    return height > 0 ? kThemeHeight / height : kUsualLines;
}

// The end is one, too.
int NearestRest(int position, int viewport, int end)
{
    const int line = std::max(1, viewport / LinesPerViewport());
    const int rest = std::clamp((position + line / 2) / line * line, 0, end);
    return std::abs(end - position) < std::abs(rest - position) ? end : rest;
}

} // namespace

int WholeLines::Step(int viewport)
{
    const int lines = LinesPerViewport();
    return std::max(1, viewport / lines * (lines / kDetentsPerViewport));
}

WholeLines::WholeLines(Evas_Object* scroller) : mScroller(scroller)
{
    evas_object_smart_callback_add(mScroller, "scroll,drag,start", STouchedCB, this);
    evas_object_smart_callback_add(mScroller, "scroll,drag,stop", SStandsCB, this);
    evas_object_smart_callback_add(mScroller, "scroll,anim,start", SMovingCB, this);
    evas_object_smart_callback_add(mScroller, "scroll,anim,stop", SStandsCB, this);
    edje_object_signal_callback_add(elm_layout_edje_get(mScroller), kTextSizeSignal, "*",
                                    STextSizeCB, this);
    if (Evas_Object* content = elm_object_content_get(mScroller))
        evas_object_event_callback_add(content, EVAS_CALLBACK_RESIZE, SResizedCB, nullptr);
}

WholeLines::~WholeLines()
{
    if (Evas_Object* content = elm_object_content_get(mScroller))
        evas_object_event_callback_del(content, EVAS_CALLBACK_RESIZE, SResizedCB);
    LookLater();
    // The widget's own call deletes the oldest callback of a function, which may be another's.
    edje_object_signal_callback_del_full(elm_layout_edje_get(mScroller), kTextSizeSignal, "*",
                                         STextSizeCB, this);
    evas_object_smart_callback_del_full(mScroller, "scroll,anim,stop", SStandsCB, this);
    evas_object_smart_callback_del_full(mScroller, "scroll,anim,start", SMovingCB, this);
    evas_object_smart_callback_del_full(mScroller, "scroll,drag,stop", SStandsCB, this);
    evas_object_smart_callback_del_full(mScroller, "scroll,drag,start", STouchedCB, this);
}

void WholeLines::STouchedCB(void* data, Evas_Object*, void*)
{
    auto* self = static_cast<WholeLines*>(data);
    self->mIsOffLine = true;
    self->LookLater();
}

void WholeLines::SMovingCB(void* data, Evas_Object*, void*)
{
    static_cast<WholeLines*>(data)->LookLater();
}

void WholeLines::SStandsCB(void* data, Evas_Object*, void*)
{
    static_cast<WholeLines*>(data)->LookSoon();
}

void WholeLines::STextSizeCB(void* data, Evas_Object*, const char*, const char*)
{
    auto* self = static_cast<WholeLines*>(data);
    self->mIsOffLine = true;
    self->LookSoon();
}

// Content that grows moves nothing, and the toolkit tells a theme of moves alone. Of the scroller
// that it is in now: an application may take it out.
void WholeLines::SResizedCB(void*, Evas*, Evas_Object* content, void*)
{
    Evas_Object* const scroller = elm_object_parent_widget_get(content);
    if (scroller)
        elm_object_signal_emit(scroller, kContentSizeSignal, "watch");
}

void WholeLines::SLookCB(void* data)
{
    auto* self = static_cast<WholeLines*>(data);
    self->mLook = nullptr;
    self->ComeToRest();
}

// A flick's motion begins only after the finger has left.
void WholeLines::LookSoon()
{
    if (mIsOffLine && !mLook)
        mLook = ecore_job_add(SLookCB, this);
}

void WholeLines::LookLater()
{
    if (mLook)
        ecore_job_del(mLook);
    mLook = nullptr;
}

// The motion calls the application, which may delete the scroller, and this object with it.
void WholeLines::ComeToRest()
{
    Eina_Rectangle region{};
    int height = 0;
    Evas_Object* scroller = mScroller;
    mIsOffLine = false;
    elm_scroller_region_get(scroller, &region.x, &region.y, &region.w, &region.h);
    elm_scroller_child_size_get(scroller, nullptr, &height);
    const int rest = NearestRest(region.y, region.h, std::max(0, height - region.h));
    if (rest == region.y)
        return;
    evas_object_ref(scroller);
    elm_scroller_region_bring_in(scroller, region.x, rest, region.w, region.h);
    evas_object_unref(scroller);
}

} // namespace WatchPort
