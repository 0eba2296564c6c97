// A second stack for the signal handlers of one thread, so that a fatal signal can still be handled after the
// thread has overflowed its own stack.
//
// Every thread that Fenwhirl starts creates one first. The object belongs to the thread that created it and
// must be destroyed there. If its memory cannot be allocated, the thread has no alternate stack.

#pragma once

#include <cstddef>

namespace Fenwhirl {

class AlternateSignalStack {
public:
    AlternateSignalStack();
    AlternateSignalStack(const AlternateSignalStack&) = delete;
    AlternateSignalStack& operator=(const AlternateSignalStack&) = delete;
    ~AlternateSignalStack();

private:
    void* memory_ = nullptr; // starts with a guard page
    std::size_t size_ = 0;
};

} // namespace Fenwhirl
