#include "application/CommandLine.h"

#include "base/Printable.h"
#include "base/Utf8.h"

#include <optional>

namespace WatchPort
{

namespace
{
constexpr char kAccepted[] = "accepted are --operation OP, --extra KEY=VALUE, --service and --help";

// Reads options one by one into a command line.
class Parser
{
public:
    explicit Parser(const std::vector<std::string>& arguments) : mArguments(arguments) {}

    CommandLine Parse()
    {
        for (mNext = 0; mNext < mArguments.size() && mResult.error.empty();)
            ReadArgument(mArguments[mNext++]);
        if (mResult.error.empty() && mResult.isService && mHasRequest)
            mResult.error = "--service waits for requests: it takes no --operation or --extra";
        return mResult;
    }

private:
    void ReadArgument(const std::string& argument)
    {
        const size_t equals = argument.find('=');
        const std::string name = argument.substr(0, equals);
        if (argument == "--help")
            mResult.isHelpWanted = true;
        else if (argument == "--service")
            mResult.isService = true;
        else if (name == "--operation")
            SetOperation(ReadValue(argument, equals));
        else if (name == "--extra")
            AddExtra(ReadValue(argument, equals));
        else
            mResult.error = (argument.rfind('-', 0) == 0 ? "unknown option " : "stray argument ") +
                            Quoted(argument) + "; " + kAccepted;
    }

    // A next argument that looks like an option is none: its "=" was forgotten, or the value.
    std::optional<std::string> ReadValue(const std::string& argument, size_t equals)
    {
        if (equals != std::string::npos)
            return argument.substr(equals + 1);
        if (mNext < mArguments.size() && mArguments[mNext].rfind("--", 0) != 0)
            return mArguments[mNext++];
        mResult.error = argument + " has no value; " + kAccepted +
                        " (a value that starts with \"--\" takes the form " + argument + "=VALUE)";
        return std::nullopt;
    }

    void SetOperation(const std::optional<std::string>& value)
    {
        if (!value)
            return;
        if (value->empty() || !IsUtf8(*value))
            mResult.error =
                "--operation " + Quoted(*value) + ": a text in UTF-8 that is not empty is accepted";
        mResult.request.operation = *value;
        mHasRequest = true;
    }

    void AddExtra(const std::optional<std::string>& value)
    {
        if (!value)
            return;
        const size_t equals = value->find('=');
        if (equals == std::string::npos || equals == 0 || !IsUtf8(*value))
            mResult.error = "--extra " + Quoted(*value) + ": KEY=VALUE in UTF-8 is accepted, " +
                            "with a key that is not empty";
        else
            mResult.request.extraData[value->substr(0, equals)] = value->substr(equals + 1);
        mHasRequest = true;
    }

    const std::vector<std::string>& mArguments;
    size_t mNext = 0;
    bool mHasRequest = false;
    CommandLine mResult;
};
} // namespace

CommandLine ParseCommandLine(const std::vector<std::string>& arguments)
{
    return Parser(arguments).Parse();
}

std::string CommandLineUsage(const std::string& program)
{
    return "Usage: " + program +
           " [--operation OP] [--extra KEY=VALUE]...\n"
           "       " +
           program +
           " --service\n"
           "\n"
           "Starts the application with a launch request, or passes the request to the\n"
           "application that is already running.\n"
           "\n"
           "  --operation OP     what to do (without it: " APP_CONTROL_OPERATION_DEFAULT ")\n"
           "  --extra KEY=VALUE  extra data of the request; may be given several times\n"
           "  --service          wait for the first request on the session bus, ten seconds at\n"
           "                     most; for the bus's own use\n"
           "  --help             print this text and end\n";
}

} // namespace WatchPort
