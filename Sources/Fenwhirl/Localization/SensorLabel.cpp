#include "Fenwhirl/Localization/SensorLabel.h"

#include "Fenwhirl/Localization/Localizer.h"
#include "FenwhirlCore/SensorNames.h"

#include <array>

namespace {

// What generated names begin with. The first that fits decides.
constexpr std::array generatedWords = {
    TextKey(u"Cœur CPU"), TextKey(u"Cœur performance"), TextKey(u"Cœur efficacité"), TextKey(u"Graphisme"),
    TextKey(u"Mémoire"),  TextKey(u"Surface"),          TextKey(u"Batterie"),        TextKey(u"Capteur")};

// "Processeur (E)": the letter of the sensor's key, in brackets at the end of its name.
qsizetype keysPart(QStringView name) {
    constexpr qsizetype length = 3;
    const bool letter = name.size() > length && name.endsWith(u')') && name[name.size() - length] == u'(';
    return letter ? length : 0;
}

} // namespace

QString SensorLabel::name(const QString& key) {
    QString french = QString::fromStdString(SensorNames::friendly(key.toStdString()));
    if (const auto translated = Localizer::lookup(french)) {
        // What is of the key is no word, and no letter of another script.
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
