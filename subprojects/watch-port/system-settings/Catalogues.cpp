#include "system-settings/Catalogues.h"

#include "system-settings/LocaleName.h"

#include <clocale>
#include <cstdlib>
#include <cstring>
#include <libintl.h>

void BeginCatalogues(const std::string& language)
{
    const char* preset = std::getenv("LANGUAGE");
    if (!preset || !*preset)
        ChangeCatalogues(language);
}

void ChangeCatalogues(const std::string& language)
{
    std::string list;
    for (const std::string& name : ListCatalogues(language))
        list += list.empty() ? name : ":" + name;
    setenv("LANGUAGE", list.c_str(), 1);
    // Gettext keeps its last results until a domain is bound or chosen.
    textdomain(textdomain(nullptr));
}

void LeaveLocaleC()
{
    for (const int category : {LC_MESSAGES, LC_CTYPE})
    {
        if (std::strcmp(std::setlocale(category, nullptr), "C") == 0)
            std::setlocale(category, "C.UTF-8");
    }
}
