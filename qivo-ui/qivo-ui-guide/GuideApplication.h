#ifndef QIVO_UI_GUIDE_GUIDEAPPLICATION_H
#define QIVO_UI_GUIDE_GUIDEAPPLICATION_H

#include "qivo-ui-guide/Application.h"
#include "qivo-ui-guide/GuideViewController.h"
#include <memory>

namespace QivoUi
{

/**
 * The guide: answers the first launch request, whatever it asks for, with the tutorial screen.
 *
 * The controller lives from that request until the application is destroyed, which releases it
 * without deinitializing it. Only the deletion of its screen does that; where the screen stays,
 * the watch must not report another change of the charger.
 */
class GuideApplication : public Application
{
public:
    GuideApplication() = default;
    ~GuideApplication() override = default;

    void OnAppCreateImpl() override;
    void OnAppTerminateImpl() override;
    void OnAppPauseImpl() override;
    void OnAppResumeImpl() override;

    /** Only leaves its trace in the log; the pause then ends the application. */
    void OnAppPausedByPowerKey() override;

    /**
     * Makes the guide's controller and shows its screen; both arguments are ignored.
     *
     * Another call, which no launch request makes, releases the controller of the one before:
     * its screen must have been deleted by then, or the charger's callback reaches the dead.
     *
     * @return true, whatever could be shown
     */
    bool AppControllOperationImpl(std::string operation, ExtraDataMapPtr extraData) override;

    /** Shows nothing: the launch request that follows does. @return false */
    bool ShowView() override;

private:
    std::shared_ptr<GuideViewController> mGuideViewController;
};

} // namespace QivoUi

#endif
