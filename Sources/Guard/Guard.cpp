// fenwhirl-guard: hands the fans back when the application was killed or no longer responds.
//
// The guard is a child of the application, in a process group of its own. It reads the pipe on descriptor 0,
// whose other end only the application holds, and acts in two cases:
//
// - The pipe ends without a farewell. The application is gone, and its fans may be left at a speed that is no
// longer appropriate. The guard runs the helper for the fans that are not pinned: at once, and a second time
// when any command that was under way must have ended. Then the guard ends.
// - Nothing arrives through the pipe for ten seconds. The application is stopped or hangs, and nobody watches
// the temperature. The guard hands back every fan, pinned ones too, and goes on watching.
//
// A fan counts as handed back when the helper says so. Until then the guard tries again, with growing pauses.
//
// The guard uses the facilities of C only: no C++ library, no environment, no arguments, and no heap after
// its start.

#include "Guard/GuardRecord.h"

#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <fcntl.h>
#include <poll.h>
#include <spawn.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

namespace Fenwhirl {

namespace {

// The helper may go on trying to "set" a fan on a locked controller for 4.2 s, even
// after the application died.
constexpr int secondsUntilSecondRun = 5;

// Pauses between two attempts at fans that could not be handed back. Each pause is twice
// as long as the one before.
constexpr int shortestPause = 1; // seconds
constexpr int longestPause = 10;

int longerPause(int pause) {
    return pause < longestPause / 2 ? 2 * pause : longestPause;
}

// What the application sent, in ascending order of importance.
enum class Heard { silence, something, record, life, end };

// Two buffers: the line that is being read, and the last complete line.
char lines[2][GuardRecord::longestLine];
int complete = -1; // index of the last complete line; -1 before the first
int reading = 0;
std::size_t length = 0; // of the line that is being read
bool isTooLong = false; // whether the line that is being read exceeds the buffer
bool isOrderly = false; // whether the last byte was the farewell

Heard take(char character) {
    isOrderly = character == GuardRecord::orderlyEnd;
    if (isOrderly) {
        return Heard::something;
    }
    if (character != '\n') {
        isTooLong = isTooLong || length + 1 >= sizeof lines[0];
        if (!isTooLong) {
            lines[reading][length++] = character;
        }
        return Heard::something;
    }
    if (length == 0) {
        return Heard::life;
    }
    lines[reading][length] = '\0';
    // The end of a line that does not fit is lost, so all fans go back.
    if (isTooLong) {
        std::memcpy(lines[reading], GuardRecord::allFans, sizeof GuardRecord::allFans);
    }
    complete = reading;
    reading = 1 - reading;
    length = 0;
    isTooLong = false;
    return Heard::record;
}

// Waits up to `milliseconds` for the application. poll counts only the time in which the system runs: time
// that the machine spends asleep is not silence. If this process itself is stopped meanwhile, it sees at most
// one time-out afterwards.
Heard listen(int milliseconds) {
    pollfd pipe = {.fd = STDIN_FILENO, .events = POLLIN, .revents = 0};
    for (;;) {
        const int ready = poll(&pipe, 1, milliseconds);
        if (ready == 0) {
            return Heard::silence;
        }
        if (ready < 0 && errno == EINTR) {
            continue;
        }
        // If poll fails for any other reason, read still notices the end of the pipe.
        char buffer[4096];
        const ssize_t count = read(STDIN_FILENO, buffer, sizeof buffer);
        if (count < 0 && errno == EINTR) {
            continue;
        }
        if (count <= 0) {
            return Heard::end;
        }
        Heard heard = Heard::something;
        for (ssize_t i = 0; i < count; ++i) {
            const Heard next = take(buffer[i]);
            if (next > heard) {
                heard = next;
            }
        }
        return heard;
    }
}

// One run of the helper.
struct Fan {
    char* index; // as text; null: all fans
    bool isHandedBack;
};

// The name of a fan takes at least two characters of a line.
Fan fans[GuardRecord::longestLine / 2];
std::size_t fanCount = 0;

// Fills `fans` from the last complete record, none of them handed back yet.
void readRecord(bool withPinned) {
    // A copy, because strtok_r modifies the line and the original may be needed again.
    static char line[sizeof lines[0]];
    fanCount = 0;
    if (complete < 0) {
        return;
    }
    std::memcpy(line, lines[complete], sizeof line);
    if (std::strcmp(line, GuardRecord::allFans) == 0) {
        fans[fanCount++] = {.index = nullptr, .isHandedBack = false};
        return;
    }
    char* rest = nullptr;
    const char* const word = strtok_r(line, " ", &rest);
    if (word == nullptr || std::strcmp(word, GuardRecord::fans) != 0) {
        return;
    }
    while (char* index = strtok_r(nullptr, " ", &rest)) {
        const bool isPinned = *index == GuardRecord::pinnedMark;
        if (!isPinned || withPinned) {
            fans[fanCount++] = {.index = isPinned ? index + 1 : index, .isHandedBack = false};
        }
    }
}

bool areAllHandedBack() {
    for (std::size_t i = 0; i < fanCount; ++i) {
        if (!fans[i].isHandedBack) {
            return false;
        }
    }
    return true;
}

bool isHelperInstalled() {
    struct stat found = {};
    return lstat(GuardRecord::helperPath, &found) == 0 && !S_ISLNK(found.st_mode) &&
           (found.st_mode & S_ISUID) != 0 && found.st_uid == 0;
}

posix_spawn_file_actions_t keepThePipe;
bool canKeepThePipe = false;

// Without this the helper would inherit the pipe on descriptor 0. It gets the null device,
// which is on descriptor 1.
void prepareHelper() {
    canKeepThePipe = posix_spawn_file_actions_init(&keepThePipe) == 0 &&
                     posix_spawn_file_actions_adddup2(&keepThePipe, STDOUT_FILENO, STDIN_FILENO) == 0;
}

// Runs the helper and waits for it; the helper ends itself after 30 seconds at most.
void handBack(Fan& fan) {
    char program[] = "FenwhirlHelper";
    char option[] = "--helper";
    char command[] = "auto";
    char* const arguments[] = {program, option, command, fan.index, nullptr};
    char* const environment[] = {nullptr};
    pid_t helper = 0;
    if (posix_spawn(&helper, GuardRecord::helperPath, canKeepThePipe ? &keepThePipe : nullptr, nullptr,
                    arguments, environment) != 0) {
        return;
    }
    int status = 0;
    pid_t ended = 0;
    do {
        ended = waitpid(helper, &status, 0);
    } while (ended < 0 && errno == EINTR);
    fan.isHandedBack = ended == helper && WIFEXITED(status) && WEXITSTATUS(status) == 0;
}

// Tries once to hand back every fan that has not gone back yet; stops early when the
// application sends something.
Heard handBackWhileSilent() {
    for (std::size_t i = 0; i < fanCount; ++i) {
        if (fans[i].isHandedBack) {
            continue;
        }
        handBack(fans[i]);
        const Heard heard = listen(0);
        if (heard >= Heard::record) {
            return heard;
        }
    }
    return Heard::silence;
}

// Returns true when every fan was handed back while the application was silent: there is nothing more to do
// until it sends something. Returns false when it sent something, so that it has to fall silent again before
// the next hand-back.
bool actInSilence() {
    // A record arrives before the command that it announces. If one arrives meanwhile, that command may
    // follow our hand-back, so the result is not final.
    bool isLastWord = true;
    for (;;) {
        Heard heard = Heard::silence;
        readRecord(true);
        for (int pause = shortestPause; heard < Heard::record; pause = longerPause(pause)) {
            if (!isHelperInstalled()) {
                return isLastWord;
            }
            heard = handBackWhileSilent();
            if (heard < Heard::record && areAllHandedBack()) {
                return isLastWord;
            }
            for (int second = 0; second < pause && heard < Heard::record; ++second) {
                heard = listen(1000);
            }
        }
        if (heard != Heard::record) {
            return false;
        }
        isLastWord = false;
    }
}

// Returns when the application is gone. Silence is counted in steps longer than the time between two signs of
// life: while all is well, only the signs of life wake the guard.
void watch() {
    constexpr int step = 2500; // milliseconds
    static_assert(GuardRecord::silenceTimeoutSeconds * 1000 % step == 0);
    int silence = 0; // milliseconds
    bool hasActed = false;
    for (;;) {
        switch (listen(step)) {
        case Heard::end:
            return;
        case Heard::silence:
            silence += step;
            if (!hasActed && silence >= GuardRecord::silenceTimeoutSeconds * 1000) {
                hasActed = actInSilence();
                silence = 0;
            }
            break;
        case Heard::something:
        case Heard::record:
        case Heard::life:
            silence = 0;
            hasActed = false;
            break;
        }
    }
}

void sleepFor(int seconds) {
    timespec left = {.tv_sec = seconds, .tv_nsec = 0};
    while (nanosleep(&left, &left) != 0 && errno == EINTR) {
    }
}

void handBackOnce() {
    for (std::size_t i = 0; i < fanCount; ++i) {
        if (!fans[i].isHandedBack) {
            handBack(fans[i]);
        }
    }
}

// Called when the application is gone for good. Returns when every fan has been handed back twice, or when
// the helper is gone.
void actAtTheEnd() {
    readRecord(false);
    int untilSecondRun = secondsUntilSecondRun;
    int pause = shortestPause;
    while (fanCount > 0 && isHelperInstalled()) {
        handBackOnce();
        const bool isDone = areAllHandedBack();
        if (untilSecondRun > 0 && (isDone || pause >= untilSecondRun)) {
            sleepFor(untilSecondRun);
            untilSecondRun = 0;
            readRecord(false); // all fans once more
            continue;
        }
        if (isDone) {
            return;
        }
        sleepFor(pause);
        untilSecondRun = untilSecondRun > pause ? untilSecondRun - pause : 0;
        pause = longerPause(pause);
    }
}

} // namespace

} // namespace Fenwhirl

int main() {
    // Signals that end a session or a terminal's programs must not end the process that cleans up after them.
    const int ignored[] = {SIGTERM, SIGINT, SIGHUP};
    for (const int signal : ignored) {
        (void)std::signal(signal, SIG_IGN);
    }
    Fenwhirl::prepareHelper();
    Fenwhirl::watch();
    if (!Fenwhirl::isOrderly) {
        Fenwhirl::actAtTheEnd();
    }
    return EXIT_SUCCESS;
}
