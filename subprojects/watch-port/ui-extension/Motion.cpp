#include "ui-extension/Appearance.h"

#include <Elementary.h>

namespace WatchPort
{

namespace
{
// With nothing at all the toolkit divides by it.
constexpr double kAlmostNothing = 0.001;
} // namespace

void SetReducedMotion(bool isReduced)
{
    static const double sUsualFriction = elm_config_scroll_bring_in_scroll_friction_get();
    edje_transition_duration_factor_set(isReduced ? kAlmostNothing : 1.0);
    elm_config_scroll_animation_disabled_set(isReduced);
    elm_config_scroll_bring_in_scroll_friction_set(sUsualFriction *
                                                   (isReduced ? kAlmostNothing : 1.0));
    if (isReduced)
        edje_color_class_set(kStillClass, 255, 255, 255, 255, 0, 0, 0, 0, 0, 0, 0, 0);
    else
        edje_color_class_del(kStillClass);
}

} // namespace WatchPort
