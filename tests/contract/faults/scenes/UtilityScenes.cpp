#include "faults/scenes/FrameStage.h"

#include "common/util/AppControllUtil.h"
#include "common/util/CommonUtil.h"
#include "common/util/ImageUtil.h"
#include "qivo-ui-guide/GuideApplication.h"
#include "qivo-ui-guide/GuideView.h"

using QivoUi::Application;
using QivoUi::CommonUtil;
using QivoUi::ExtraDataMap;
using QivoUi::ExtraDataMapPtr;
using QivoUi::GuideApplication;
using QivoUi::GuideView;
using QivoUi::ImageUtil;

namespace
{

const char* const kImage = "pay_homescreen_guide.png";

ExtraDataMapPtr SomeExtraData()
{
    const Allocations::Pause pause;
    return std::make_shared<ExtraDataMap>(ExtraDataMap{{"first", "1"}, {"second", "2"}});
}

app_control_h sRequest = nullptr;

void GivenARequest(FrameCast& /*cast*/)
{
    sRequest = Platform::MakeRequest("show", {{"first", "1"}, {"second", "2"}});
}

void AddPath(const std::string& path)
{
    const Allocations::Pause pause;
    Recorder::Add("gives " + Recorder::Describe(path.c_str()));
}

void AddImage(Evas_Object* image)
{
    const Allocations::Pause pause;
    Recorder::Add("gives " + Recorder::NameOf(image));
}

void AddExtraData(const ExtraDataMapPtr& extraData)
{
    const Allocations::Pause pause;
    std::string line = "gives";
    for (const auto& [key, value] : *extraData)
    {
        line += " " + key + "=" + value;
    }
    Recorder::Add(line);
}

std::vector<Scene> LaunchScenes()
{
    return {
        FrameScene("launching an application", nullptr,
                   [](FrameCast&) { AppControllUtil::LaunchApp("app.id", "view"); }),
        FrameScene("launching with extra data", nullptr,
                   [](FrameCast&)
                   { AppControllUtil::LaucnhAppWithExtraData("app.id", "view", SomeExtraData()); }),
        FrameScene("replying with success", GivenARequest,
                   [](FrameCast&)
                   { AppControllUtil::ReplyAppControl(sRequest, true, SomeExtraData()); }),
        FrameScene("replying with failure", GivenARequest,
                   [](FrameCast&)
                   { AppControllUtil::ReplyAppControl(sRequest, false, SomeExtraData()); }),
        FrameScene("reading extra data", GivenARequest,
                   [](FrameCast&) { AddExtraData(AppControllUtil::GetExtraData(sRequest)); }),
        FrameScene("the application's own reply", GivenARequest,
                   [](FrameCast&)
                   {
                       GuideApplication app;
                       app.ReplyAppControll(sRequest, true);
                       // Its constructor forgets the window of an earlier one.
                       Application::mWindow = nullptr;
                   }),
    };
}

std::vector<Scene> ImageScenes()
{
    return {
        FrameScene("a resource's path", nullptr,
                   [](FrameCast&) { AddPath(CommonUtil::GetResourcePath("tables/colors.xml")); }),
        FrameScene("a data file's path", nullptr,
                   [](FrameCast&) { AddPath(CommonUtil::GetDataPath("settings.ini")); }),
        FrameScene("making a coloured image", nullptr,
                   [](FrameCast& cast)
                   { AddImage(ImageUtil::MakeImageObject(cast.mWindow, kImage, "qivo/text")); }),
    };
}

// A text with an ampersand, the first time that the page asks for it.
void Translate(const char* text)
{
    Recorder::Answer("dgettext", reinterpret_cast<std::intptr_t>(text));
}

std::vector<Scene> PageScenes()
{
    return {
        FrameScene("a page with an ampersand", nullptr,
                   [](FrameCast& cast)
                   {
                       Translate("Press & hold");
                       GuideView view;
                       Recorder::Name(&view, "view");
                       view.CreateLayout(cast.mWindow);
                       evas_object_smart_callback_del(view.mScroller, "scroll",
                                                      GuideView::SOnScrollCB);
                   }),
        FrameScene("the end of a resume that was never paused", nullptr,
                   [](FrameCast&)
                   {
                       GuideApplication app;
                       Recorder::Name(&app, "app");
                       app.OnAppResumeImpl();
                       app.UnRegisterPowerKeyEvent();
                   }),
    };
}

} // namespace

std::vector<Scene> UtilityScenes()
{
    std::vector<Scene> scenes;
    for (const auto& group : {LaunchScenes(), ImageScenes(), PageScenes()})
    {
        scenes.insert(scenes.end(), group.begin(), group.end());
    }
    return scenes;
}
