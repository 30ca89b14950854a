#include "body/Body.h"

#include "body/picture/PictureFile.h"
#include "common/Complaint.h"

#include <Ecore.h>

namespace
{
constexpr char kTitle[] = "Qivo Watch";
constexpr int kLeastSide = 120;
constexpr int kIconSide = 128;

Layout SquareLayout(const Options& options)
{
    const int size = options.GetScreenSize();
    const int side = options.GetSide(Layout::GetUsualSide(size));
    return {size, side, side};
}
} // namespace

Body::Body(const Options& options)
    : mLayout(SquareLayout(options)),
      mControl([this](const WatchState& state, bool) { Show(state); }),
      mScreen(
          options.Get("screen"), mLayout.GetScreenSize(),
          [this](const Eina_Rectangle& area) { ShowScreen(area); }, [this] { LoseScreen(); }),
      mWindow("qivo-watch", options.Get("title", kTitle), mLayout.GetWatchSide()),
      mManager(mWindow.GetObject()),
      mPicture(mWindow.GetCanvas(), mLayout, WatchPicture::Kind::OnDesk),
      mMouse(mWindow.GetCanvas(), mLayout, mScreen, mControl), mKeys(mWindow.GetCanvas(), mControl),
      mService(mControl.GetBus(),
               [this](const std::string& file) { SavePicture(file, mControl.GetState(), mScreen); })
{
    mScreen.Start();
    mWindow.SetResizable(kLeastSide, [this](int width, int height) { Resize(width, height); });
    Resize(mLayout.GetWatchSide(), mLayout.GetWatchSide());
    mWindow.SetIcon(AddPicture(mWindow.GetCanvas(), kIconSide, mControl.GetState(), mScreen));
    mWindow.OnClose([this] { mControl.Stop(); });
    mWindow.OnDrawn([this] { mControl.OwnName("com.velmora.QivoWatch.Body"); });
}

void Body::Show(const WatchState& state)
{
    mPicture.Show(state);
    mWindow.Show();
}

void Body::Resize(int width, int height)
{
    mLayout = Layout(mLayout.GetScreenSize(), width, height);
    mPicture.Place(mLayout);
    mMouse.Resize(width, height);
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
