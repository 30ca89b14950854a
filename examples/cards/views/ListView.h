#ifndef CARDS_LISTVIEW_H
#define CARDS_LISTVIEW_H

#include "Wallet.h"
#include "views/ThemedView.h"
#include <vector>

namespace Cards
{

/**
 * The first screen: a page for each card and one for each of two actions, one below the other. The
 * parts that are tapped are "card" and "action", each with an index of its own.
 */
class ListView : public ThemedView
{
public:
    explicit ListView(const Wallet& wallet) : ThemedView("cards/list"), mWallet(wallet) {}

    /** Turns by so many pages, and no further than to the first or the last one. */
    void Turn(int pages);

    /** Shows what is left on each card. */
    void SetBalances();

protected:
    void Fill() override;
    void SetTexts() override;

private:
    Evas_Object* AddPage(Evas_Object* box, const char* group, int index);
    void FillCard(Evas_Object* page, const Card& card);
    void MakeArc();
    int GetPageHeight() const;
    int GetNearestPage() const;
    static void SDraggedCB(void* data, Evas_Object* object, void* eventInfo);
    static void SResizedCB(void* data, Evas* canvas, Evas_Object* page, void* eventInfo);

    const Wallet& mWallet;
    Evas_Object* mScroller = nullptr;
    std::vector<Evas_Object*> mPages;
    // The page that is turned to; none when a finger has moved them.
    int mTarget = 0;
};

} // namespace Cards

#endif
