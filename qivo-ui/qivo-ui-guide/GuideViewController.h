#ifndef QIVO_UI_GUIDE_GUIDEVIEWCONTROLLER_H
#define QIVO_UI_GUIDE_GUIDEVIEWCONTROLLER_H

#include "common/BaseViewController.h"
#include "qivo-ui-guide/GuideView.h"
#include <device/callback.h>
#include <memory>

namespace QivoUi
{

/**
 * The guide screen's controller: shows the arrow hint while the watch is not charging.
 *
 * It follows the charger from Initialize() until the view's layout is deleted. Its destruction
 * deliberately does not end that: it dies with its layout gone, or with the process. Whoever
 * destroys it earlier must not let the watch report another change of the charger.
 */
class GuideViewController : public BaseViewController
{
public:
    GuideViewController() = default;
    ~GuideViewController() override = default;

    /**
     * Reads the charging state, follows its changes, builds the view and sets its arrow.
     *
     * Logs error "device_battery_is_charging is error" (the arrow then follows what the call has
     * left in its result all the same: not charging, unless it wrote something) and
     * "device_add_callback is error" (the arrow then stays as it is); goes on after both.
     */
    void Initialize() override;

    /** Stops following the charger; the view stays held. */
    void DeInitialize() override;

    /**
     * The charger was plugged in or out.
     *
     * @param value an integer carried in the pointer: not zero while charging
     * @param userData the controller; null is an error "pThis is NULL", one without a view
     *                 "mGuideViewPtr is NULL"
     */
    static void DeviceChangedCallback(device_callback_e type, void* value, void* userData);

private:
    std::shared_ptr<GuideView> mGuideViewPtr;
};

} // namespace QivoUi

#endif
