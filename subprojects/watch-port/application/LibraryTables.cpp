#include "application/LibraryTables.h"

#include <algorithm>
#include <link.h>
#include <sys/mman.h>
#include <unistd.h>

namespace
{
bool IsTextChange(const ElfW(Dyn) & entry)
{
    return entry.d_tag == DT_TEXTREL ||
           (entry.d_tag == DT_FLAGS && (entry.d_un.d_val & DF_TEXTREL) != 0);
}

// What the linker has written into a segment that is only read would be lost with its memory.
bool IsTextChanged(const dl_phdr_info& library)
{
    const auto* end = library.dlpi_phdr + library.dlpi_phnum;
    const auto* header =
        std::find_if(library.dlpi_phdr, end,
                     [](const ElfW(Phdr) & candidate) { return candidate.p_type == PT_DYNAMIC; });
    if (header == end)
        return false;
    const auto* entry = reinterpret_cast<const ElfW(Dyn)*>(library.dlpi_addr + header->p_vaddr);
    while (entry->d_tag != DT_NULL && !IsTextChange(*entry))
        ++entry;
    return entry->d_tag != DT_NULL;
}

void Release(uintptr_t begin, size_t size)
{
    const auto page = static_cast<uintptr_t>(sysconf(_SC_PAGESIZE));
    const uintptr_t before = begin % page;
    madvise(reinterpret_cast<void*>(begin - before), before + size, MADV_DONTNEED);
}

bool IsOfTables(const ElfW(Phdr) & segment)
{
    return segment.p_type == PT_LOAD && segment.p_offset == 0 && segment.p_flags == PF_R;
}

int SReleaseCB(dl_phdr_info* library, size_t, void*)
{
    const auto* end = library->dlpi_phdr + library->dlpi_phnum;
    const auto* tables = std::find_if(library->dlpi_phdr, end, IsOfTables);
    // The headers are part of what is released: looked at again, they would come back.
    if (tables != end && !IsTextChanged(*library))
        Release(library->dlpi_addr + tables->p_vaddr, tables->p_memsz);
    return 0;
}
} // namespace

void ReleaseLibraryTables()
{
    dl_iterate_phdr(SReleaseCB, nullptr);
}
