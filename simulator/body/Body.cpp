#include "body/Body.h"

#include "body/PictureFile.h"
#include "common/Complaint.h"

#include <Ecore.h>

Body::Body(const Options& options)
    : mLayout(options.GetScreenSize(), options.GetZoom()),
      mControl([this](const WatchState& state, bool) { Show(state); }),
      mScreen(
          options.Get("screen"), mLayout.GetScreenSize(),
          [this](const Eina_Rectangle& area) { ShowScreen(area); }, [this] { LoseScreen(); }),
      mWindow("qivo-watch", "Qivo Watch", mLayout.GetWindowSide()),
      mPicture(mWindow.GetCanvas(), mLayout, WatchPicture::Kind::OnDesk),
      mMouse(mWindow.GetCanvas(), mLayout, mScreen, mControl),
      mService(mControl.GetBus(),
               [this](const std::string& file) { SavePicture(file, mControl.GetState(), mScreen); })
{
    mScreen.Start();
    mWindow.OnClose([this] { mControl.Stop(); });
    mWindow.OnDrawn([this] { mControl.OwnName("com.velmora.QivoWatch.Body"); });
}

void Body::Show(const WatchState& state)
{
    mPicture.Show(state);
    mWindow.Show();
}

void Body::ShowScreen(const Eina_Rectangle& area)
{
    mPicture.ShowScreen(mScreen.GetPixels(), area);
    mService.CountFrame();
}

void Body::LoseScreen()
{
    Complain("the watch's screen has gone");
    mHasLostScreen = true;
    ecore_main_loop_quit();
}
