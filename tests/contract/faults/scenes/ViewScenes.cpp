#include "faults/scenes/FrameStage.h"

#include "qivo-ui-guide/GuideViewController.h"

namespace
{

class PlainController : public QivoUi::BaseViewController
{
public:
    void Initialize() override {}
    void DeInitialize() override { Recorder::Add("controller.DeInitialize"); }
};

void GivenAView(FrameCast& cast)
{
    cast.mRecord = cast.MakeRecord();
    cast.mView = std::make_unique<FakeView>(cast.mRecord);
    cast.mView->mViewEventListener = &cast.mController;
}

void GivenACreatedView(FrameCast& cast)
{
    GivenAView(cast);
    cast.mView->CreateView();
}

void GivenAShownView(FrameCast& cast)
{
    cast.Push();
    GivenACreatedView(cast);
    cast.mHandles.push_back(cast.mView->Show(false));
}

// A controller with its view; both go when the scene does.
class ControllerStage : public FrameStage
{
public:
    ControllerStage()
        : FrameStage(
              [this](FrameCast& cast)
              {
                  GivenACreatedView(cast);
                  mController.mBaseViewPtr = std::move(cast.mView);
              },
              [this](FrameCast& /*cast*/)
              {
                  mController.ShowView(true);
                  mController.OnViewBackEvent();
              })
    {
    }

private:
    PlainController mController;
};

// A controller of the guide's, which goes when the scene does.
class GuideStage : public FrameStage
{
public:
    GuideStage()
        : FrameStage(
              [this](FrameCast& cast)
              {
                  cast.Push();
                  mController.Initialize();
                  cast.mHandles.push_back(mController.ShowView(false));
              },
              [](FrameCast& cast) { cast.mHandles.back()->DeleteItem(); })
    {
    }

private:
    QivoUi::GuideViewController mController;
};

} // namespace

std::vector<Scene> ViewScenes()
{
    return {
        FrameScene("building a view", GivenAView,
                   [](FrameCast& cast) { cast.mView->CreateView(); }),
        FrameScene("showing a view", GivenACreatedView,
                   [](FrameCast& cast) { cast.mView->Show(true); }),
        {"a controller's screen", [] { return std::make_unique<ControllerStage>(); }},
        FrameScene("the back key", GivenACreatedView,
                   [](FrameCast& cast) { Platform::PressBack(cast.mRecord->mViewLayout); }),
        FrameScene("the deletion of a view's layout", GivenAShownView,
                   [](FrameCast& cast) { cast.mHandles.back()->DeleteItem(); }),
        FrameScene(
            "the deletion of a layout that nobody controls",
            [](FrameCast& cast)
            {
                GivenAShownView(cast);
                cast.mView->mViewEventListener = nullptr;
            },
            [](FrameCast& cast) { cast.mHandles.back()->DeleteItem(); }),
        {"the deletion of the guide's page", [] { return std::make_unique<GuideStage>(); }},
        FrameScene("the end of a view before its layout", GivenACreatedView,
                   [](FrameCast& cast) { cast.mView.reset(); }),
    };
}
