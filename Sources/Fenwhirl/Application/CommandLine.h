// What the user asks for on the command line of the application.
//
// Options may stand anywhere; those that are not known here are left to Qt, or to nobody: they do not keep
// the application from starting. What is printed is English, as the program falls back to.
//
// Threads: main thread only, before anything else is set up: a preset's titles are looked up in every
// language.

#pragma once

#include "Fenwhirl/Monitoring/Preset.h"

#include <QString>

#include <optional>
#include <span>

struct CommandLine {
    enum class Task {
        start,       // or tell the running instance
        showVersion, // print it and end
        showHelp,    // the same
        complain,    // print `complaint` and end with `usageStatus`
    };

    static constexpr int usageStatus = 64;

    Task task = Task::start;
    std::optional<Preset> preset; // to be chosen
    QString complaint = {};       // of a preset that does not exist

    // `arguments`: without the program's name.
    [[nodiscard]] static CommandLine parse(std::span<char* const> arguments);

    [[nodiscard]] static QString version(const QString& number);
    [[nodiscard]] static QString help();
    // What is running could not be told of the preset.
    [[nodiscard]] static QString nobodyHears();
};
