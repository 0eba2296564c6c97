// The few things that the driver transport asks of the file system and the clock.
//
// An interface of its own, because what matters most cannot be had from ordinary files: a device that
// disappears, a driver that answers EIO, a machine that wakes from sleep. Tests play those.
//
// Errors are returned as negative errno values. Paths are absolute ("/sys/class/hwmon"). No threads, no
// ownership beyond the descriptors, which the caller closes.

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

class DriverFiles {
public:
    enum class Access { read, write };

    struct Status {
        bool isRegular;  // a link is not followed and counts as not regular
        bool isWritable; // some write bit is set; root would pass without it on ordinary files, never on the
                         // drivers' own
        uid_t owner;
    };

    DriverFiles() = default;
    DriverFiles(const DriverFiles&) = delete;
    DriverFiles& operator=(const DriverFiles&) = delete;
    virtual ~DriverFiles() = default;

    // The names in a folder, sorted; empty when it cannot be read.
    [[nodiscard]] virtual std::vector<std::string> list(const std::string& folder) = 0;
    [[nodiscard]] virtual std::optional<Status> status(const std::string& path) = 0;
    [[nodiscard]] virtual int open(const std::string& path, Access access) = 0;
    [[nodiscard]] virtual ssize_t readAt0(int descriptor, std::span<char> buffer) = 0;
    [[nodiscard]] virtual ssize_t writeAt0(int descriptor, std::string_view text) = 0;
    virtual void close(int descriptor) = 0;

    // Small state of the root helper: a file that only root may write, in a folder that only root may write.
    [[nodiscard]] virtual bool store(const std::string& folder, const std::string& name,
                                     std::string_view text) = 0;
    virtual void remove(const std::string& path) = 0;

    // Since an arbitrary origin, never jumping. `sleepOffset` is how long the machine has slept since it
    // started.
    [[nodiscard]] virtual std::chrono::milliseconds now() = 0;
    [[nodiscard]] virtual std::chrono::milliseconds sleepOffset() = 0;

    // The text of a small file, or nothing. Convenience over the calls above.
    [[nodiscard]] std::optional<std::string> readText(const std::string& path);
};

// The computer's own files; `root` is put before every path and is empty but in tests.
[[nodiscard]] std::unique_ptr<DriverFiles> systemDriverFiles(std::string root = {});
