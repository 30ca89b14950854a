#include "application/OwnId.h"

#include "app-control/ApplicationId.h"
#include "dlog/dlog.h"

#include <fstream>

std::string ReadOwnId(const Installation& installation)
{
    const auto file = installation.resources / (installation.program + ".id");
    std::ifstream stream(file);
    if (!stream.is_open())
        return {};
    std::string id;
    std::getline(stream, id);
    if (IsApplicationId(id))
        return id;
    __dlog_print(LOG_ID_MAIN, DLOG_WARN, "WATCH_PORT",
                 "\"%s\" holds no application id such as \"org.example.Clock\": "
                 "launch requests over the session bus do not arrive",
                 file.c_str());
    return {};
}
