// What the log makes of any bytes.

#include "base/Printable.h"
#include "base/Utf8.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>

using namespace WatchPort;

namespace
{
// One line of UTF-8 without control characters stays as it is.
void CheckIsPlain(const std::string& text)
{
    if (!IsUtf8(text) || Printable(text) != text ||
        text.find_first_of("\n\r\033") != std::string::npos)
        std::abort();
}
} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const std::string text(data, data + size);
    const std::string stripped = Printable(text, Colours::Strip);
    CheckIsPlain(stripped);
    CheckIsPlain(Printable(text, Colours::Escape));
    if (Printable(Printable(text, Colours::Keep), Colours::Strip) != stripped)
        std::abort();
    return 0;
}
