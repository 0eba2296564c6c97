// Parses the command line of the application.
//
// Options may appear anywhere. Options that are not known here are left to Qt or ignored; they do not keep
// the application from starting. Output is in English, the program's fallback language.
//
// Threads: main thread only, before anything else is set up, because the titles of presets are
// looked up in every language.

#pragma once

#include "Fenwhirl/Monitoring/Preset.h"

#include <QString>

#include <optional>
#include <span>

namespace Fenwhirl {

struct CommandLine {
    enum class Task {
        start,       // start the application, or notify the running instance
        showVersion, // print the version and exit
        showHelp,    // print the help text and exit
        selfCheck,   // print a table of what works on this computer and exit
        complain,    // print `complaint` and exit with `usageStatus`
    };

    static constexpr int usageStatus = 64;

    Task task = Task::start;
    std::optional<Preset> preset; // the preset to apply
    QString complaint = {};       // about a preset that does not exist

    // `arguments` does not include the program's name.
    [[nodiscard]] static CommandLine parse(std::span<char* const> arguments);

    [[nodiscard]] static QString version(const QString& number);
    [[nodiscard]] static QString help();
    // The message when the running instance did not receive the request and did not end either.
    [[nodiscard]] static QString noAnswerMessage();
};

} // namespace Fenwhirl
