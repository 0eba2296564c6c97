#include "Fenwhirl/Views/PageLabels.h"

#include "Fenwhirl/Localization/Localizer.h"

#include <gtest/gtest.h>
#include <vector>

namespace Fenwhirl {

TEST(PageLabels, AreThoseOfTheSidebar) {
    Localizer::setLanguage(AppLanguage::fr);
    std::vector<std::string_view> icons;
    QStringList titles;
    for (const Page page : allPages) {
        icons.push_back(icon(page));
        titles += title(page);
    }
    EXPECT_EQ(icons, (std::vector<std::string_view>{"square.grid.2x2", "fan", "thermometer.medium", "cpu",
                                                    "slider.horizontal.3", "bell", "gearshape"}));
    EXPECT_EQ(titles.join(u'|'), QStringLiteral("Tableau de bord|Ventilateurs|Capteurs|Applications|"
                                                "Préréglages|Alertes|Réglages"));
    Localizer::setLanguage(AppLanguage::automatic);
}

} // namespace Fenwhirl
