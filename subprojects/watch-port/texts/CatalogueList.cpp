#include "texts/CatalogueList.h"

#include "dlog/PortLog.h"
#include "texts/Catalogue.h"
#include "texts/LocaleName.h"

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <libintl.h>
#include <string_view>
#include <vector>

namespace WatchPort
{

namespace
{
namespace fs = std::filesystem;

void SetList(const std::vector<std::string>& names)
{
    std::string list;
    for (const std::string& name : names)
        list += list.empty() ? name : ":" + name;
    // Without a list gettext would go by the locale; "C" has no catalogue.
    setenv("LANGUAGE", list.empty() ? "C" : list.c_str(), 1);
    // Gettext keeps its last results until a domain is bound or chosen.
    textdomain(textdomain(nullptr));
}

std::vector<std::string> GetList()
{
    std::vector<std::string> names;
    const char* value = std::getenv("LANGUAGE");
    for (std::string_view list = value ? value : ""; !list.empty();)
    {
        const std::string_view name = list.substr(0, list.find(':'));
        names.emplace_back(name);
        list.remove_prefix(std::min(name.size() + 1, list.size()));
    }
    return names;
}

std::string_view LanguageOf(std::string_view name)
{
    return name.substr(0, name.find_first_of("_.@"));
}

// From the sign on to the next part; empty when the name has none.
std::string_view PartOf(std::string_view name, char sign)
{
    const size_t begin = std::min(name.find(sign), name.size());
    return name.substr(begin, name.find_first_of(".@", begin + 1) - begin);
}

bool IsEmptyOrEqual(std::string_view part, std::string_view other)
{
    return part.empty() || part == other;
}

// For "sr_RS@latin" gettext also looks in "sr_RS" and "sr", but not in "sr_ME"; what is no locale's
// name may be an alias of any.
bool MayLeadTo(std::string_view folder, std::string_view name)
{
    return !NormaliseLocale(name) || (LanguageOf(name) == LanguageOf(folder) &&
                                      IsEmptyOrEqual(PartOf(folder, '_'), PartOf(name, '_')) &&
                                      IsEmptyOrEqual(PartOf(folder, '@'), PartOf(name, '@')));
}

// Gettext can be given what it cannot open, but nothing that it would fall over.
bool IsUsable(const fs::path& file)
{
    const CatalogueState state = CheckCatalogue(file);
    if (state == CatalogueState::Sound || state == CatalogueState::Unreadable)
        return true;
    PORT_LOG_WARN("catalogue \"%s\" is %s: it is not used", file.c_str(),
                  state == CatalogueState::TooLarge ? "larger than 16 MiB" : "broken");
    return false;
}
} // namespace

void BeginCatalogues(const std::string& language)
{
    const char* preset = std::getenv("LANGUAGE");
    if (!preset || !*preset)
        SetList(ListCatalogues(language));
}

void ChangeCatalogues(const std::string& language)
{
    SetList(ListCatalogues(language));
    LeaveOutBrokenCatalogues();
}

bool LeaveOutBrokenCatalogues()
{
    const std::string domain = textdomain(nullptr);
    const fs::path root = bindtextdomain(domain.c_str(), nullptr);
    std::vector<std::string> names = GetList();
    const size_t count = names.size();
    std::error_code error;
    for (fs::directory_iterator entry(root, error), end; entry != end; entry.increment(error))
    {
        const auto leads = [folder = entry->path().filename().string()](const std::string& name)
        { return MayLeadTo(folder, name); };
        if (std::any_of(names.begin(), names.end(), leads) &&
            !IsUsable(entry->path() / "LC_MESSAGES" / (domain + ".mo")))
            names.erase(std::remove_if(names.begin(), names.end(), leads), names.end());
    }
    if (names.size() == count)
        return false;
    SetList(names);
    return true;
}

} // namespace WatchPort
