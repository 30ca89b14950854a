#ifndef CARDS_HISTORYCONTROLLER_H
#define CARDS_HISTORYCONTROLLER_H

#include "controllers/ScreenController.h"
#include "views/HistoryView.h"

namespace Cards
{

/** The payments; a widget takes the bezel here, which scrolls by itself. */
class HistoryController : public ScreenController
{
public:
    explicit HistoryController(const Wallet& wallet) : mWallet(wallet) {}

    void OnTapped(const std::string& part, int index) override;

protected:
    std::shared_ptr<ThemedView> MakeView() override;
    void TakeBezel() override;
    void LeaveBezel() override;

private:
    const Wallet& mWallet;
    std::shared_ptr<HistoryView> mView;
};

} // namespace Cards

#endif
