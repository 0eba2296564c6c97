#include "Fenwhirl/Views/PageLabels.h"

#include "Fenwhirl/Localization/Localizer.h"
#include "Fenwhirl/Monitoring/RawValues.h"

namespace Fenwhirl {

namespace {

constexpr RawValueTable<Page, 7> icons = {{{Page::dashboard, "square.grid.2x2"},
                                           {Page::fans, "fan"},
                                           {Page::sensors, "thermometer.medium"},
                                           {Page::apps, "cpu"},
                                           {Page::presets, "slider.horizontal.3"},
                                           {Page::alerts, "bell"},
                                           {Page::settings, "gearshape"}}};

} // namespace

QString title(Page page) {
    switch (page) {
    case Page::dashboard:
        return localized(u"Tableau de bord");
    case Page::fans:
        return localized(u"Ventilateurs");
    case Page::sensors:
        return localized(u"Capteurs");
    case Page::apps:
        return localized(u"Applications");
    case Page::presets:
        return localized(u"Préréglages");
    case Page::alerts:
        return localized(u"Alertes");
    case Page::settings:
        return localized(u"Réglages");
    }
    return {};
}

std::string_view icon(Page page) {
    return rawValueIn(icons, page);
}

} // namespace Fenwhirl
