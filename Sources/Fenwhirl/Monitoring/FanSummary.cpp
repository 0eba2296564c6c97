#include "Fenwhirl/Monitoring/FanSummary.h"

#include "Fenwhirl/Localization/Localizer.h"
#include "Fenwhirl/Localization/NumberFormat.h"

#include <QStringList>

namespace Fenwhirl {

double averageFanSpeed(const QList<FanState>& fans) {
    if (fans.isEmpty()) {
        return 0;
    }
    double sum = 0;
    for (const FanState& fan : fans) {
        sum += fan.rpm;
    }
    return sum / static_cast<double>(fans.size());
}

QString statusItemText(const QList<FanState>& fans, std::optional<double> primaryCelsius) {
    QStringList parts;
    if (!fans.isEmpty()) {
        parts += NumberFormat::rpmText(averageFanSpeed(fans)) + u' ' + localized(u"tr/min");
    }
    if (primaryCelsius) {
        parts += QString::number(NumberFormat::truncated(*primaryCelsius)) + QStringLiteral(" °C");
    }
    return parts.isEmpty() ? QStringLiteral("Fenwhirl") : parts.join(QStringLiteral(" · "));
}

QString fanDisplayName(const FanState& fan, qsizetype fanCount) {
    if (fanCount == 1) {
        return localized(u"Ventilateur");
    }
    if (fanCount == 2) {
        return fan.id == 0 ? localized(u"Ventilateur gauche") : localized(u"Ventilateur droit");
    }
    return localized(u"Ventilateur %@", {QString::number(qint64{fan.id} + 1)});
}

} // namespace Fenwhirl
