#include "Fenwhirl/Platform/Preferences/FilePreferencesLinux.h"

#include "Fenwhirl/Platform/Preferences/ConfigFolderLinux.h"
#include "Fenwhirl/Platform/Toolkit/AtomicFile.h"
#include "Fenwhirl/Platform/Toolkit/FileDescriptor.h"

#include <array>
#include <cerrno>
#include <fcntl.h>
#include <filesystem>
#include <string_view>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>
#include <variant>

namespace Fenwhirl {

namespace {

// A thousand times what the program writes, in bytes.
constexpr qsizetype largestFile = qsizetype{4} << 20;

std::optional<PreferenceValues> readFile(const std::string& path) {
    // Non-blocking, because opening a named pipe for reading would wait for a writer.
    const FileDescriptor file(::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK));

    struct stat status {};

    if (!file.isOpen() || ::fstat(file.number(), &status) != 0 || !S_ISREG(status.st_mode)) {
        return std::nullopt;
    }
    QByteArray text;
    std::array<char, 16384> buffer{};
    for (;;) {
        const ssize_t count = ::read(file.number(), buffer.data(), buffer.size());
        if (count < 0 && errno == EINTR) {
            continue;
        }
        if (count < 0 || text.size() + count > largestFile) {
            return std::nullopt;
        }
        if (count == 0) {
            return decodePreferences(text);
        }
        text.append(buffer.data(), count);
    }
}

void apply(PreferenceValues& values, const QString& key, const std::optional<PreferenceValue>& value) {
    if (value) {
        values.insert_or_assign(key, *value);
    } else {
        values.erase(key);
    }
}

// Keeps other processes of Fenwhirl from changing the file between our reading and replacing it. The lock is
// not waited for, because a stopped process must not stop this one. Without the lock, only the other
// process's last change can be lost.
FileDescriptor tryLock(const std::string& path) {
    FileDescriptor file(::open((path + ".lock").c_str(), O_RDWR | O_CREAT | O_CLOEXEC | O_NOFOLLOW, 0600));
    if (file.isOpen() && ::flock(file.number(), LOCK_EX | LOCK_NB) != 0) {
        file.close();
    }
    return file;
}

void removeLeftovers(const std::string& path) {
    const std::filesystem::path file(path);
    const std::string prefix = file.filename().string() + '.';
    std::error_code ignored;
    for (std::filesystem::directory_iterator entry(file.parent_path(), ignored), end;
         !ignored && entry != end; entry.increment(ignored)) {
        const std::string name = entry->path().filename().string();
        if (name.starts_with(prefix) && name.ends_with(".new")) {
            std::filesystem::remove(entry->path(), ignored);
        }
    }
}

std::string preferencesFolder() {
    return configFolder() + "/com.fenwhirl.app";
}

std::string trialFile() {
    return preferencesFolder() + "/self-check.json";
}

} // namespace

FilePreferences::FilePreferences(std::string path) : path_(std::move(path)) {
    const MutexLock lock(mutex_);
    values_ = readFile(path_).value_or(PreferenceValues());
    if (tryLock(path_).isOpen()) {
        removeLeftovers(path_); // safe under the lock: nobody else is writing
    }
}

std::optional<PreferenceValue> FilePreferences::value(const QString& key) const {
    const MutexLock lock(mutex_);
    const auto entry = values_.find(key);
    if (entry == values_.end() || std::holds_alternative<UnknownPreference>(entry->second)) {
        return std::nullopt;
    }
    return entry->second;
}

void FilePreferences::store(const QString& key, std::optional<PreferenceValue> value) {
    const MutexLock lock(mutex_);
    const auto entry = values_.find(key);
    const bool same = value ? entry != values_.end() && entry->second == *value : entry == values_.end();
    if (same && unwritten_.empty()) {
        return; // already on disk; dragging a slider stores the same value many times
    }
    apply(values_, key, value);
    unwritten_.insert_or_assign(key, std::move(value));
    writeChanges();
}

void FilePreferences::writeChanges() {
    std::error_code ignored;
    std::filesystem::create_directories(std::filesystem::path(path_).parent_path(), ignored);
    const FileDescriptor lock = tryLock(path_);
    PreferenceValues current = readFile(path_).value_or(values_);
    for (const auto& [key, value] : unwritten_) {
        apply(current, key, value);
    }
    const QByteArray text = encodePreferences(current);
    if (replaceFile(path_, std::string_view(text.constData(), static_cast<std::size_t>(text.size())))) {
        values_ = std::move(current);
        unwritten_.clear();
    }
}

std::unique_ptr<PreferencesStore> openUserPreferences() {
    return std::make_unique<FilePreferences>(preferencesFolder() + "/preferences.json");
}

// A file of its own: one of the user's that is broken would be overwritten by the first change.
std::unique_ptr<PreferencesStore> openTrialPreferences() {
    return std::make_unique<FilePreferences>(trialFile());
}

void removeTrialPreferences() {
    std::error_code ignored;
    std::filesystem::remove(trialFile(), ignored);
    std::filesystem::remove(trialFile() + ".lock", ignored);
    std::filesystem::remove(preferencesFolder(), ignored); // one that is not empty stays
}

} // namespace Fenwhirl
