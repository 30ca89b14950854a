#include "texts/TextDomain.h"

#include "dlog/PortLog.h"
#include "texts/Catalogue.h"
#include "texts/CatalogueList.h"
#include "texts/LocaleName.h"

#include <libintl.h>

namespace WatchPort
{

namespace fs = std::filesystem;

namespace
{
fs::path CatalogueFile(const Installation& installation, const std::string& language)
{
    return installation.locales / language / "LC_MESSAGES" / (installation.program + ".mo");
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

void BindTextDomain(const Installation& installation, const std::string& language)
{
    bindtextdomain(installation.program.c_str(), installation.locales.c_str());
    bind_textdomain_codeset(installation.program.c_str(), "UTF-8");
    textdomain(installation.program.c_str());
    if (!LeaveOutBrokenCatalogues())
        ReportMissingCatalogue(installation, language);
}

} // namespace WatchPort
