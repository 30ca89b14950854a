// Sends one launch request: launch_probe [--no-loop] APP_ID OPERATION [KEY VALUE]...
// An empty operation is the default one. Without a loop, nobody waits for the answer. Prints what
// came of it.

#include <Ecore.h>
#include <app_control.h>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <vector>

namespace
{
void Say(const std::string& text)
{
    std::puts(text.c_str());
    std::fflush(stdout);
}

void SReply(app_control_h request, app_control_h reply, app_control_result_e result, void* data)
{
    char* operation = nullptr;
    app_control_get_operation(request, &operation);
    Say("answer " + std::to_string(result) + " to " + operation + " for " +
        static_cast<const char*>(data) + (reply == nullptr ? "" : " with data"));
    std::free(operation);
    ecore_main_loop_quit();
}

int Send(const std::vector<std::string>& arguments, app_control_reply_cb callback)
{
    static char userData[] = "user-data";
    app_control_h request = nullptr;
    app_control_create(&request);
    app_control_set_app_id(request, arguments.at(0).c_str());
    if (!arguments.at(1).empty())
        app_control_set_operation(request, arguments[1].c_str());
    for (size_t i = 2; i + 1 < arguments.size(); i += 2)
        app_control_add_extra_data(request, arguments[i].c_str(), arguments[i + 1].c_str());
    const int result = app_control_send_launch_request(request, callback, userData);
    app_control_destroy(request);
    Say("sent " + std::to_string(result));
    return result;
}
} // namespace

int main(int argc, char** argv)
{
    std::vector<std::string> arguments(argv + 1, argv + argc);
    const bool hasLoop = arguments.at(0) != "--no-loop";
    if (!hasLoop)
        arguments.erase(arguments.begin());
    ecore_app_no_system_modules();
    ecore_init();
    if (Send(arguments, hasLoop ? SReply : nullptr) == 0 && hasLoop)
        ecore_main_loop_begin();
    ecore_shutdown();
    return 0;
}
