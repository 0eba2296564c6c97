#include "Fenwhirl/Localization/SensorLabel.h"

#include "Fenwhirl/Localization/Localizer.h"
#include "FenwhirlCore/SensorNames.h"

#include <array>

namespace {

// What generated names begin with. The first that fits decides.
constexpr std::array<TextKey, 8> generatedWords = {u"Cœur CPU",  u"Cœur performance", u"Cœur efficacité",
                                                   u"Graphisme", u"Mémoire",          u"Surface",
                                                   u"Batterie",  u"Capteur"};

} // namespace

QString SensorLabel::name(const QString& key) {
    QString french = QString::fromStdString(SensorNames::friendly(key.toStdString()));
    if (const auto translated = Localizer::lookup(french)) {
        return *translated;
    }
    for (const TextKey word : generatedWords) {
        const QString beginning = QStringView(word.french()).toString() + u' ';
        if (french.startsWith(beginning)) {
            return localized(word) + u' ' + french.sliced(beginning.size());
        }
    }
    return french;
}
