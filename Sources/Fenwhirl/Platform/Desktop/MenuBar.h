// The program's menus in the menu bar of macOS. Linux has no such thing, and what is in them is in the
// windows too.
//
// What every program has (to hide, to copy, to close a window) is done by the system, for whatever has the
// focus, also in its save panel; what the program has of its own calls back.
//
// Threads: main thread only.

#pragma once

#include <QList>
#include <QString>

#include <functional>
#include <memory>

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
    QString key; // one character that chooses it together with Command; empty for none
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
    // After the application object. Nothing is shown before the first `show`.
    [[nodiscard]] static std::unique_ptr<MenuBar> create();

    virtual ~MenuBar() = default;
    MenuBar(const MenuBar&) = delete;
    MenuBar& operator=(const MenuBar&) = delete;

    // In the place of those that were shown before. What an item calls must be there as long as this is.
    virtual void show(const QList<Menu>& menus) = 0;

protected:
    MenuBar() = default;
};
