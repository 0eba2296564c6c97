// The pages of the main window, in the order of its sidebar.

#pragma once

#include <QString>

#include <array>
#include <optional>
#include <string_view>

enum class Page { dashboard, fans, sensors, apps, presets, alerts, settings };

inline constexpr std::array<Page, 7> allPages = {Page::dashboard, Page::fans,   Page::sensors, Page::apps,
                                                 Page::presets,   Page::alerts, Page::settings};

// "dashboard", "fans", …
[[nodiscard]] std::string_view rawValue(Page page);
[[nodiscard]] std::optional<Page> pageFromRawValue(std::string_view text);
// In the interface language.
[[nodiscard]] QString title(Page page);
// A symbol's name, as the system and our own drawings know it.
[[nodiscard]] std::string_view icon(Page page);
