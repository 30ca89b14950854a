#ifndef CARDS_APPLICATION_H
#define CARDS_APPLICATION_H

#include "Wallet.h"
#include "common/NaviFrameLowerEventListener.h"
#include "common/util/AppControllUtil.h"
#include <Evas.h>
#include <app.h>
#include <memory>
#include <system_settings.h>

namespace Cards
{

/**
 * The wallet: binds the watch's application framework to the screens.
 *
 * The order of a run: create makes window and object tree, the first launch request opens the list,
 * resume and pause are passed on to the navigation frame, terminate takes everything down. In the
 * background the wallet stays; it ends when the user backs out of the list.
 *
 * Launch requests: "pay" with the extra data "card" (a number) and "amount" pays, "cancel" gives up
 * a payment that waits, "home" shows the list. Any other shows the wallet as it stands. A request
 * with the extra data "reply" is answered; a refusal carries the "reason".
 */
class Application : public QivoUi::NaviFrameLowerEventListener
{
public:
    /** Runs the application. @return the program's exit status */
    int Run(int argc, char** argv);

    void OnNaviFrameLowered() override;

private:
    bool Create();
    void Terminate();
    void TakeRequest(app_control_h request);

    /** @return why the request is refused; empty when it is not */
    std::string Obey(const std::string& operation, const QivoUi::ExtraDataMap& extraData);
    std::string Pay(const QivoUi::ExtraDataMap& extraData);

    static bool SOnCreate(void* data);
    static void SOnTerminate(void* data);
    static void SOnPause(void* data);
    static void SOnResume(void* data);
    static void SOnAppControl(app_control_h request, void* data);
    static void SOnLanguageChanged(system_settings_key_e key, void* data);

    Evas_Object* mWindow = nullptr;
    // Made in create, when the application's folders are known.
    std::unique_ptr<Wallet> mWallet;
};

} // namespace Cards

#endif
