#include "Fenwhirl/Platform/Toolkit/AlternateSignalStack.h"

#include <csignal>
#include <sys/mman.h>
#include <unistd.h>

namespace Fenwhirl {

namespace {

// Enough for a handler that starts processes, whatever register state the processor saves on this stack.
constexpr std::size_t usableSize = 64UL * 1024UL;

} // namespace

AlternateSignalStack::AlternateSignalStack() {
    const auto page = static_cast<std::size_t>(sysconf(_SC_PAGESIZE));
    void* const memory =
        mmap(nullptr, usableSize + page, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANON, -1, 0);
    if (memory == MAP_FAILED) {
        return;
    }
    stack_t stack = {};
    stack.ss_sp = static_cast<char*>(memory) + page;
    stack.ss_size = usableSize;
    if (mprotect(memory, page, PROT_NONE) != 0 || sigaltstack(&stack, nullptr) != 0) {
        munmap(memory, usableSize + page);
        return;
    }
    memory_ = memory;
    size_ = usableSize + page;
}

AlternateSignalStack::~AlternateSignalStack() {
    if (memory_ == nullptr) {
        return;
    }
    stack_t none = {};
    none.ss_flags = SS_DISABLE;
    sigaltstack(&none, nullptr);
    munmap(memory_, size_);
}

} // namespace Fenwhirl
