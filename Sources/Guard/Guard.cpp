// fenwhirl-guard: hands the fans back to automatic control when the application was killed.
//
// A child of the application in a process group of its own. It does nothing but read the pipe on descriptor
// 0, whose other end the application alone holds. When that end disappears without a farewell, the
// application is gone and its fans may be left at a speed that suits nobody any more; then the guard runs the
// helper for them, at once and once more when a command that was under way must be over, and ends.
//
// A C program in all but its headers: no C++ library, no heap, no environment, no arguments.

#include "Guard/GuardRecord.h"

#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <fcntl.h>
#include <spawn.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

// A "set" of the dead application may outlive it by the helper's patience with a locked controller, 4.2 s.
constexpr time_t secondsUntilSecondRun = 5;

// Two lines: the one that is being read, and the last complete one.
char lines[2][GuardRecord::longestLine];
int complete = -1; // which of them, -1 before the first

// Reads to the end of the pipe. True when the application took its leave.
bool watch() {
    int reading = 0;
    std::size_t length = 0;
    bool isTooLong = false;
    bool isOrderly = false;
    for (;;) {
        char buffer[4096];
        const ssize_t count = read(STDIN_FILENO, buffer, sizeof buffer);
        if (count < 0 && errno == EINTR)
            continue;
        if (count <= 0)
            return isOrderly;
        for (ssize_t i = 0; i < count; ++i) {
            const char character = buffer[i];
            isOrderly = character == GuardRecord::orderlyEnd;
            if (isOrderly)
                continue;
            if (character != '\n') {
                isTooLong = isTooLong || length + 1 >= sizeof lines[0];
                if (!isTooLong)
                    lines[reading][length++] = character;
                continue;
            }
            lines[reading][length] = '\0';
            if (isTooLong)
                std::memcpy(lines[reading], GuardRecord::allFans, sizeof GuardRecord::allFans);
            complete = reading;
            reading = 1 - reading;
            length = 0;
            isTooLong = false;
        }
    }
}

bool isHelperInstalled() {
    struct stat found = {};
    return lstat(GuardRecord::helperPath, &found) == 0 && !S_ISLNK(found.st_mode) &&
           (found.st_mode & S_ISUID) != 0 && found.st_uid == 0;
}

// Hands back one fan, or all of them when `index` is null, and waits for it.
void handBack(const char* index) {
    char program[] = "FenwhirlHelper";
    char option[] = "--helper";
    char command[] = "auto";
    char* const arguments[] = {program, option, command, const_cast<char*>(index), nullptr};
    char* const environment[] = {nullptr};
    pid_t helper = 0;
    if (posix_spawn(&helper, GuardRecord::helperPath, nullptr, nullptr, arguments, environment) != 0)
        return;
    while (waitpid(helper, nullptr, 0) < 0 && errno == EINTR) {
    }
}

void carryOut() {
    if (complete < 0 || !isHelperInstalled())
        return;
    // A copy, because the words are cut apart and needed twice.
    static char line[sizeof lines[0]];
    std::memcpy(line, lines[complete], sizeof line);
    if (std::strcmp(line, GuardRecord::allFans) == 0) {
        handBack(nullptr);
        return;
    }
    char* rest = nullptr;
    const char* const word = strtok_r(line, " ", &rest);
    if (word == nullptr || std::strcmp(word, GuardRecord::fans) != 0)
        return;
    while (const char* const index = strtok_r(nullptr, " ", &rest))
        handBack(index);
}

void letPass(time_t seconds) {
    timespec left = {.tv_sec = seconds, .tv_nsec = 0};
    while (nanosleep(&left, &left) != 0 && errno == EINTR) {
    }
}

} // namespace

int main() {
    // What ends a session or a terminal's program must not end the one that cleans up behind it.
    const int ignored[] = {SIGTERM, SIGINT, SIGHUP};
    for (const int signal : ignored)
        (void)std::signal(signal, SIG_IGN);
    const bool isOrderly = watch();
    if (isOrderly)
        return EXIT_SUCCESS;
    // The pipe has told all it will; the helper, which inherits descriptor 0, is given the null device there.
    const int null = open("/dev/null", O_RDONLY | O_CLOEXEC);
    if (null >= 0)
        dup2(null, STDIN_FILENO);
    carryOut();
    letPass(secondsUntilSecondRun);
    carryOut();
    return EXIT_SUCCESS;
}
