// Starts other programs and waits for them.
//
// A child starts with the default action for every signal, with no signal blocked, and with no file
// descriptor but the three standard ones; those that the caller does not connect are the null device.
// Starting a child costs the same however much memory this process uses, and is safe while other threads run
// (nothing is forked).
//
// Threads: safe from any thread. Each call waits only for its own child. A process that ignores SIGCHLD never
// learns how its children ended; the program entry therefore restores the default action.

#pragma once

#include "Fenwhirl/Platform/Toolkit/FileDescriptor.h"

#include <cstddef>
#include <optional>
#include <span>
#include <string>
#include <sys/types.h>

namespace Fenwhirl {

// What `runChild` does with the child's standard output. Standard error is always dropped.
enum class ChildOutput { discard, capture };

enum class ChildEnvironment {
    empty,     // for our own helper, which reads no variables
    inherited, // for programs that talk to the user's session
    neutral,   // exactly LC_ALL=C and LANG=C, for tools whose output is parsed
};

struct ChildResult {
    std::optional<int> exitStatus; // absent when a signal ended the child
    std::string output;            // empty unless captured

    [[nodiscard]] bool succeeded() const { return exitStatus == 0; }
};

// At most this many bytes of a child's output are kept; the rest is read and dropped.
inline constexpr std::size_t childOutputLimit = std::size_t{16} << 20U;

// Runs a program until it exits. `executable` is an absolute path; `arguments` excludes the program's own
// name. Absent when the program cannot be started. There is no time-out.
[[nodiscard]] std::optional<ChildResult> runChild(const std::string& executable,
                                                  std::span<const std::string> arguments, ChildOutput output,
                                                  ChildEnvironment environment);

// Starts a program and returns its process id; the caller must wait for it. `standardInput` becomes the
// child's descriptor 0 and `standardOutput` its descriptor 1 (-1 means the null device); both stay open in
// this process. With `ownGroup` the child is in a process group of its own, so that signals for this
// process's terminal and group do not reach it.
[[nodiscard]] std::optional<pid_t> startChild(const std::string& executable,
                                              std::span<const std::string> arguments,
                                              ChildEnvironment environment, int standardInput, bool ownGroup,
                                              int standardOutput = -1);

// A pipe whose two ends are close-on-exec and numbered above the standard descriptors.
struct Pipe {
    FileDescriptor readEnd;
    FileDescriptor writeEnd;

    [[nodiscard]] static std::optional<Pipe> make();
};

} // namespace Fenwhirl
