#include "application/access/AccessNews.h"

#include "application/access/AccessWriter.h"
#include "application/access/objects/TextLayout.h"

#include <algorithm>

namespace WatchPort
{

namespace
{
constexpr char kObjectEvent[] = "org.a11y.atspi.Event.Object";
constexpr char kWindowEvent[] = "org.a11y.atspi.Event.Window";

class News
{
public:
    News(const char* bus, const std::function<void(BusMessage)>& send) : mBus(bus), mSend(send) {}

    template <typename Fill>
    void Tell(unsigned id, const char* interface, const char* member, const char* detail,
              std::pair<int, int> numbers, const char* signature, Fill fill) const
    {
        BusMessage signal(dbus_message_new_signal(AccessPath(id).c_str(), interface, member));
        RequireMemory(signal != nullptr);
        AccessWriter writer(signal.get(), mBus);
        writer.AddText(detail);
        writer.AddNumber(numbers.first);
        writer.AddNumber(numbers.second);
        writer.AddVariant(signature, fill);
        writer.AddArray("{sv}", [](AccessWriter&) {});
        mSend(std::move(signal));
    }

    void TellText(unsigned id, const char* interface, const char* member, const char* detail,
                  std::pair<int, int> numbers, const std::string& text) const
    {
        Tell(id, interface, member, detail, numbers, "s",
             [&text](AccessWriter& value) { value.AddText(text); });
    }

    void TellState(unsigned id, const char* state, bool isSet) const
    {
        Tell(id, kObjectEvent, "StateChanged", state, {isSet ? 1 : 0, 0}, "i",
             [](AccessWriter& value) { value.AddNumber(0); });
    }

    void TellChild(unsigned parent, const char* detail, int index, unsigned child) const
    {
        Tell(parent, kObjectEvent, "ChildrenChanged", detail, {index, 0}, "(so)",
             [child](AccessWriter& value) { value.AddReference(child); });
    }

private:
    const char* const mBus;
    const std::function<void(BusMessage)>& mSend;
};

bool Has(const std::vector<unsigned>& ids, unsigned id)
{
    return std::find(ids.begin(), ids.end(), id) != ids.end();
}

// Each child that is only in the first of two lists.
void TellChildren(const News& news, unsigned parent, const char* detail,
                  const std::vector<unsigned>& children, const std::vector<unsigned>& others)
{
    for (size_t index = 0; index < children.size(); ++index)
        if (!Has(others, children[index]))
            news.TellChild(parent, detail, static_cast<int>(index), children[index]);
}

void TellName(const News& news, const Accessible& before, const Accessible& now)
{
    if (before.name == now.name)
        return;
    news.TellText(now.id, kObjectEvent, "PropertyChange", "accessible-name", {0, 0}, now.name);
    if (now.role != AccessRole::Label)
        return;
    for (const auto& [detail, text] : {std::pair("delete", &before.name), {"insert", &now.name}})
        news.TellText(now.id, kObjectEvent, "TextChanged", detail, {0, CountCharacters(*text)},
                      *text);
}

void TellStates(const News& news, const Accessible& before, const Accessible& now)
{
    if (before.isShowing != now.isShowing)
        news.TellState(now.id, "showing", now.isShowing);
    if (before.isActive != now.isActive)
    {
        news.TellText(now.id, kWindowEvent, now.isActive ? "Activate" : "Deactivate", "", {0, 0},
                      now.name);
        news.TellState(now.id, "active", now.isActive);
    }
    if (before.isChecked != now.isChecked)
        news.TellState(now.id, "checked", now.isChecked);
    if (before.isDisabled != now.isDisabled)
        for (const char* state : {"enabled", "sensitive"})
            news.TellState(now.id, state, !now.isDisabled);
    if (before.isFocused != now.isFocused)
        news.TellState(now.id, "focused", now.isFocused);
}

const Accessible& FindOr(const AccessTree::Objects& objects, unsigned id,
                         const Accessible& otherwise)
{
    const auto found = objects.find(id);
    return found == objects.end() ? otherwise : found->second;
}
} // namespace

void TellNews(const AccessTree::Objects& before, const AccessTree::Objects& now, const char* bus,
              const std::function<void(BusMessage)>& send)
{
    const News news(bus, send);
    const Accessible nothing;
    for (const auto& [id, former] : before)
        TellChildren(news, id, "remove", former.children, FindOr(now, id, nothing).children);
    for (const auto& [id, object] : now)
        TellChildren(news, id, "add", object.children, FindOr(before, id, nothing).children);
    for (const auto& [id, object] : now)
    {
        // A new one is as it is; only what it has of its window is news.
        Accessible fresh = object;
        fresh.isActive = false;
        fresh.isFocused = false;
        const Accessible& former = FindOr(before, id, fresh);
        TellName(news, former, object);
        TellStates(news, former, object);
    }
}

} // namespace WatchPort
