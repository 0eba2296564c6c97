#include "Fenwhirl/Platform/IdleMemory.h"
#include "Fenwhirl/Platform/Toolkit/FileDescriptor.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <fcntl.h>
#include <link.h>
#include <malloc.h>
#include <sys/mman.h>
#include <unistd.h>
#include <vector>

namespace Fenwhirl {

namespace {

// Whether every page from `begin` to `end` is still identical to the file, according to the pagemap of
// proc(5). Some graphics drivers patch code although it is not writable, and such pages cannot be read again
// from the file.
bool isAsInItsFile(int pageMap, std::uintptr_t begin, std::uintptr_t end, std::uintptr_t page) {
    constexpr std::uint64_t isFromFile = 1ULL << 61U;
    constexpr std::uint64_t isSwapped = 1ULL << 62U;
    constexpr std::uint64_t isPresent = 1ULL << 63U;
    std::vector<std::uint64_t> entries((end - begin + page - 1) / page);
    const std::size_t size = entries.size() * sizeof(entries[0]);
    const auto place = static_cast<off_t>(begin / page * sizeof(entries[0]));
    if (pread(pageMap, entries.data(), size, place) != static_cast<ssize_t>(size)) {
        return false;
    }
    return std::ranges::none_of(entries, [](std::uint64_t entry) {
        return (entry & (isPresent | isSwapped)) != 0 && (entry & isFromFile) == 0;
    });
}

// Releases the segments that are not writable, because their contents can be read again from the file. Data
// that the linker relocates and then write-protects is in a writable segment, so it is kept.
int giveBackFilePages(dl_phdr_info* object, std::size_t /*size*/, void* pageMap) {
    const auto page = static_cast<std::uintptr_t>(sysconf(_SC_PAGESIZE));
    for (int i = 0; i < object->dlpi_phnum; ++i) {
        const ElfW(Phdr)& segment = object->dlpi_phdr[i];
        if (segment.p_type != PT_LOAD || (segment.p_flags & PF_W) != 0) {
            continue;
        }
        const std::uintptr_t begin = (object->dlpi_addr + segment.p_vaddr) & ~(page - 1);
        const std::uintptr_t end = object->dlpi_addr + segment.p_vaddr + segment.p_memsz;
        if (!isAsInItsFile(*static_cast<const int*>(pageMap), begin, end, page)) {
            continue;
        }
        // NOLINTNEXTLINE(performance-no-int-to-ptr): the linker reports its addresses as numbers.
        void* const place = reinterpret_cast<void*>(begin);
        // A refusal, for example for locked memory, does no harm.
        static_cast<void>(madvise(place, end - begin, MADV_DONTNEED));
    }
    return 0;
}

} // namespace

void releaseIdleMemory() {
    const FileDescriptor pageMap(open("/proc/self/pagemap", O_RDONLY | O_CLOEXEC));
    int descriptor = pageMap.number();
    if (pageMap.isOpen()) {
        dl_iterate_phdr(giveBackFilePages, &descriptor);
    }
    malloc_trim(0);
}

} // namespace Fenwhirl
