// The pages of the main window, in the order of its sidebar. Any thread.

#pragma once

#include "Fenwhirl/Monitoring/RawValues.h"

namespace Fenwhirl {

enum class Page { dashboard, fans, sensors, apps, presets, alerts, settings };

// The names of the pages in QML.
inline constexpr RawValueTable<Page, 7> pageRawValues = {{{Page::dashboard, "dashboard"},
                                                          {Page::fans, "fans"},
                                                          {Page::sensors, "sensors"},
                                                          {Page::apps, "apps"},
                                                          {Page::presets, "presets"},
                                                          {Page::alerts, "alerts"},
                                                          {Page::settings, "settings"}}};

inline constexpr std::array allPages = casesOf(pageRawValues);

[[nodiscard]] constexpr std::string_view rawValue(Page page) {
    return rawValueIn(pageRawValues, page);
}

[[nodiscard]] constexpr std::optional<Page> pageFromRawValue(std::string_view text) {
    return caseIn(pageRawValues, text);
}

} // namespace Fenwhirl
