// The contents of the program's menus in the shown language: application, Edit, View, Window, Help.
//
// Pure, except for the language. Main thread.

#pragma once

#include "Fenwhirl/Monitoring/Page.h"
#include "Fenwhirl/Platform/Desktop/MenuBar.h"

#include <functional>

namespace Fenwhirl {

// The commands that the program implements itself. All of them must be set.
struct MenuCommands {
    std::function<void(Page)> showPage; // in the main window, which is brought to the front
    std::function<void()> createReport;
};

// The settings are a page, opened with Command-comma as in every program. Each page's shortcut is its number.
[[nodiscard]] QList<Menu> programMenus(const MenuCommands& commands);

} // namespace Fenwhirl
