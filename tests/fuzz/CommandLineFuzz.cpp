// The command line of a program; each line of the input is an argument.

#include "application/CommandLine.h"
#include "base/Printable.h"
#include "base/Utf8.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <sstream>

using namespace WatchPort;

namespace
{
// An error is one line of text, whatever the argument was that it quotes.
void CheckError(const std::string& error)
{
    if (Printable(error) != error)
        std::abort();
}

void CheckRequest(const CommandLine& line)
{
    if (line.request.operation.empty() || !IsUtf8(line.request.operation))
        std::abort();
    for (const auto& [key, value] : line.request.extraData)
    {
        if (key.empty() || !IsUtf8(key) || !IsUtf8(value))
            std::abort();
    }
}
} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    std::istringstream input(std::string(data, data + size));
    std::vector<std::string> arguments;
    for (std::string argument; std::getline(input, argument);)
        arguments.push_back(argument);
    const CommandLine line = ParseCommandLine(arguments);
    if (line.error.empty())
        CheckRequest(line);
    else
        CheckError(line.error);
    return 0;
}
