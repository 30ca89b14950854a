#include "texts/Catalogue.h"

#include <cstdint>
#include <cstring>
#include <fcntl.h>
#include <string>
#include <sys/stat.h>
#include <unistd.h>

namespace WatchPort
{

namespace
{
constexpr off_t kLargest = off_t{16} << 20;

constexpr uint32_t kMagic = 0x950412de;
constexpr uint32_t kMagicSwapped = 0xde120495;

// The header's fields, each four bytes, in the order of GNU gettext's format, revision 0.
enum Field
{
    kFieldMagic,
    kFieldRevision,
    kFieldCount,
    kFieldOriginals,
    kFieldTranslations,
    kFieldHashSize,
    kFieldHashes,
    kFieldEnd,
};

class Reader
{
public:
    explicit Reader(std::string_view bytes) : mBytes(bytes), mIsSwapped(Word(0) == kMagicSwapped) {}

    uint64_t Get(uint64_t offset) const
    {
        const uint32_t word = Word(offset);
        return mIsSwapped ? __builtin_bswap32(word) : word;
    }
    uint64_t Get(Field field) const { return Get(uint64_t{4} * field); }

    bool Holds(uint64_t offset, uint64_t size) const
    {
        return offset <= mBytes.size() && size <= mBytes.size() - offset;
    }

    // A table of pairs of length and offset, one for each text; each text ends with a null byte.
    bool HoldsTexts(uint64_t table, uint64_t count) const
    {
        if (table % 4 != 0 || !Holds(table, count * 8))
            return false;
        for (uint64_t entry = table; entry < table + count * 8; entry += 8)
        {
            const uint64_t length = Get(entry);
            const uint64_t offset = Get(entry + 4);
            if (!Holds(offset, length + 1) || mBytes[offset + length] != '\0')
                return false;
        }
        return true;
    }

    // The hash table holds the numbers of texts, from 1; 0 is a free place.
    bool HoldsHashes(uint64_t table, uint64_t size, uint64_t count) const
    {
        if (size != 0 && (table % 4 != 0 || !Holds(table, size * 4)))
            return false;
        for (uint64_t entry = table; entry < table + size * 4; entry += 4)
        {
            if (Get(entry) > count)
                return false;
        }
        return true;
    }

private:
    uint32_t Word(uint64_t offset) const
    {
        uint32_t word = 0;
        std::memcpy(&word, mBytes.data() + offset, sizeof word);
        return word;
    }

    std::string_view mBytes;
    bool mIsSwapped;
};

CatalogueState CheckOpened(int descriptor)
{
    struct stat status = {};
    if (fstat(descriptor, &status) != 0 || !S_ISREG(status.st_mode))
        return CatalogueState::Broken;
    if (status.st_size > kLargest)
        return CatalogueState::TooLarge;
    std::string bytes(static_cast<size_t>(status.st_size), '\0');
    const ssize_t count = read(descriptor, bytes.data(), bytes.size());
    bytes.resize(count < 0 ? 0 : static_cast<size_t>(count));
    return IsCatalogue(bytes) ? CatalogueState::Sound : CatalogueState::Broken;
}
} // namespace

bool IsCatalogue(std::string_view bytes)
{
    if (bytes.size() < size_t{4} * kFieldEnd)
        return false;
    const Reader reader(bytes);
    const uint64_t count = reader.Get(kFieldCount);
    return reader.Get(kFieldMagic) == kMagic && reader.Get(kFieldRevision) == 0 &&
           reader.HoldsTexts(reader.Get(kFieldOriginals), count) &&
           reader.HoldsTexts(reader.Get(kFieldTranslations), count) &&
           reader.HoldsHashes(reader.Get(kFieldHashes), reader.Get(kFieldHashSize), count);
}

CatalogueState CheckCatalogue(const std::filesystem::path& file)
{
    const int descriptor = open(file.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK);
    if (descriptor < 0)
        return CatalogueState::Unreadable;
    const CatalogueState state = CheckOpened(descriptor);
    close(descriptor);
    return state;
}

} // namespace WatchPort
