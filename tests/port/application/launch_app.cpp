// An application that launches others and answers them. It prints each callback of its life and
// each reply, and obeys lines on its standard input:
//
//     launch ID OPERATION [KEY=VALUE]...    with a callback
//     notify ID OPERATION [KEY=VALUE]...    without one
//     reply RESULT [KEY=VALUE]...           to the request that came last
//     at-once RESULT [KEY=VALUE]...         to each request from now on, in its callback, twice
//     linger                                to the end of the standard input, once it terminates
//     exit
//
// A request "throw" has its callback throw, and "reply-throws" that of its reply.
//
// The value HUGE is one of a megabyte, which is too much, and LARGE one of 900,000 bytes.

#include "AppTalk.h"

#include <app.h>
#include <sstream>
#include <string>
#include <unistd.h>

namespace
{
app_control_h sLastRequest = nullptr;
std::string sAnswerAtOnce;
bool sLingers = false;

std::string ReadValue(const std::string& word)
{
    if (word == "HUGE")
        return std::string(size_t{1024} * 1024, 'v');
    return word == "LARGE" ? std::string(900000, 'v') : word;
}

app_control_h NewRequest(std::istream& words)
{
    app_control_h request = nullptr;
    app_control_create(&request);
    for (std::string word; words >> word;)
    {
        const size_t equals = word.find('=');
        app_control_add_extra_data(request, word.substr(0, equals).c_str(),
                                   ReadValue(word.substr(equals + 1)).c_str());
    }
    return request;
}

void SReply(app_control_h request, app_control_h reply, app_control_result_e result, void*)
{
    Say("result " + std::to_string(result) + " of " + Describe(request) +
        (reply == nullptr ? " without reply" : ": " + Describe(reply)));
    if (Describe(request).rfind("reply-throws", 0) == 0)
        throw 7;
}

void Launch(std::istream& words, app_control_reply_cb callback)
{
    std::string id;
    std::string operation;
    words >> id >> operation;
    app_control_h request = NewRequest(words);
    app_control_set_app_id(request, id.c_str());
    app_control_set_operation(request, operation.c_str());
    Say("sent " + std::to_string(app_control_send_launch_request(request, callback, nullptr)));
    app_control_destroy(request);
}

void Reply(app_control_h request, std::istream& words)
{
    int result = 0;
    words >> result;
    app_control_h reply = NewRequest(words);
    Say("replied " + std::to_string(app_control_reply_to_launch_request(
                         reply, request, static_cast<app_control_result_e>(result))));
    app_control_destroy(reply);
}

void Obey(const std::string& line)
{
    std::istringstream words(line);
    std::string verb;
    words >> verb;
    if (verb == "launch")
        Launch(words, SReply);
    else if (verb == "notify")
        Launch(words, nullptr);
    else if (verb == "reply")
        Reply(sLastRequest, words);
    else if (verb == "at-once")
        sAnswerAtOnce = line.substr(verb.size());
    else if (verb == "linger")
        sLingers = true;
    else if (verb == "exit")
        ui_app_exit();
    Say("did " + line);
}

bool SCreate(void*)
{
    Say("create");
    ObeyInput(Obey);
    return true;
}

void SAppControl(app_control_h request, void*)
{
    Say("app_control " + Describe(request));
    sLastRequest = request;
    for (int i = 0; i < 2 && !sAnswerAtOnce.empty(); ++i)
    {
        std::istringstream words(sAnswerAtOnce);
        Reply(request, words);
    }
    if (Describe(request).rfind("exit", 0) == 0)
        ui_app_exit();
    if (Describe(request).rfind("throw", 0) == 0)
        throw 7;
}

void STerminate(void*)
{
    Say("terminate");
    char byte = 0;
    while (sLingers && read(STDIN_FILENO, &byte, 1) > 0)
        ;
}
} // namespace

int main(int argc, char** argv)
try
{
    ui_app_lifecycle_callback_s callbacks = {};
    callbacks.create = SCreate;
    callbacks.terminate = STerminate;
    callbacks.app_control = SAppControl;
    return ui_app_main(argc, argv, &callbacks, nullptr);
}
catch (int)
{
    return 99;
}
