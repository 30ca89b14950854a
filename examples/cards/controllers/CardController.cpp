#include "controllers/CardController.h"

#include "controllers/PayController.h"
#include <algorithm>

namespace Cards
{

namespace
{

constexpr long long kStepCents = 50;
constexpr long long kMostCents = 20000;

} // namespace

std::shared_ptr<ThemedView> CardController::MakeView()
{
    mView = std::make_shared<CardView>(mWallet.GetCards()[mCard]);
    return mView;
}

void CardController::Initialize()
{
    ScreenController::Initialize();
    mView->ShowAmount(mCents);
}

void CardController::OnRotaryDetent(int step, unsigned int /*timeStamp*/)
{
    mCents = std::clamp(mCents + step * kStepCents, kStepCents, kMostCents);
    mView->ShowAmount(mCents);
}

void CardController::OnTapped(const std::string& /*part*/, int /*index*/)
{
    if (mWallet.CanPay(mCard, mCents))
    {
        Open<PayController>(true, mWallet, Payment{mCard, mCents}, false);
    }
}

} // namespace Cards
