// What the driver transport needs of the file system and the clock.
//
// This is an interface so that tests can fake what ordinary files cannot reproduce: a device that disappears,
// a driver that answers EIO, a machine that wakes from sleep.
//
// Errors are returned as negative errno values. Paths are absolute ("/sys/class/hwmon"). Not tied to any
// thread; owns nothing: the caller closes the descriptors.

#pragma once

#include <chrono>
#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <sys/types.h>
#include <vector>

namespace Fenwhirl {

class DriverFiles {
public:
    enum class Access { read, write };

    struct Status {
        bool isRegular;  // a symbolic link is not followed and is not regular
        bool isWritable; // some write bit is set; without one root may still write ordinary files, but never
                         // the drivers' files
        uid_t owner;
    };

    DriverFiles() = default;
    DriverFiles(const DriverFiles&) = delete;
    DriverFiles& operator=(const DriverFiles&) = delete;
    virtual ~DriverFiles() = default;

    // The names in a folder, sorted; empty when the folder cannot be read.
    [[nodiscard]] virtual std::vector<std::string> list(const std::string& folder) = 0;
    [[nodiscard]] virtual std::optional<Status> status(const std::string& path) = 0;
    [[nodiscard]] virtual int open(const std::string& path, Access access) = 0;
    [[nodiscard]] virtual ssize_t readAt0(int descriptor, std::span<char> buffer) = 0;
    [[nodiscard]] virtual ssize_t writeAt0(int descriptor, std::string_view text) = 0;
    virtual void close(int descriptor) = 0;

    // Saves a small state of the root helper, in a file and a folder that only root may write.
    [[nodiscard]] virtual bool store(const std::string& folder, const std::string& name,
                                     std::string_view text) = 0;
    virtual void remove(const std::string& path) = 0;

    // Time since an arbitrary origin, without jumps. `sleepOffset` is how long the machine has
    // slept since it was started.
    [[nodiscard]] virtual std::chrono::milliseconds now() = 0;
    [[nodiscard]] virtual std::chrono::milliseconds sleepOffset() = 0;

    // The text of a small file, or nothing when it cannot be read. Built on the calls above.
    [[nodiscard]] std::optional<std::string> readText(const std::string& path);
};

// The computer's own files. `root` is prepended to every path; it is empty except in tests.
[[nodiscard]] std::unique_ptr<DriverFiles> systemDriverFiles(std::string root = {});

} // namespace Fenwhirl
