#include "texts/LocaleName.h"

#include <algorithm>

namespace WatchPort
{

namespace
{
struct LocaleParts
{
    std::string_view language;
    std::optional<std::string_view> territory;
    std::optional<std::string_view> codeset;
    std::optional<std::string_view> modifier;
};

/** A catalogue that serves readers of a language for want of one of their territory. */
struct NearCatalogue
{
    std::string_view language;
    std::string_view territories; /**< Empty: all of them. */
    std::string_view name;
};

// Better ones before worse. Norwegian, Tagalog, Hebrew and Indonesian have a second, older code.
constexpr NearCatalogue kNearCatalogues[] = {
    {"es", "AR BO CL CO CR CU DO EC GT HN MX NI PA PE PR PY SV US UY VE", "es_419"},
    {"in", "", "id"},
    {"iw", "", "he"},
    {"no", "", "nb"},
    {"tl", "", "fil"},
    {"zh", "HK MO", "zh_HK"},
    {"zh", "HK MO TW", "zh_TW"},
    {"zh", "", "zh_CN"},
};

bool IsUpper(char c)
{
    return c >= 'A' && c <= 'Z';
}

bool IsLetter(char c)
{
    return IsUpper(c) || (c >= 'a' && c <= 'z');
}

bool IsDigit(char c)
{
    return c >= '0' && c <= '9';
}

bool IsWordCharacter(char c)
{
    return IsLetter(c) || IsDigit(c) || c == '-';
}

bool IsWord(std::string_view text)
{
    constexpr size_t kLongest = 32;
    return !text.empty() && text.size() <= kLongest &&
           std::all_of(text.begin(), text.end(), IsWordCharacter);
}

// Cuts what follows the separator off `text`; nothing when there is no separator.
std::optional<std::string_view> CutAfter(std::string_view& text, char separator)
{
    const size_t at = text.find(separator);
    if (at == std::string_view::npos)
        return std::nullopt;
    const std::string_view rest = text.substr(at + 1);
    text = text.substr(0, at);
    return rest;
}

LocaleParts Split(std::string_view name)
{
    const auto modifier = CutAfter(name, '@');
    const auto codeset = CutAfter(name, '.');
    const auto territory = CutAfter(name, '_');
    return {name, territory, codeset, modifier};
}

bool IsLanguage(std::string_view text)
{
    return (text.size() == 2 || text.size() == 3) &&
           std::all_of(text.begin(), text.end(), IsLetter);
}

bool IsTerritory(std::string_view text)
{
    return (text.size() == 2 && std::all_of(text.begin(), text.end(), IsUpper)) ||
           (text.size() == 3 && std::all_of(text.begin(), text.end(), IsDigit));
}

bool IsUnset(const LocaleParts& parts)
{
    return !parts.territory && (parts.language == "C" || parts.language == "POSIX");
}

bool IsLocale(const LocaleParts& parts)
{
    return (IsLanguage(parts.language) || IsUnset(parts)) &&
           IsTerritory(parts.territory.value_or("XX")) && IsWord(parts.codeset.value_or("x")) &&
           IsWord(parts.modifier.value_or("x"));
}

std::string Lower(std::string_view text)
{
    std::string lower(text);
    std::transform(lower.begin(), lower.end(), lower.begin(),
                   [](char c) { return IsUpper(c) ? static_cast<char>(c - 'A' + 'a') : c; });
    return lower;
}

std::string NormaliseCodeset(std::string_view codeset)
{
    const std::string lower = Lower(codeset);
    return lower == "utf8" || lower == "utf-8" ? "UTF-8" : std::string(codeset);
}

std::string Join(const LocaleParts& parts)
{
    std::string name(parts.language);
    if (parts.territory)
        name.append("_").append(*parts.territory);
    if (parts.codeset)
        name.append(".").append(*parts.codeset);
    if (parts.modifier)
        name.append("@").append(*parts.modifier);
    return name;
}

bool IsNear(const NearCatalogue& catalogue, const LocaleParts& parts)
{
    return catalogue.language == parts.language &&
           (catalogue.territories.empty() ||
            catalogue.territories.find(parts.territory.value_or("-")) != std::string_view::npos);
}

void AddOnce(std::vector<std::string>& names, std::string_view name)
{
    if (std::find(names.begin(), names.end(), name) == names.end())
        names.emplace_back(name);
}
} // namespace

std::optional<std::string> NormaliseLocale(std::string_view name)
{
    LocaleParts parts = Split(name);
    if (!IsLocale(parts))
        return std::nullopt;
    if (IsUnset(parts))
        return kDefaultLocale;
    const std::string codeset = NormaliseCodeset(parts.codeset.value_or("UTF-8"));
    parts.codeset = codeset;
    return Join(parts);
}

std::vector<std::string> ListCatalogues(std::string_view locale)
{
    LocaleParts parts = Split(locale);
    parts.codeset.reset();
    std::vector<std::string> names = {Join(parts)};
    for (const NearCatalogue& catalogue : kNearCatalogues)
    {
        if (IsNear(catalogue, parts))
            AddOnce(names, catalogue.name);
    }
    parts.territory.reset();
    AddOnce(names, Join(parts));
    AddOnce(names, parts.language);
    AddOnce(names, "en");
    return names;
}

std::string_view TerritoryOf(std::string_view locale)
{
    return Split(locale).territory.value_or("");
}

} // namespace WatchPort
