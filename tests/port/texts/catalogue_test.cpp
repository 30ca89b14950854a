#include "texts/Catalogue.h"

#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <string>
#include <unistd.h>

using namespace WatchPort;

namespace
{
// Offsets of the header's fields, and of the tables that follow it.
constexpr size_t kRevision = 4;
constexpr size_t kCount = 8;
constexpr size_t kOriginals = 12;
constexpr size_t kTranslations = 16;
constexpr size_t kHashSize = 20;
constexpr size_t kHashes = 24;
constexpr size_t kFirstText = 28;
constexpr size_t kHashTable = 44;

void Put(std::string& bytes, size_t offset, uint32_t value)
{
    std::memcpy(&bytes[offset], &value, sizeof value);
}

// One message, "id" to "text", with a hash table of one place.
std::string SmallCatalogue()
{
    std::string bytes(48, '\0');
    const uint32_t words[] = {0x950412de, 0, 1, 28, 36, 1, 44, 2, 48, 4, 51, 1};
    std::memcpy(bytes.data(), words, sizeof words);
    return bytes + std::string("id\0text\0", 8);
}

std::string With(size_t offset, uint32_t value)
{
    std::string bytes = SmallCatalogue();
    Put(bytes, offset, value);
    return bytes;
}
} // namespace

TEST(Catalogue, IsSoundWhenEveryTextLiesWithinIt)
{
    EXPECT_TRUE(IsCatalogue(SmallCatalogue()));
}

TEST(Catalogue, IsSoundInTheOtherByteOrder)
{
    std::string bytes = SmallCatalogue();
    for (size_t word = 0; word < 48; word += 4)
    {
        uint32_t value = 0;
        std::memcpy(&value, &bytes[word], sizeof value);
        Put(bytes, word, __builtin_bswap32(value));
    }
    EXPECT_TRUE(IsCatalogue(bytes));
}

TEST(Catalogue, IsBrokenWhereverItIsCut)
{
    const std::string whole = SmallCatalogue();
    for (size_t length = 0; length < whole.size(); ++length)
        EXPECT_FALSE(IsCatalogue(whole.substr(0, length))) << length;
}

TEST(Catalogue, IsBrokenWhenANumberLeadsOutOfIt)
{
    const size_t fields[] = {
        0,       kRevision,  kCount,         kOriginals,     kTranslations,   kHashSize,
        kHashes, kFirstText, kFirstText + 4, kFirstText + 8, kFirstText + 12, kHashTable};
    for (const size_t field : fields)
    {
        for (const uint32_t value : {0x7fffffffu, 0xffffffffu, 0x20000001u, 57u})
            EXPECT_FALSE(IsCatalogue(With(field, value))) << field << " " << value;
    }
}

TEST(Catalogue, IsBrokenWhenATextDoesNotEnd)
{
    EXPECT_FALSE(IsCatalogue(With(kFirstText, 3)));
}

TEST(Catalogue, FileIsSoundBrokenOrUnreadable)
{
    char name[] = "/tmp/catalogue-XXXXXX";
    close(mkstemp(name));
    EXPECT_EQ(CheckCatalogue(name), CatalogueState::Broken);
    std::ofstream(name) << SmallCatalogue();
    EXPECT_EQ(CheckCatalogue(name), CatalogueState::Sound);
    std::filesystem::remove(name);
    EXPECT_EQ(CheckCatalogue(name), CatalogueState::Unreadable);
    EXPECT_NE(CheckCatalogue("/tmp"), CatalogueState::Sound);
}

TEST(Catalogue, OfEachLanguageIsSoundAsItIsBuilt)
{
    size_t count = 0;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(std::getenv("LOCALES")))
    {
        if (entry.path().extension() != ".mo")
            continue;
        EXPECT_EQ(CheckCatalogue(entry.path()), CatalogueState::Sound) << entry.path();
        ++count;
    }
    EXPECT_GT(count, 80u);
}
