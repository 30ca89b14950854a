#include "controllers/ListController.h"

#include "common/util/AppControllUtil.h"
#include "controllers/CardController.h"
#include "controllers/HistoryController.h"

namespace Cards
{

namespace
{

constexpr const char* kGuide = "com.velmora.qivo-guide-app";
constexpr int kHistoryAction = 0;

} // namespace

std::shared_ptr<ThemedView> ListController::MakeView()
{
    mView = std::make_shared<ListView>(mWallet);
    return mView;
}

void ListController::Initialize()
{
    ScreenController::Initialize();
    // Not in OnItemResume(), which comes after a transition that already shows the list.
    mWallet.mOnPaid = [this] { mView->SetBalances(); };
}

void ListController::OnRotaryDetent(int step, unsigned int /*timeStamp*/)
{
    mView->Turn(step);
}

void ListController::OnTapped(const std::string& part, int index)
{
    if (part == "card")
    {
        Open<CardController>(true, mWallet, index);
    }
    else if (index == kHistoryAction)
    {
        Open<HistoryController>(true, mWallet);
    }
    else
    {
        AppControllUtil::LaucnhAppWithExtraData(
            kGuide, "",
            std::make_shared<QivoUi::ExtraDataMap>(
                QivoUi::ExtraDataMap{{"from", "org.example.cards"}}));
    }
}

} // namespace Cards
