#include "application/TextDomain.h"

#include "base/FreeDeleter.h"
#include "dlog/PortLog.h"
#include "system-settings/Catalogue.h"
#include "system-settings/Catalogues.h"
#include "system-settings/LocaleName.h"
#include <system_settings.h>

#include <clocale>
#include <libintl.h>
#include <memory>
#include <string>

namespace WatchPort
{

namespace fs = std::filesystem;

namespace
{
fs::path CatalogueFile(const Installation& installation, const std::string& language)
{
    return installation.locales / language / "LC_MESSAGES" / (installation.program + ".mo");
}

std::string SystemLanguage()
{
    char* value = nullptr;
    if (system_settings_get_value_string(SYSTEM_SETTINGS_KEY_LOCALE_LANGUAGE, &value) != 0)
        return kDefaultLocale;
    const std::unique_ptr<char, FreeDeleter> owner(value);
    return value;
}

// Nothing when no catalogue is there.
std::string FindCatalogue(const Installation& installation, const std::string& language)
{
    for (const std::string& name : ListCatalogues(language))
    {
        if (CheckCatalogue(CatalogueFile(installation, name)) == CatalogueState::Sound)
            return name;
    }
    return {};
}

void ReportMissingCatalogue(const Installation& installation, const std::string& locale)
{
    const std::string found = FindCatalogue(installation, locale);
    const std::string language = locale.substr(0, locale.find_first_of(".@"));
    const bool isForeign = found == "en" && language.substr(0, language.find('_')) != "en";
    if (!found.empty() && !isForeign)
        return;
    PORT_LOG_WARN(R"(no catalogue "%s.mo" for the language "%s" below "%s": %s)",
                  installation.program.c_str(), language.c_str(), installation.locales.c_str(),
                  isForeign ? "texts are English" : "texts are message ids");
}
} // namespace

void SetProgramLocale()
{
    const char* locale = std::setlocale(LC_ALL, "");
    const std::string messages = !locale ? "C" : std::setlocale(LC_MESSAGES, nullptr);
    if (messages == "C" || messages == "POSIX")
        std::setlocale(LC_ALL, "C.UTF-8");
}

void BindTextDomain(const Installation& installation)
{
    // Asked for first: it sets the list of catalogues up.
    const std::string locale = SystemLanguage();
    bindtextdomain(installation.program.c_str(), installation.locales.c_str());
    bind_textdomain_codeset(installation.program.c_str(), "UTF-8");
    textdomain(installation.program.c_str());
    if (!LeaveOutBrokenCatalogues())
        ReportMissingCatalogue(installation, locale);
}

} // namespace WatchPort
