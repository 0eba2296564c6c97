#include "Fenwhirl/Monitoring/MonitorStates.h"

#include "Fenwhirl/Localization/Localizer.h"

namespace Fenwhirl {

QString detail(HealthStatus status) {
    switch (status) {
    case HealthStatus::normal:
        return localized(u"Mac en bonne santé");
    case HealthStatus::warm:
        return localized(u"Les ventilateurs travaillent");
    case HealthStatus::hot:
        return localized(u"Ferme des applications");
    }
    return {};
}

QString word(HealthStatus status) {
    switch (status) {
    case HealthStatus::normal:
        return localized(u"Tout est normal");
    case HealthStatus::warm:
        return localized(u"Le Mac est chaud");
    case HealthStatus::hot:
        return localized(u"Surchauffe");
    }
    return {};
}

} // namespace Fenwhirl
