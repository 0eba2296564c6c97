#include "Fenwhirl/Application/CommandLine.h"

#include <QByteArrayView>
#include <QStringList>

#include <string_view>

namespace Fenwhirl {

namespace {

QString presetWords() {
    QStringList words;
    for (const Preset preset : allPresets) {
        const std::string_view word = rawValue(preset);
        words.append(QString::fromLatin1(word.data(), static_cast<qsizetype>(word.size())));
    }
    return words.join(QStringLiteral(", "));
}

CommandLine complain(const QString& reason) {
    return {.task = CommandLine::Task::complain,
            .preset = {},
            .complaint = QStringLiteral("Fenwhirl: %1; there are %2.\n").arg(reason, presetWords())};
}

} // namespace

CommandLine CommandLine::parse(std::span<char* const> arguments) {
    CommandLine found;
    for (std::size_t i = 0; i < arguments.size(); ++i) {
        const std::string_view argument = arguments[i];
        constexpr std::string_view option = "--preset";
        constexpr std::string_view assigned = "--preset=";
        std::optional<std::string_view> name;
        if (argument == "--") {
            break;
        }
        if (argument == "--version") {
            return {.task = Task::showVersion, .preset = {}};
        }
        if (argument == "--help" || argument == "-h") {
            return {.task = Task::showHelp, .preset = {}};
        }
        if (argument == "--self-check") {
            return {.task = Task::selfCheck, .preset = {}};
        }
        if (argument == option) {
            if (++i == arguments.size()) {
                return complain(QStringLiteral("--preset needs the name of a preset"));
            }
            name = arguments[i];
        } else if (argument.starts_with(assigned)) {
            name = argument.substr(assigned.size());
        }
        if (name) {
            const QString text = QString::fromUtf8(name->data(), static_cast<qsizetype>(name->size()));
            found.preset = presetFromName(text);
            if (!found.preset) {
                return complain(QStringLiteral("no preset is called \"%1\"").arg(text));
            }
        }
    }
    return found;
}

QString CommandLine::version(const QString& number) {
    return QStringLiteral("Fenwhirl %1\n").arg(number);
}

QString CommandLine::help() {
    return QStringLiteral("Usage: Fenwhirl [OPTION]...\n"
                          "\n"
                          "Reads the temperatures and drives the fans of a Mac. Where it is running\n"
                          "already, its window is shown.\n"
                          "\n"
                          "  --preset NAME  choose a preset: %1,\n"
                          "                 or its title in any of the program's languages; what is\n"
                          "                 running is told, otherwise the program starts hidden\n"
                          "  --self-check   try everything that the program rests on, print a line for\n"
                          "                 each, and end; status 0 when nothing failed\n"
                          "  --version      print the version and end\n"
                          "  --help         print this text and end\n")
        .arg(presetWords());
}

QString CommandLine::noAnswerMessage() {
    return QStringLiteral("Fenwhirl: it is running, but does not answer.\n");
}

} // namespace Fenwhirl
