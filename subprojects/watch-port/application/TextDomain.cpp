#include "application/TextDomain.h"

#include "application/Catalogue.h"
#include "dlog/dlog.h"
#include "system-settings/system_settings.h"

#include <clocale>
#include <cstdlib>
#include <libintl.h>
#include <memory>
#include <string>

namespace fs = std::filesystem;

namespace
{
fs::path CatalogueFile(const Installation& installation, const std::string& language)
{
    return installation.locales / language / "LC_MESSAGES" / (installation.program + ".mo");
}

fs::path FindBrokenCatalogue(const Installation& installation)
{
    std::error_code error;
    for (fs::directory_iterator language(installation.locales, error), end; language != end;
         language.increment(error))
    {
        const fs::path file = CatalogueFile(installation, language->path().filename());
        if (CheckCatalogue(file) == CatalogueState::Broken)
            return file;
    }
    return {};
}

// Without the encoding and the variant: catalogues are named "ko_KR" or "ko".
std::string SystemLanguage()
{
    char* value = nullptr;
    if (system_settings_get_value_string(SYSTEM_SETTINGS_KEY_LOCALE_LANGUAGE, &value) != 0)
        return "en";
    const std::unique_ptr<char, decltype(&std::free)> owner(value, std::free);
    const std::string language(value);
    return language.substr(0, language.find_first_of(".@"));
}

bool HasCatalogue(const Installation& installation, const std::string& language)
{
    const std::string general = language.substr(0, language.find('_'));
    return CheckCatalogue(CatalogueFile(installation, language)) == CatalogueState::Sound ||
           CheckCatalogue(CatalogueFile(installation, general)) == CatalogueState::Sound;
}

void ReportMissingCatalogue(const Installation& installation)
{
    const std::string language = SystemLanguage();
    if (HasCatalogue(installation, language))
        return;
    __dlog_print(LOG_ID_MAIN, DLOG_WARN, "WATCH_PORT",
                 R"(no catalogue "%s.mo" for the language "%s" below "%s": %s)",
                 installation.program.c_str(), language.c_str(), installation.locales.c_str(),
                 HasCatalogue(installation, "en") ? "texts are English" : "texts are message ids");
}
} // namespace

void SetProgramLocale()
{
    const char* locale = std::setlocale(LC_ALL, "");
    const std::string messages = locale == nullptr ? "C" : std::setlocale(LC_MESSAGES, nullptr);
    if (messages == "C" || messages == "POSIX")
        std::setlocale(LC_ALL, "C.UTF-8");
}

void BindTextDomain(const Installation& installation)
{
    const fs::path broken = FindBrokenCatalogue(installation);
    if (!broken.empty())
    {
        __dlog_print(LOG_ID_MAIN, DLOG_WARN, "WATCH_PORT",
                     "catalogue \"%s\" is broken: texts are message ids", broken.c_str());
        return;
    }
    bindtextdomain(installation.program.c_str(), installation.locales.c_str());
    bind_textdomain_codeset(installation.program.c_str(), "UTF-8");
    textdomain(installation.program.c_str());
    ReportMissingCatalogue(installation);
}
