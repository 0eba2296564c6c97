// Starting other programs and waiting for them.
//
// A child gets default signals, none of them blocked, and no descriptor but the three standard ones: those
// not asked for are the null device. Starting costs the same however much memory this process uses, and is
// safe while other threads run (nothing is forked).
//
// Threads: safe from any thread. Only the very child is waited for, never another. A process that ignores
// SIGCHLD never learns how its children ended; the program entry therefore restores its default.

#pragma once

#include "Fenwhirl/Platform/FileDescriptor.h"

#include <cstddef>
#include <optional>
#include <span>
#include <string>
#include <sys/types.h>

// What `runChild` does with what the child prints on standard output; standard error is always dropped.
enum class ChildOutput { discard, capture };

enum class ChildEnvironment {
    empty,     // for our own helper, which reads none
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

// Runs a program (an absolute path; `arguments` without the program's own name) to its end. Absent when it
// cannot be started. There is no time-out.
[[nodiscard]] std::optional<ChildResult> runChild(const std::string& executable,
                                                  std::span<const std::string> arguments, ChildOutput output,
                                                  ChildEnvironment environment);

// Starts a program and returns its process id; the caller waits for it. `standardInput` becomes its
// descriptor 0, `standardOutput` its descriptor 1 (-1: the null device); both stay open here. With `ownGroup`
// the signals of this process's terminal and group do not reach it.
[[nodiscard]] std::optional<pid_t> startChild(const std::string& executable,
                                              std::span<const std::string> arguments,
                                              ChildEnvironment environment, int standardInput, bool ownGroup,
                                              int standardOutput = -1);

// A pipe whose two ends are close-on-exec and above the standard descriptors.
struct Pipe {
    FileDescriptor readEnd;
    FileDescriptor writeEnd;

    [[nodiscard]] static std::optional<Pipe> make();
};
