// What the file system says about one path, without opening the file and without following a symbolic link in
// the last component.
//
// Thread-safe.

#pragma once

#include <cstdint>
#include <optional>
#include <string>

namespace Fenwhirl {

struct FileStatus {
    enum class Kind { regular, directory, symbolicLink, other };

    // A point in time, at the file system's resolution.
    struct Stamp {
        std::int64_t seconds; // since 1970
        std::int64_t nanoseconds;

        bool operator==(const Stamp&) const = default;
    };

    Kind kind;
    std::uint32_t owner;       // user id
    std::uint32_t permissions; // the twelve permission bits
    Stamp modified;            // when the contents last changed; the owner may set this to any time
    Stamp changed;             // when the contents, owner, permissions or `modified` last changed

    [[nodiscard]] bool isSetUserID() const { return (permissions & 04000U) != 0; }

    [[nodiscard]] bool isSticky() const { return (permissions & 01000U) != 0; }

    [[nodiscard]] bool isWritableByOthers() const { return (permissions & 0022U) != 0; } // group or world
};

// Absent when there is no such file, or when this process may not look at it.
[[nodiscard]] std::optional<FileStatus> fileStatus(const std::string& path);

} // namespace Fenwhirl
