#include "AppTalk.h"

#include <Ecore.h>
#include <cstdio>
#include <cstdlib>
#include <unistd.h>
#include <utility>

namespace
{
std::function<void(const std::string&)> sObey;

Eina_Bool SInputCB(void*, Ecore_Fd_Handler* handler)
{
    static std::string text;
    char piece[256];
    const ssize_t length = read(ecore_main_fd_handler_fd_get(handler), piece, sizeof piece);
    if (length <= 0)
        return ECORE_CALLBACK_CANCEL;
    text.append(piece, static_cast<size_t>(length));
    for (size_t end = text.find('\n'); end != std::string::npos; end = text.find('\n'))
    {
        const std::string line = text.substr(0, end);
        text.erase(0, end + 1);
        sObey(line);
    }
    return ECORE_CALLBACK_RENEW;
}

bool SExtraData(app_control_h request, const char* key, void* data)
{
    char* value = nullptr;
    app_control_get_extra_data(request, key, &value);
    const std::string text = value;
    *static_cast<std::string*>(data) +=
        std::string(" ") + key + "=" +
        (text.size() > 100 ? std::to_string(text.size()) + " bytes" : text);
    std::free(value);
    return true;
}
} // namespace

void Say(const std::string& line)
{
    std::puts(line.c_str());
    std::fflush(stdout);
}

void ObeyInput(std::function<void(const std::string& line)> obey)
{
    sObey = std::move(obey);
    ecore_main_fd_handler_add(STDIN_FILENO, ECORE_FD_READ, SInputCB, nullptr, nullptr, nullptr);
}

std::string Describe(app_control_h request)
{
    char* operation = nullptr;
    app_control_get_operation(request, &operation);
    std::string text = operation;
    std::free(operation);
    app_control_foreach_extra_data(request, SExtraData, &text);
    return text;
}
