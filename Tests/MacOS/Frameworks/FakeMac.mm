// The journal, the violations and the settings.

#import "Frameworks/Fakes.h"

#include <cstring>
#include <mutex>
#include <thread>
#include <utility>

namespace {

struct Record {
    std::mutex mutex;
    std::vector<std::string> journal;
    std::vector<std::string> violations;
    FakeMac::Settings settings;
    int system = 13;
    std::thread::id mainThread = std::this_thread::get_id();
};

Record& record() {
    static auto* instance = new Record;
    return *instance;
}

// Constructed before main(), and on its thread, so that the record knows the main thread.
[[maybe_unused]] const Record& madeAtStart = record();

} // namespace

std::vector<std::string>& FakeMac::journal() {
    return record().journal;
}

void FakeMac::note(const std::string& call) {
    const std::lock_guard lock(record().mutex);
    record().journal.push_back(call);
}

void FakeMac::violate(const std::string& what) {
    const std::lock_guard lock(record().mutex);
    record().violations.push_back(what);
}

std::vector<std::string> FakeMac::takeViolations() {
    const std::lock_guard lock(record().mutex);
    return std::exchange(record().violations, {});
}

bool FakeMac::isMainThread() {
    return std::this_thread::get_id() == record().mainThread;
}

void FakeMac::requireMainThread(const char* call) {
    if (!isMainThread()) {
        violate(std::string(call) + " off the main thread");
    }
}

void FakeMac::did(const char* call) {
    requireMainThread(call);
    note(call);
}

FakeMac::Settings& FakeMac::settings() {
    return record().settings;
}

void FakeMac::setSystemVersion(int major) {
    record().system = major;
}

const char FakeMac::versionIsThere[] = "1";

extern "C" const char* macOSIsAtLeast(const char* platformAndVersion) {
    constexpr char platform[] = "macOS ";
    if (std::strncmp(platformAndVersion, platform, sizeof platform - 1) != 0) {
        FakeMac::violate("a question for the version of another system");
    }
    return record().system >= std::atoi(platformAndVersion + sizeof platform - 1) ? FakeMac::versionIsThere
                                                                                  : nullptr;
}

// Filled by the static objects of the other files, before main().
static std::vector<std::function<void()>>& endings() {
    static auto* instance = new std::vector<std::function<void()>>;
    return *instance;
}

FakeMac::AtEnd::AtEnd(std::function<void()> forget) {
    endings().push_back(std::move(forget));
}

void FakeMac::checkEnd() {
    for (const auto& forget : endings()) {
        forget();
    }
    const std::lock_guard lock(record().mutex);
    record().journal.clear();
    record().settings = {};
    record().system = 13;
}
