#ifndef CARDS_WALLET_H
#define CARDS_WALLET_H

#include <functional>
#include <string>
#include <vector>

namespace Cards
{

/** A card, as the file cards.txt describes it; its balance goes down with each payment. */
struct Card
{
    std::string name;
    std::string number;
    /** An entry of the colour table. */
    std::string colorCode;
    long long cents;
    float pointsPerUnit;
};

struct Payment
{
    int card;
    long long cents;
};

/** The cards, and what was paid with them. Payments are kept in the application's data folder. */
class Wallet
{
public:
    /**
     * Reads the cards and the payments of earlier runs.
     *
     * A line that makes no sense is an error "wrong line : LINE" and left out.
     */
    Wallet();

    const std::vector<Card>& GetCards() const { return mCards; }

    /** Oldest first. */
    const std::vector<Payment>& GetPayments() const { return mPayments; }

    /** The index of the card with a number; -1 when there is none. */
    int FindCard(const std::string& number) const;

    bool CanPay(int card, long long cents) const;

    /** Pays. @return the index of the payment; -1 when the card cannot pay that much */
    int Pay(int card, long long cents);

    /** The points that a payment brought, such as "1.7"; empty when the card gives none. */
    std::string GetPoints(const Payment& payment) const;

    /** Called after each payment. */
    std::function<void()> mOnPaid;

private:
    void ReadCard(const std::string& line);
    void ReadPayment(const std::string& line);
    void Take(const Payment& payment);

    std::vector<Card> mCards;
    std::vector<Payment> mPayments;
};

/** An amount of money as it is written, such as "3.50". */
std::string MoneyText(long long cents);

} // namespace Cards

#endif
