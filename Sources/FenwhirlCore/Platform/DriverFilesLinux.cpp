#include "FenwhirlCore/Platform/DriverFiles.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <ctime>
#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace Fenwhirl {

namespace {

std::chrono::milliseconds timeOf(clockid_t clock) {
    timespec time{};
    clock_gettime(clock, &time);
    return std::chrono::milliseconds(static_cast<std::int64_t>(time.tv_sec) * 1000 +
                                     time.tv_nsec / 1'000'000);
}

class SystemDriverFiles final : public DriverFiles {
public:
    explicit SystemDriverFiles(std::string root) : root_(std::move(root)) {}

    std::vector<std::string> list(const std::string& folder) override {
        std::vector<std::string> names;
        DIR* stream = opendir((root_ + folder).c_str());
        if (stream == nullptr) {
            return names;
        }
        while (const dirent* entry = readdir(stream)) {
            const std::string_view name = entry->d_name;
            if (name != "." && name != "..") {
                names.emplace_back(name);
            }
        }
        closedir(stream);
        std::sort(names.begin(), names.end());
        return names;
    }

    std::optional<Status> status(const std::string& path) override {
        struct stat found {};

        if (lstat((root_ + path).c_str(), &found) != 0) {
            return std::nullopt;
        }
        return Status{S_ISREG(found.st_mode), (found.st_mode & 0222U) != 0, found.st_uid};
    }

    int open(const std::string& path, Access access) override {
        const int flags = (access == Access::read ? O_RDONLY : O_WRONLY) | O_CLOEXEC | O_NOCTTY;
        int descriptor = ::open((root_ + path).c_str(), flags);
        if (descriptor < 0) {
            return -errno;
        }
        // The standard descriptors may be closed in the helper; a driver's file must
        // not take the number of one.
        if (descriptor <= STDERR_FILENO) {
            const int moved = fcntl(descriptor, F_DUPFD_CLOEXEC, STDERR_FILENO + 1);
            ::close(descriptor);
            if (moved < 0) {
                return -errno;
            }
            descriptor = moved;
        }
        return descriptor;
    }

    ssize_t readAt0(int descriptor, std::span<char> buffer) override {
        ssize_t count = 0;
        do {
            count = ::pread(descriptor, buffer.data(), buffer.size(), 0);
        } while (count < 0 && errno == EINTR);
        return count < 0 ? -errno : count;
    }

    ssize_t writeAt0(int descriptor, std::string_view text) override {
        ssize_t count = 0;
        do {
            count = ::pwrite(descriptor, text.data(), text.size(), 0);
        } while (count < 0 && errno == EINTR);
        return count < 0 ? -errno : count;
    }

    void close(int descriptor) override { ::close(descriptor); }

    bool store(const std::string& folder, const std::string& name, std::string_view text) override {
        const std::string place = root_ + folder;
        if (mkdir(place.c_str(), 0755) == 0) {
            static_cast<void>(chmod(place.c_str(), 0755)); // independently of the umask
        }

        struct stat found {};

        if (lstat(place.c_str(), &found) != 0 || !S_ISDIR(found.st_mode) || found.st_uid != geteuid() ||
            (found.st_mode & 0022U) != 0) {
            return false;
        }
        const int descriptor =
            ::open((place + '/' + name).c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_NOFOLLOW | O_CLOEXEC, 0644);
        if (descriptor < 0) {
            return false;
        }
        const bool written =
            ::write(descriptor, text.data(), text.size()) == static_cast<ssize_t>(text.size());
        ::close(descriptor);
        return written;
    }

    void remove(const std::string& path) override { static_cast<void>(unlink((root_ + path).c_str())); }

    std::chrono::milliseconds now() override { return timeOf(CLOCK_MONOTONIC); }

    std::chrono::milliseconds sleepOffset() override {
        return timeOf(CLOCK_BOOTTIME) - timeOf(CLOCK_MONOTONIC);
    }

private:
    std::string root_;
};

} // namespace

std::optional<std::string> DriverFiles::readText(const std::string& path) {
    const int descriptor = open(path, Access::read);
    if (descriptor < 0) {
        return std::nullopt;
    }
    std::array<char, 256> buffer{};
    const ssize_t count = readAt0(descriptor, buffer);
    close(descriptor);
    if (count < 0) {
        return std::nullopt;
    }
    return std::string(buffer.data(), static_cast<std::size_t>(count));
}

std::unique_ptr<DriverFiles> systemDriverFiles(std::string root) {
    return std::make_unique<SystemDriverFiles>(std::move(root));
}

} // namespace Fenwhirl
