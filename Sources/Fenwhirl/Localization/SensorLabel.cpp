#include "Fenwhirl/Localization/SensorLabel.h"

#include "Fenwhirl/Localization/Localizer.h"
#include "FenwhirlCore/SensorNames.h"

#include <array>

namespace Fenwhirl {

namespace {

// The words that generated names begin with. The first match decides.
constexpr std::array generatedWords = {
    TextKey(u"Cœur CPU"), TextKey(u"Cœur performance"), TextKey(u"Cœur efficacité"), TextKey(u"Graphisme"),
    TextKey(u"Mémoire"),  TextKey(u"Surface"),          TextKey(u"Batterie"),        TextKey(u"Capteur")};

// The length of the part that comes from the key: "(E)" at the end of "Processeur (E)".
qsizetype keysPart(QStringView name) {
    constexpr qsizetype length = 3;
    const bool letter = name.size() > length && name.endsWith(u')') && name[name.size() - length] == u'(';
    return letter ? length : 0;
}

} // namespace

QString SensorLabel::name(const QString& key) {
    QString french = QString::fromStdString(SensorNames::friendly(key.toStdString()));
    if (const auto translated = Localizer::lookup(french)) {
        // A part of the key is not a word: it is neither translated nor transliterated.
        const qsizetype part = keysPart(french);
        return translated->chopped(part) + french.last(part);
    }
    for (const TextKey word : generatedWords) {
        const QString beginning = QStringView(word.french()).toString() + u' ';
        if (french.startsWith(beginning)) {
            return localized(word) + u' ' + french.sliced(beginning.size());
        }
    }
    return french;
}

} // namespace Fenwhirl
