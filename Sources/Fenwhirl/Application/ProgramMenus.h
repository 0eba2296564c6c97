// What is in the program's menus, in the shown language: application, Edit, View, Window, Help.
//
// Pure but for the language. Main thread.

#pragma once

#include "Fenwhirl/Monitoring/Page.h"
#include "Fenwhirl/Platform/Desktop/MenuBar.h"

#include <functional>

// What the program does itself. All of them must be set.
struct MenuCommands {
    std::function<void(Page)> showPage; // in the main window, which comes forward
    std::function<void()> createReport;
};

// The settings are a page, chosen by Command-comma as in every program. Each page has its number as a key.
[[nodiscard]] QList<Menu> programMenus(const MenuCommands& commands);
