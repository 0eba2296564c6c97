#include "TextCheck/TableCheck.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <string>
#include <vector>

namespace TextCheck {

using testing::ElementsAre;
using testing::IsEmpty;

namespace {

const SourceFile french = {"French.h", "#include \"Other.h\"\n"
                                       "texts = {\n"
                                       "    u\"Ventilateurs\",\n"
                                       "    // A comment with \"quotes\"\n"
                                       "    u\"À %@ °C dans Fenwhirl\",\n"
                                       "    u\"Processeur\",\n"
                                       "};\n"};

SourceFile table(const std::string& rows) {
    return {"German.h", "#include \"Other.h\"\nrows = {{\n" + rows + "}};\n"};
}

const std::string first = "    {u\"Ventilateurs\", u\"Lüfter\"},\n";
const std::string second = "    {u\"À %@ °C dans Fenwhirl\",\n     u\"Ab %@ °C in \"\n     u\"Fenwhirl\"},\n";
const std::string third = "    {u\"Processeur\", u\"Prozessor\"},\n";

std::vector<std::string> faultsOfTable(const std::string& rows) {
    return faults(french, std::vector{table(rows)}, {});
}

std::vector<std::string> faultsOfSource(const std::string& place, const std::string& content) {
    return faults(french, {}, std::vector{SourceFile{place, content}});
}

} // namespace

TEST(TableCheck, FindsNothingWhereNothingIsWrong) {
    EXPECT_THAT(faultsOfTable(first + second + third), IsEmpty());
}

TEST(TableCheck, NamesARowThatIsMissing) {
    EXPECT_THAT(faultsOfTable(first + third), ElementsAre("German.h: no row for \"À %@ °C dans Fenwhirl\""));
    EXPECT_THAT(faultsOfTable(first + second), ElementsAre("German.h: no row for \"Processeur\""));
}

TEST(TableCheck, NamesARowTooMany) {
    EXPECT_THAT(faultsOfTable(first + "{u\"Ventilos\", u\"Lüfter\"},\n" + second + third),
                ElementsAre("German.h:4: \"Ventilos\" is not in French.h"));
    EXPECT_THAT(faultsOfTable(first + second + third + first),
                ElementsAre("German.h:8: \"Ventilateurs\" has two rows"));
}

TEST(TableCheck, NamesARowInAnotherPlace) {
    EXPECT_THAT(faultsOfTable(third + first + second), // one row too early, not two rows too late
                ElementsAre("German.h:3: \"Processeur\" stands in another place than in French.h"));
    EXPECT_THAT(faultsOfTable(second + third + first),
                ElementsAre("German.h:7: \"Ventilateurs\" stands in another place than in French.h"));
}

TEST(TableCheck, NamesATextWithoutATranslation) {
    EXPECT_THAT(faultsOfTable(first + second + "{u\"Processeur\", u\"\"},\n"),
                ElementsAre("German.h:7: \"Processeur\" has an empty translation"));
    EXPECT_THAT(faultsOfTable(first + second + third + "{u\"Ventilateurs\"},\n"),
                ElementsAre("German.h:8: \"Ventilateurs\" has no translation"));
}

TEST(TableCheck, NamesASlipInATranslation) {
    const auto row = [](const std::string& translation) {
        return faultsOfTable(first + "{u\"À %@ °C dans Fenwhirl\", u\"" + translation + "\"},\n" + third);
    };
    const std::string name = "German.h:4: \"À %@ °C dans Fenwhirl\" ";
    EXPECT_THAT(row("Ab %@ °C und %@ in Fenwhirl"), ElementsAre(name + "has other placeholders"));
    EXPECT_THAT(row("Ab %d °C in Fenwhirl"), ElementsAre(name + "has other placeholders"));
    EXPECT_THAT(row("Ab %@ %% in Fenwhirl"), ElementsAre(name + "has other placeholders"));
    EXPECT_THAT(row("Ab %@ °C"), ElementsAre(name + "names Fenwhirl more or less often"));
    EXPECT_THAT(row("Ab %@ °C in Fenwhirl "),
                ElementsAre(name + "has another blank at its beginning or end"));
    EXPECT_THAT(row("\u00A0Ab %@ °C in Fenwhirl"),
                ElementsAre(name + "has another blank at its beginning or end"));
}

TEST(TableCheck, NamesAFrenchTextThatStandsTwice) {
    EXPECT_THAT(faults({"French.h", "{u\"Mode\",\nu\"Mode\"}"}, {}, {}),
                ElementsAre("French.h:2: \"Mode\" stands here twice"));
}

TEST(TableCheck, NamesATextThatIsAskedForAndHasNoRow) {
    const std::string missing = "\"Ventilateurz\" has no row in French.h and in the tables";
    EXPECT_THAT(faultsOfSource("A.cpp", "return localized(u\"Ventilateurs\");"), IsEmpty());
    EXPECT_THAT(faultsOfSource("A.cpp", "\nreturn localized(u\"Ventilateurz\");"),
                ElementsAre("A.cpp:2: " + missing));
    EXPECT_THAT(
        faultsOfSource("A.cpp", "return on ? TextKey(u\"Ventilateurs\") : TextKey(u\"Ventilateurz\");"),
        ElementsAre("A.cpp:1: " + missing));
    EXPECT_THAT(faultsOfSource("A.qml", "text: qsTr(\"Ventilateurz\")"), ElementsAre("A.qml:1: " + missing));
}

TEST(TableCheck, NamesASensorsNameWithoutARow) {
    EXPECT_THAT(faultsOfSource("SensorNames.cpp", "{\"TC0P\", \"Processeur\"},\n{\"Tp\", \"Processeur \"},"),
                IsEmpty());
    EXPECT_THAT(faultsOfSource("SensorNames.cpp", "{\"TC0P\", \"Processeur\"},\n{\"TC1P\", \"Chipset\"},"),
                ElementsAre("SensorNames.cpp:2: \"Chipset\" has no row in French.h and in the tables"));
    EXPECT_THAT(faultsOfSource("Other.cpp", "{\"TC1P\", \"Chipset\"},"), IsEmpty());
}

} // namespace TextCheck
