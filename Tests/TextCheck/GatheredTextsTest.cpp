#include "TextCheck/GatheredTexts.h"

#include <gtest/gtest.h>
#include <string>
#include <vector>

namespace TextCheck {

namespace {

std::vector<std::string> texts(std::string_view source, Grammar grammar, Gathered::Kind kind) {
    std::vector<std::string> found;
    for (const Gathered& text : gather(source, grammar)) {
        if (text.kind == kind) {
            found.push_back(text.text);
        }
    }
    return found;
}

using Texts = std::vector<std::string>;

} // namespace

TEST(GatheredTexts, FindWhatCppAsksFor) {
    EXPECT_EQ(
        texts(
            R"cpp(auto a = localized(u"Réglages"); auto b = localized(QStringLiteral("Ventilateur %@"), {u"x y"_s});
                       auto c = Localizer::lookup(on ? u"Activer" : u"Désactiver"); )cpp",
            Grammar::cpp, Gathered::Kind::asked),
        (Texts{"Réglages", "Ventilateur %@", "Activer", "Désactiver"}));
}

TEST(GatheredTexts, JoinAdjacentLiteralsAndReadEscapes) {
    EXPECT_EQ(texts("localized(u\"un \" \n u\"deux\\\"\\u00e9\\n\")", Grammar::cpp, Gathered::Kind::asked),
              (Texts{"un deux\"é\n"}));
    EXPECT_EQ(texts("f(R\"x(brut é \" )\" )x\")", Grammar::cpp, Gathered::Kind::loose),
              (Texts{"brut é \" )\" "}));
}

TEST(GatheredTexts, ReadEscapesOfEveryLength) {
    EXPECT_EQ(texts(R"cpp(localized(u"\u00e9t\U000000e9 \U0001F321 \u{1F321}");)cpp", Grammar::cpp,
                    Gathered::Kind::asked),
              (Texts{"été 🌡 🌡"}));
    EXPECT_EQ(texts(R"(Text { text: qsTr("\u{e9}t\xe9 \U") })", Grammar::qml, Gathered::Kind::asked),
              (Texts{"été U"}));
}

TEST(GatheredTexts, PassOverComments) {
    EXPECT_EQ(texts("// localized(u\"a\")\n/* localized(u\"é\") */ f(u\"c\"); // d'un \"côté\"", Grammar::cpp,
                    Gathered::Kind::other),
              (Texts{"c"}));
}

TEST(GatheredTexts, KeepQuotesOfNumbersAndCharactersApart) {
    EXPECT_EQ(texts("x = 1'000; y = '\"'; z = localized(u\"Jeu\");", Grammar::cpp, Gathered::Kind::asked),
              (Texts{"Jeu"}));
}

TEST(GatheredTexts, FindTextsThatCppDoesNotAskFor) {
    EXPECT_EQ(
        texts(
            R"cpp(a("Température"); b(u"Ce Mac"); c("not wide words"); d("key"); e(QStringLiteral("deux mots"));
                       f(u" °C"); g(u" · "); h(u"–"); i(u"Српски"); j("\xE2\x80\xA8\xEF\xBF\xBD");)cpp",
            Grammar::cpp, Gathered::Kind::loose),
        (Texts{"Température", "Ce Mac", "deux mots", "Српски"}));
}

TEST(GatheredTexts, FindWhatQmlAsksFor) {
    EXPECT_EQ(texts("Text {\n text: busy ? qsTr(\"Activation…\") : qsTr('Activer')\n}", Grammar::qml,
                    Gathered::Kind::asked),
              (Texts{"Activation…", "Activer"}));
}

TEST(GatheredTexts, TellTheControlOfATextInQml) {
    const auto found =
        gather("Card {\n property int a: 1\n Row {\n Label {\n text: qsTr(\"un\")\n onA: { b(\"x\") }\n"
               " title: qsTr(\"deux\")\n }\n }\n heading: qsTr(\"trois\")\n}",
               Grammar::qml);
    std::vector<std::string> controls;
    for (const Gathered& text : found) {
        if (text.kind == Gathered::Kind::asked) {
            controls.push_back(text.control);
        }
    }
    EXPECT_EQ(controls, (std::vector<std::string>{"Label.text", "Label.title", "Card.heading"}));
}

TEST(GatheredTexts, LeaveOutWhatIsToldToDevelopers) {
    const char* const source =
        "Card {\n Component.onCompleted: { console.warn(\"two words\"); show(\"three more words\") }\n}";
    EXPECT_EQ(texts(source, Grammar::qml, Gathered::Kind::loose), (Texts{"three more words"}));
}

TEST(GatheredTexts, FindTheWordsOfTheSystemThatQmlAsksFor) {
    const char* const source = "Button {\n text: qsTranslate(\"SystemTerms\", \"Close\")\n}";
    EXPECT_EQ(texts(source, Grammar::qml, Gathered::Kind::system), (Texts{"Close"}));
    EXPECT_EQ(texts(source, Grammar::qml, Gathered::Kind::loose), Texts{});
}

TEST(GatheredTexts, ReportQmlThatAsksForWhatNobodyCanKnow) {
    EXPECT_EQ(
        texts("Text { text: qsTranslate(\"SystemTerms\", word) }", Grammar::qml, Gathered::Kind::dynamic)
            .size(),
        1U);
    EXPECT_EQ(texts("Text { text: qsTr(modelData) }", Grammar::qml, Gathered::Kind::dynamic).size(), 1U);
    EXPECT_EQ(texts("Text { text: qsTr(a ? \"b\" : c) }", Grammar::qml, Gathered::Kind::dynamic).size(), 0U);
}

TEST(GatheredTexts, FindTextsThatQmlDoesNotAskFor) {
    EXPECT_EQ(
        texts("Button {\n text: on ? qsTr(\"Actif\") : \"Inactif\"\n}", Grammar::qml, Gathered::Kind::loose),
        (Texts{"Inactif"}));
    EXPECT_EQ(texts("Item {\n Accessible.name: \"fan\"\n objectName: \"fan\"\n}", Grammar::qml,
                    Gathered::Kind::loose),
              (Texts{"fan"}));
    EXPECT_EQ(texts("Item { property string title: \"Capteurs\" }", Grammar::qml, Gathered::Kind::loose),
              (Texts{"Capteurs"}));
    EXPECT_EQ(texts("function f() { return \"deux mots\" + \"é\" }", Grammar::qml, Gathered::Kind::loose),
              (Texts{"deux mots", "é"}));
}

TEST(GatheredTexts, LeaveSignsAndIdentifiersOfQmlAlone) {
    EXPECT_EQ(
        texts("import \"Some Folder\"\nText {\n text: \" – \" + value + \" · \"\n font.family: \"Inter\"\n}",
              Grammar::qml, Gathered::Kind::loose),
        Texts{});
}

TEST(GatheredTexts, SurviveBrokenSources) {
    for (const char* const source :
         {"\"", "'", "localized(", "localized(u\"", "R\"(", "/*", "u\"\\", "qsTr(((", "`a\n"}) {
        EXPECT_NO_FATAL_FAILURE(static_cast<void>(gather(source, Grammar::cpp))) << source;
        EXPECT_NO_FATAL_FAILURE(static_cast<void>(gather(source, Grammar::qml))) << source;
    }
}

} // namespace TextCheck
