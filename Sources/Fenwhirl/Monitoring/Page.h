// The pages of the main window, in the order of its sidebar.

#pragma once

#include <QString>

#include <array>
#include <optional>
#include <string_view>

enum class Page { dashboard, fans, sensors, apps, presets, alerts, settings };

inline constexpr std::array<Page, 7> allPages = {Page::dashboard, Page::fans,   Page::sensors, Page::apps,
                                                 Page::presets,   Page::alerts, Page::settings};

// The name of the page in QML: "dashboard", "fans", …
[[nodiscard]] std::string_view rawValue(Page page);
[[nodiscard]] std::optional<Page> pageFromRawValue(std::string_view text);
// In the interface language.
[[nodiscard]] QString title(Page page);
// The name of a symbol, in the system's symbol set and in our own.
[[nodiscard]] std::string_view icon(Page page);
