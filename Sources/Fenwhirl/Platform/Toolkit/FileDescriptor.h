// Owns a file descriptor and closes it. Not shared between threads.

#pragma once

#include <unistd.h>
#include <utility>

namespace Fenwhirl {

class FileDescriptor {
public:
    FileDescriptor() = default;

    explicit FileDescriptor(int number) : number_(number) {}

    FileDescriptor(FileDescriptor&& other) noexcept : number_(std::exchange(other.number_, -1)) {}

    FileDescriptor& operator=(FileDescriptor&& other) noexcept {
        std::swap(number_, other.number_);
        return *this;
    }

    FileDescriptor(const FileDescriptor&) = delete;
    FileDescriptor& operator=(const FileDescriptor&) = delete;

    ~FileDescriptor() { close(); }

    [[nodiscard]] int number() const { return number_; } // -1 when there is none

    [[nodiscard]] bool isOpen() const { return number_ >= 0; }

    void close() {
        if (number_ >= 0) {
            ::close(std::exchange(number_, -1));
        }
    }

private:
    int number_ = -1;
};

} // namespace Fenwhirl
