#include "DesktopEntry.h"

#include "Fenwhirl/Localization/Localizer.h"
#include "Fenwhirl/Monitoring/Preset.h"

#include <QStringList>

#include <array>
#include <utility>

namespace Fenwhirl {

namespace {

// The locale names that desktops use. "sr" alone means Serbian in Cyrillic.
constexpr std::array<std::pair<AppLanguage, QStringView>, 9> locales = {{{AppLanguage::en, u"en"},
                                                                         {AppLanguage::fr, u"fr"},
                                                                         {AppLanguage::srCyrl, u"sr"},
                                                                         {AppLanguage::srLatn, u"sr@latin"},
                                                                         {AppLanguage::de, u"de"},
                                                                         {AppLanguage::es, u"es"},
                                                                         {AppLanguage::it, u"it"},
                                                                         {AppLanguage::pt, u"pt"},
                                                                         {AppLanguage::ru, u"ru"}}};

QString escaped(QString text) {
    return text.replace(u'\\', QStringLiteral("\\\\"));
}

QString keywords() {
    QStringList words;
    for (const TextKey key :
         {TextKey(u"Ventilateurs"), TextKey(u"Ventilateur"), TextKey(u"Température du processeur"),
          TextKey(u"Capteurs"), TextKey(u"Surchauffe")}) {
        words.append(escaped(localized(key)).replace(u';', QStringLiteral("\\;")) + u';');
    }
    words.removeDuplicates(); // in German, one fan and several have the same name
    return words.join(QString());
}

QString lines(const QString& suffix) {
    return QStringLiteral("GenericName%1=%2\nComment%1=%3\nKeywords%1=%4\n")
        .arg(suffix, escaped(localized(u"Contrôle des ventilateurs")),
             escaped(localized(u"Choisis la vitesse de chaque ventilateur")), keywords());
}

QString wordOf(Preset preset) {
    const std::string_view word = rawValue(preset);
    return QString::fromLatin1(word.data(), static_cast<qsizetype>(word.size()));
}

} // namespace

QString desktopEntryTexts() {
    const AppLanguage before = Localizer::language();
    Localizer::setLanguage(AppLanguage::en);
    QString texts = lines(QString());
    for (const auto& [language, locale] : locales) {
        Localizer::setLanguage(language);
        texts += lines(QStringLiteral("[%1]").arg(locale));
    }
    Localizer::setLanguage(before);
    return texts;
}

QString desktopEntryActions() {
    const AppLanguage before = Localizer::language();
    QString list = QStringLiteral("Actions=");
    QString groups;
    for (const Preset preset : allPresets) {
        const QString word = wordOf(preset);
        list += word + u';';
        Localizer::setLanguage(AppLanguage::en);
        groups += QStringLiteral("\n[Desktop Action %1]\nName=%2\n").arg(word, escaped(title(preset)));
        for (const auto& [language, locale] : locales) {
            Localizer::setLanguage(language);
            groups += QStringLiteral("Name[%1]=%2\n").arg(locale, escaped(title(preset)));
        }
        groups += QStringLiteral("Exec=Fenwhirl --preset %1\n").arg(word);
    }
    Localizer::setLanguage(before);
    return list + u'\n' + groups;
}

QString desktopEntry(QString entryTemplate) {
    return entryTemplate.replace(QStringLiteral("@TEXTS@\n"), desktopEntryTexts())
        .replace(QStringLiteral("@ACTIONS@\n"), desktopEntryActions());
}

} // namespace Fenwhirl
