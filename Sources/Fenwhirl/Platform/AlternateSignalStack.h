// A second stack for the signal handlers of one thread, so that a fatal signal can still be acted on when the
// thread has used up its own.
//
// To be made first thing by each thread of ours; belongs to the thread that made it and must go with it.
// Where no memory is left for it the thread simply has none.

#pragma once

#include <cstddef>

class AlternateSignalStack {
public:
    AlternateSignalStack();
    AlternateSignalStack(const AlternateSignalStack&) = delete;
    AlternateSignalStack& operator=(const AlternateSignalStack&) = delete;
    ~AlternateSignalStack();

private:
    void* memory_ = nullptr; // with a page below it that nobody may touch
    std::size_t size_ = 0;
};
