#include "Fenwhirl/Platform/RestingMemory.h"

#include <cstddef>
#include <cstdint>
#include <link.h>
#include <malloc.h>
#include <sys/mman.h>
#include <unistd.h>

namespace {

// Segments that are not writable hold what their file holds. What the linker relocates and protects
// afterwards lies in a writable one, and such pages exist nowhere else: they must stay.
int giveBackFilePages(dl_phdr_info* object, std::size_t /*size*/, void* /*context*/) {
    const auto page = static_cast<std::uintptr_t>(sysconf(_SC_PAGESIZE));
    for (int i = 0; i < object->dlpi_phnum; ++i) {
        const ElfW(Phdr)& segment = object->dlpi_phdr[i];
        if (segment.p_type != PT_LOAD || (segment.p_flags & PF_W) != 0)
            continue;
        const std::uintptr_t begin = (object->dlpi_addr + segment.p_vaddr) & ~(page - 1);
        const std::uintptr_t end = object->dlpi_addr + segment.p_vaddr + segment.p_memsz;
        // NOLINTNEXTLINE(performance-no-int-to-ptr): the linker tells its addresses as numbers.
        void* const place = reinterpret_cast<void*>(begin);
        // A refusal, as for what is locked in memory, is as good as any answer.
        static_cast<void>(madvise(place, end - begin, MADV_DONTNEED));
    }
    return 0;
}

} // namespace

void giveBackRestingMemory() {
    malloc_trim(0);
    dl_iterate_phdr(giveBackFilePages, nullptr);
}
