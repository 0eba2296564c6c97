#include "PackageTexts.h"

#include "DesktopEntry.h"
#include "Fenwhirl/HelperClient/HelperClient.h"
#include "Fenwhirl/Localization/Localizer.h"

#include <QStringList>

#include <array>
#include <functional>
#include <utility>

namespace Fenwhirl {

namespace {

// The path of the program in a package.
constexpr std::string_view packagedProgram = "/usr/bin/Fenwhirl";

// The language codes of XML. polkit recognises Serbian in Latin script only by its locale name.
constexpr std::array<std::pair<AppLanguage, QStringView>, 9> languages = {
    {{AppLanguage::fr, u"fr"},
     {AppLanguage::srCyrl, u"sr"},
     {AppLanguage::srLatn, u"sr-Latn"},
     {AppLanguage::srLatn, u"sr_RS@latin"},
     {AppLanguage::de, u"de"},
     {AppLanguage::es, u"es"},
     {AppLanguage::it, u"it"},
     {AppLanguage::pt, u"pt"},
     {AppLanguage::ru, u"ru"}}};

enum class Reader { appStream, polkit };

// The element in English, then once for each other language.
QString elements(const QString& name, Reader reader, const std::function<QString()>& text) {
    const AppLanguage before = Localizer::language();
    Localizer::setLanguage(AppLanguage::en);
    QString lines = QStringLiteral("<%1>%2</%1>\n").arg(name, text().toHtmlEscaped());
    for (const auto& [language, code] : languages) {
        if (code.contains(u'@') ? reader == Reader::appStream
                                : code.contains(u'-') && reader == Reader::polkit) {
            continue;
        }
        Localizer::setLanguage(language);
        lines += QStringLiteral("<%1 xml:lang=\"%2\">%3</%1>\n").arg(name, code, text().toHtmlEscaped());
    }
    Localizer::setLanguage(before);
    return lines;
}

QString summary() {
    return localized(u"Choisis la vitesse de chaque ventilateur");
}

QString description() {
    return localized(
        u"Fenwhirl surveille la température de ton Mac et règle la vitesse des ventilateurs pour "
        u"qu'il reste frais et silencieux.");
}

QString activationMessage() {
    return localized(u"Activer le contrôle des ventilateurs");
}

QString removalMessage() {
    return localized(u"Contrôle des ventilateurs") + QStringLiteral(" – ") + localized(u"Désactiver");
}

QString shellWord(QString text) {
    return u'\'' + text.replace(u'\'', QStringLiteral("'\\''")) + u'\'';
}

} // namespace

QString filledTemplate(QString text) {
    const QString install =
        QString::fromStdString(HelperClient::installCommand(packagedProgram).value_or(std::string()));
    const QString remove = QString::fromStdString(HelperClient::removalCommand());
    text = desktopEntry(text);
    text.replace(QStringLiteral("@SUMMARIES@\n"),
                 elements(QStringLiteral("summary"), Reader::appStream, summary));
    text.replace(QStringLiteral("@DESCRIPTIONS@\n"),
                 elements(QStringLiteral("p"), Reader::appStream, description));
    text.replace(QStringLiteral("@ACTIVATION_MESSAGES@\n"),
                 elements(QStringLiteral("message"), Reader::polkit, activationMessage));
    text.replace(QStringLiteral("@REMOVAL_MESSAGES@\n"),
                 elements(QStringLiteral("message"), Reader::polkit, removalMessage));
    text.replace(QStringLiteral("@INSTALL_COMMAND_SH@"), shellWord(install));
    text.replace(QStringLiteral("@REMOVE_COMMAND_SH@"), shellWord(remove));
    return text;
}

} // namespace Fenwhirl
