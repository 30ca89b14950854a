#include "qivo-ui-guide/GuideApplication.h"

#include "common/Log.h"

namespace QivoUi
{

void GuideApplication::OnAppCreateImpl()
{
    Application::OnAppCreateImpl();
}

void GuideApplication::OnAppTerminateImpl()
{
    Application::OnAppTerminateImpl();
}

void GuideApplication::OnAppPauseImpl()
{
    Application::OnAppPauseImpl();
}

void GuideApplication::OnAppResumeImpl()
{
    Application::OnAppResumeImpl();
}

void GuideApplication::OnAppPausedByPowerKey()
{
    QIVO_LOG_BEGIN();
    QIVO_LOG_END();
}

bool GuideApplication::AppControllOperationImpl(std::string /*operation*/,
                                                ExtraDataMapPtr /*extraData*/)
{
    mGuideViewController = std::make_shared<GuideViewController>();
    mGuideViewController->Initialize();
    mGuideViewController->ShowView(true);
    return true;
}

bool GuideApplication::ShowView()
{
    return false;
}

} // namespace QivoUi

QivoUi::Application* CreateApplication()
{
    return new QivoUi::GuideApplication();
}
