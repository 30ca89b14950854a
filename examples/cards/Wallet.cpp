#include "Wallet.h"

#include "common/Log.h"
#include "common/util/CommonUtil.h"
#include "common/util/StringUtil.h"
#include <cmath>
#include <fstream>
#include <stdexcept>

namespace Cards
{

using QivoUi::CommonUtil;
using QivoUi::StringUtil;

namespace
{

constexpr const char* kHistoryFile = "history.txt";

// A file that is not there has no lines. The reader throws for a line that makes no sense.
template <typename Reader> void ReadLines(const std::string& path, Reader read)
{
    std::ifstream file(path);
    for (std::string line; std::getline(file, line);)
    {
        if (line.empty() || line[0] == '#')
        {
            continue;
        }
        try
        {
            read(line);
        }
        catch (const std::exception&)
        {
            QIVO_LOG_ERROR("wrong line : %s", line.c_str());
        }
    }
}

} // namespace

Wallet::Wallet()
{
    ReadLines(CommonUtil::GetResourcePath("cards.txt"),
              [this](const std::string& line) { ReadCard(line); });
    ReadLines(CommonUtil::GetDataPath(kHistoryFile),
              [this](const std::string& line) { ReadPayment(line); });
}

void Wallet::ReadCard(const std::string& line)
{
    const std::vector<std::string> words = StringUtil::Tokenize(line, ";");
    const double balance = StringUtil::StringToDouble(words.at(3));
    mCards.push_back({words.at(0), words.at(1), words.at(2), std::llround(balance * 100),
                      StringUtil::StringToFloat(words.at(4))});
}

void Wallet::ReadPayment(const std::string& line)
{
    const std::vector<std::string> words = StringUtil::Tokenize(line, ";");
    const Payment payment = {FindCard(words.at(0)), StringUtil::StringToInt64(words.at(1))};
    if (payment.cents <= 0 || !CanPay(payment.card, payment.cents))
    {
        throw std::runtime_error(line);
    }
    Take(payment);
}

int Wallet::FindCard(const std::string& number) const
{
    for (size_t i = 0; i < mCards.size(); ++i)
    {
        if (mCards[i].number == number)
        {
            return static_cast<int>(i);
        }
    }
    return -1;
}

bool Wallet::CanPay(int card, long long cents) const
{
    return card >= 0 && mCards.at(card).cents >= cents;
}

int Wallet::Pay(int card, long long cents)
{
    if (!CanPay(card, cents))
    {
        return -1;
    }
    Take({card, cents});
    std::ofstream file(CommonUtil::GetDataPath(kHistoryFile), std::ios::app);
    file << mCards[card].number << ";" << StringUtil::Int64ToString(cents) << std::endl;
    if (!file)
    {
        QIVO_LOG_ERROR("the payment is not kept");
    }
    if (mOnPaid)
    {
        mOnPaid();
    }
    return static_cast<int>(mPayments.size()) - 1;
}

void Wallet::Take(const Payment& payment)
{
    mCards[payment.card].cents -= payment.cents;
    mPayments.push_back(payment);
}

std::string Wallet::GetPoints(const Payment& payment) const
{
    const float rate = mCards[payment.card].pointsPerUnit;
    return rate > 0 ? StringUtil::RoundOff(rate * payment.cents / 100, 1) : "";
}

std::string MoneyText(long long cents)
{
    return StringUtil::DoubleToString(static_cast<double>(cents) / 100, 2);
}

} // namespace Cards
