#include "Fenwhirl/Monitoring/Page.h"

#include "Fenwhirl/Localization/Localizer.h"
#include "Fenwhirl/Monitoring/RawValues.h"

namespace {

constexpr RawValueTable<Page, 7> words = {{{Page::dashboard, "dashboard"},
                                           {Page::fans, "fans"},
                                           {Page::sensors, "sensors"},
                                           {Page::apps, "apps"},
                                           {Page::presets, "presets"},
                                           {Page::alerts, "alerts"},
                                           {Page::settings, "settings"}}};

constexpr RawValueTable<Page, 7> icons = {{{Page::dashboard, "square.grid.2x2"},
                                           {Page::fans, "fan"},
                                           {Page::sensors, "thermometer.medium"},
                                           {Page::apps, "cpu"},
                                           {Page::presets, "slider.horizontal.3"},
                                           {Page::alerts, "bell"},
                                           {Page::settings, "gearshape"}}};

} // namespace

std::string_view rawValue(Page page) {
    return rawValueIn(words, page);
}

std::optional<Page> pageFromRawValue(std::string_view text) {
    return caseIn(words, text);
}

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
