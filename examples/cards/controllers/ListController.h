#ifndef CARDS_LISTCONTROLLER_H
#define CARDS_LISTCONTROLLER_H

#include "controllers/ScreenController.h"
#include "views/ListView.h"

namespace Cards
{

/** The first screen: each detent is a card, a tap opens it. Below the cards: history and guide. */
class ListController : public ScreenController
{
public:
    explicit ListController(Wallet& wallet) : mWallet(wallet) {}

    void Initialize() override;
    void OnRotaryDetent(int step, unsigned int timeStamp) override;
    void OnTapped(const std::string& part, int index) override;

protected:
    std::shared_ptr<ThemedView> MakeView() override;

private:
    Wallet& mWallet;
    std::shared_ptr<ListView> mView;
};

} // namespace Cards

#endif
