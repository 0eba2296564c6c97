#include "Fenwhirl/Application/CommandLine.h"

#include "Fenwhirl/Localization/Localizer.h"

#include <gtest/gtest.h>
#include <string>
#include <vector>

namespace Fenwhirl {

namespace {

using Task = CommandLine::Task;

CommandLine parse(std::vector<std::string> arguments) {
    std::vector<char*> pointers;
    for (std::string& argument : arguments) {
        pointers.push_back(argument.data());
    }
    return CommandLine::parse(pointers);
}

} // namespace

TEST(CommandLine, NoOrUnknownArgumentsStartTheApplication) {
    for (const auto& arguments : std::vector<std::vector<std::string>>{
             {}, {"--frobnicate"}, {"-platform", "offscreen"}, {"file"}, {""}, {"--", "--version"}}) {
        const CommandLine found = parse(arguments);
        EXPECT_EQ(found.task, Task::start);
        EXPECT_EQ(found.preset, std::nullopt);
    }
}

TEST(CommandLine, VersionAndHelpAreFoundBesideOthers) {
    EXPECT_EQ(parse({"--version"}).task, Task::showVersion);
    EXPECT_EQ(parse({"-platform", "offscreen", "--help"}).task, Task::showHelp);
    EXPECT_EQ(parse({"-h"}).task, Task::showHelp);
    EXPECT_EQ(parse({"--self-check"}).task, Task::selfCheck);
    EXPECT_EQ(CommandLine::version(QStringLiteral("1.2")), QStringLiteral("Fenwhirl 1.2\n"));
    for (const char* const word :
         {"--preset", "--self-check", "--version", "--help", "auto, silent, balanced, game, max"}) {
        EXPECT_TRUE(CommandLine::help().contains(QLatin1String(word))) << word;
    }
}

TEST(CommandLine, APresetIsCalledByItsRawValue) {
    for (const Preset preset : allPresets) {
        EXPECT_EQ(parse({"--preset", std::string(rawValue(preset))}).preset, preset);
        EXPECT_EQ(parse({"--preset=" + std::string(rawValue(preset))}).preset, preset);
    }
    EXPECT_EQ(parse({"--preset", "game", "--preset", "max"}).preset, Preset::max);
}

TEST(CommandLine, APresetIsCalledByItsTitleInAnyLanguageWhateverIsSpoken) {
    const AppLanguage before = Localizer::language();
    for (const AppLanguage language : allAppLanguages) {
        for (const Preset preset : allPresets) {
            Localizer::setLanguage(language);
            const QString name = title(preset);
            Localizer::setLanguage(AppLanguage::de);
            EXPECT_EQ(parse({"--preset", name.toStdString()}).preset, preset) << name.toStdString();
            EXPECT_EQ(parse({"--preset", name.toUpper().toStdString()}).preset, preset) << name.toStdString();
            EXPECT_EQ(Localizer::language(), AppLanguage::de);
        }
    }
    Localizer::setLanguage(before);
    // "é" as a base letter and a combining accent, as some terminals send it.
    EXPECT_EQ(parse({"--preset", "E\xcc\x81quilibre\xcc\x81"}).preset, Preset::balanced);
}

TEST(CommandLine, AnUnknownPresetIsAnError) {
    for (const auto& arguments : std::vector<std::vector<std::string>>{{"--preset"},
                                                                       {"--preset="},
                                                                       {"--preset", "turbo"},
                                                                       {"--preset", "\xff"},
                                                                       {"--preset", "game", "--preset"}}) {
        const CommandLine found = parse(arguments);
        EXPECT_EQ(found.task, Task::complain);
        EXPECT_TRUE(found.complaint.contains(QStringLiteral("auto, silent, balanced, game, max")));
    }
    EXPECT_TRUE(parse({"--preset", "turbo"}).complaint.contains(QStringLiteral("turbo")));
}

} // namespace Fenwhirl
