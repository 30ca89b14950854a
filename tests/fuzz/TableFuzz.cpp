// The reader of color and font tables, from the file to the attributes.

#include "ui-extension/tables/TableReader.h"

#include <Eina.h>

#include <cstdint>
#include <cstdlib>
#include <string>
#include <sys/mman.h>
#include <unistd.h>

using namespace WatchPort;

namespace
{
class MemoryFile
{
public:
    MemoryFile(const std::uint8_t* data, std::size_t size) : mFd(memfd_create("table", MFD_CLOEXEC))
    {
        if (write(mFd, data, size) != static_cast<ssize_t>(size))
            std::abort();
    }
    ~MemoryFile() { close(mFd); }
    MemoryFile(const MemoryFile&) = delete;
    MemoryFile& operator=(const MemoryFile&) = delete;

    std::string Path() const { return "/proc/self/fd/" + std::to_string(mFd); }

private:
    int mFd;
};

void CheckText(const WatchPort::TableEntry& entry, const char* name, char forbidden)
{
    const auto text = entry.Text(name, forbidden);
    if (!text)
        return;
    if (text->empty() || text->size() > 255)
        std::abort();
    for (const char byte : *text)
    {
        if (WatchPort::IsControl(byte) || byte == forbidden)
            std::abort();
    }
}

void CheckNumber(const WatchPort::TableEntry& entry, const char* name, int least, int most)
{
    const auto number = entry.Number(name, least, most);
    if (number && (*number < least || *number > most))
        std::abort();
}

void CheckTable(const std::string& path, const WatchPort::TableFormat& format)
{
    const auto entries = WatchPort::ReadTable(path.c_str(), format);
    if (!entries)
        return;
    for (const auto& entry : *entries)
    {
        CheckText(entry, "id", '\0');
        CheckText(entry, "name", ':');
        CheckNumber(entry, "r", 0, 255);
        CheckNumber(entry, "size", 1, 1000);
    }
}
} // namespace

extern "C" int LLVMFuzzerInitialize(int*, char***)
{
    setenv("DLOG_LEVEL", "silent", 1);
    eina_init();
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const MemoryFile file(data, size);
    CheckTable(file.Path(), {"ColorTable", "Color"});
    CheckTable(file.Path(), {"FontTable", "Font"});
    return 0;
}
