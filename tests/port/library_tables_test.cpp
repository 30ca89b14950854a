#include "application/LibraryTables.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <cstdlib>
#include <dlfcn.h>
#include <fstream>
#include <link.h>
#include <string>

namespace
{
// Reads each page of the segments in which libraries begin, as the linker does with many. Whole
// pages hold what AddressSanitizer puts between variables, so this reading is not checked.
[[gnu::no_sanitize_address]] int STouchCB(dl_phdr_info* library, size_t, void*)
{
    constexpr size_t kPage = 4096;
    for (int i = 0; i < library->dlpi_phnum; ++i)
    {
        const ElfW(Phdr)& segment = library->dlpi_phdr[i];
        if (segment.p_type != PT_LOAD || segment.p_offset != 0)
            continue;
        const auto* begin =
            reinterpret_cast<const volatile unsigned char*>(library->dlpi_addr + segment.p_vaddr);
        for (size_t offset = 0; offset < segment.p_filesz; offset += kPage)
            begin[offset];
    }
    return 0;
}

// What is resident of the parts that are only read and in which libraries begin.
long TablesKib()
{
    std::ifstream maps("/proc/self/smaps");
    long sum = 0;
    bool isOfTables = false;
    for (std::string line; std::getline(maps, line);)
    {
        // The line that begins a part names its addresses, the others begin with a name and a
        // colon.
        if (line.find(' ') < line.find(':'))
            isOfTables = line.find(" r--p 00000000 ") != std::string::npos &&
                         line.find(".so") != std::string::npos;
        else if (isOfTables && line.rfind("Rss:", 0) == 0)
            sum += std::strtol(line.c_str() + sizeof("Rss:"), nullptr, 10);
    }
    return sum;
}

TEST(LibraryTablesTest, TakeNextToNoMemoryOnceTheyAreReleased)
{
    dl_iterate_phdr(STouchCB, nullptr);
    const long before = TablesKib();

    ReleaseLibraryTables();

    EXPECT_LT(TablesKib(), before / 10) << before;
}

TEST(LibraryTablesTest, AreReadAgainByWhoAsksForASymbol)
{
    const void* const before = dlsym(RTLD_DEFAULT, "gnu_get_libc_version");
    ASSERT_NE(before, nullptr);

    ReleaseLibraryTables();

    EXPECT_EQ(dlsym(RTLD_DEFAULT, "gnu_get_libc_version"), before);
}

TEST(LibraryTablesTest, StayWhereTheLinkerHasWrittenIntoThem)
{
    void* library = dlopen(std::getenv("CHANGED_LIBRARY"), RTLD_NOW);
    ASSERT_NE(library, nullptr) << dlerror();
    const auto* address = static_cast<int* const*>(dlsym(library, "changed_address"));
    const void* number = dlsym(library, "changed_number");

    ReleaseLibraryTables();

    EXPECT_EQ(*address, number);
}
} // namespace
