#ifndef WATCH_PORT_EFL_EXTENSION_CIRCLE_CIRCLE_SCROLLER_H
#define WATCH_PORT_EFL_EXTENSION_CIRCLE_CIRCLE_SCROLLER_H

#include "efl-extension/circle/ScrollArc.h"
#include "efl-extension/circle/WholeLines.h"
#include <efl_extension.h>

#include <memory>
#include <optional>

namespace WatchPort
{

/**
 * Scrolls a scroller with the bezel and draws its scroll position. It lives as long as its circle
 * object, the canvas object that the application gets.
 */
class CircleScroller
{
public:
    CircleScroller(const CircleScroller&) = delete;
    CircleScroller& operator=(const CircleScroller&) = delete;

    /**
     * @param conformant the screen at whose edge to draw, or null to draw nothing
     * @return the circle object
     */
    static Evas_Object* Create(Evas_Object* scroller, Evas_Object* conformant);
    /** The circle scroller of a circle object, null for any other object. */
    static CircleScroller* Of(Evas_Object* circleObject);

    void SetPolicy(Elm_Scroller_Policy horizontal, Elm_Scroller_Policy vertical);

private:
    CircleScroller(Evas_Object* scroller, Evas_Object* conformant);
    ~CircleScroller();

    static Eina_Bool SRotaryCB(void* data, Evas_Object* object, Eext_Rotary_Event_Info* info);
    static void SScrollCB(void* data, Evas_Object* object, void* event);
    static void STargetLostCB(void* data, Evas_Object* object, void* event);
    static Eina_Bool SLingerOverCB(void* data);
    static void SRenderPreCB(void* data, Evas* canvas, void* event);
    static void SScrollerDeletedCB(void* data, Evas* canvas, Evas_Object* object, void* event);
    static void SCircleObjectDeletedCB(void* data, Evas* canvas, Evas_Object* object, void* event);
    static void SConformantDeletedCB(void* data, Evas* canvas, Evas_Object* object, void* event);

    void StartDrawing();
    void StopDrawing();
    void Turn(int direction);
    bool IsLocked(bool isVertical) const;
    void BringIn(int target, bool isVertical);
    ScrollPosition Position() const;
    bool IsArcWanted(const ScrollPosition& position) const;
    void UpdateArc();

    std::shared_ptr<bool> mLife = std::make_shared<bool>(); /**< Deleted with this object. */
    Evas_Object* mScroller;
    Evas_Object* mConformant;
    Evas_Object* mCircleObject;
    WholeLines mWholeLines;
    std::optional<ScrollArc> mArc;
    Elm_Scroller_Policy mHorizontalPolicy = ELM_SCROLLER_POLICY_AUTO;
    Elm_Scroller_Policy mVerticalPolicy = ELM_SCROLLER_POLICY_AUTO;
    std::optional<int> mTarget;
    Ecore_Timer* mLingerTimer = nullptr;
    Eina_Rectangle mDrawnScreen{};
    ScrollPosition mDrawnPosition{};
};

} // namespace WatchPort

#endif
