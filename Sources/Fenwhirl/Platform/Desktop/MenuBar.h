// The program's menus in the menu bar of macOS. Linux has no such menu bar; everything in these menus is also
// in the windows.
//
// The system carries out the commands that every program has (hide, copy, close a window), for whatever has
// the focus, even in its own save panel. The program's own commands call back.
//
// Threads: main thread only.

#pragma once

#include <QList>
#include <QString>

#include <functional>
#include <memory>

namespace Fenwhirl {

struct MenuItem {
    enum class Kind {
        own, // calls `chosen`
        separator,
        about,
        services,
        hide,
        hideOthers,
        showAll,
        quit,
        cut,
        copy,
        paste,
        selectAll,
        close,
        minimize,
        zoom,
        bringAllToFront,
    };

    Kind kind = Kind::separator;
    QString title;
    QString key; // the character that, together with Command, chooses the item; empty for none
    std::function<void()> chosen;
};

struct Menu {
    enum class Role { plain, application, windows, help };

    Role role = Role::plain;
    QString title;
    QList<MenuItem> items;
};

class MenuBar {
public:
    // Call this after creating the application object. Nothing is shown before the first `show`.
    [[nodiscard]] static std::unique_ptr<MenuBar> create();

    virtual ~MenuBar() = default;
    MenuBar(const MenuBar&) = delete;
    MenuBar& operator=(const MenuBar&) = delete;

    // Replaces the menus shown before. Whatever an item calls must live as long as this object.
    virtual void show(const QList<Menu>& menus) = 0;

protected:
    MenuBar() = default;
};

} // namespace Fenwhirl
