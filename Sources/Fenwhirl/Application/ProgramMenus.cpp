#include "Fenwhirl/Application/ProgramMenus.h"

#include "Fenwhirl/Localization/Localizer.h"
#include "Fenwhirl/Localization/SystemTerms.h"
#include "Fenwhirl/Views/PageLabels.h"

namespace Fenwhirl {

namespace {

using Kind = MenuItem::Kind;

MenuItem ofSystem(Kind kind, QStringView english, const QString& key = {}) {
    return {.kind = kind, .title = SystemTerms::text(english), .key = key, .chosen = {}};
}

MenuItem own(const QString& title, const QString& key, std::function<void()> chosen) {
    return {.kind = Kind::own, .title = title, .key = key, .chosen = std::move(chosen)};
}

Menu applicationMenu(const MenuCommands& commands) {
    const MenuItem separator;
    return {.role = Menu::Role::application,
            .title = QStringLiteral("Fenwhirl"),
            .items = {ofSystem(Kind::about, u"About %1"), separator,
                      own(SystemTerms::text(u"Settings…"), QStringLiteral(","),
                          [show = commands.showPage] { show(Page::settings); }),
                      separator, ofSystem(Kind::services, u"Services"), separator,
                      ofSystem(Kind::hide, u"Hide %1", QStringLiteral("h")),
                      ofSystem(Kind::hideOthers, u"Hide Others", QStringLiteral("h")),
                      ofSystem(Kind::showAll, u"Show All"), separator,
                      ofSystem(Kind::quit, u"Quit %1", QStringLiteral("q"))}};
}

Menu editMenu() {
    return {.role = Menu::Role::plain,
            .title = SystemTerms::text(u"Edit"),
            .items = {ofSystem(Kind::cut, u"Cut", QStringLiteral("x")),
                      ofSystem(Kind::copy, u"Copy", QStringLiteral("c")),
                      ofSystem(Kind::paste, u"Paste", QStringLiteral("v")),
                      ofSystem(Kind::selectAll, u"Select All", QStringLiteral("a"))}};
}

Menu viewMenu(const MenuCommands& commands) {
    Menu menu{.role = Menu::Role::plain, .title = SystemTerms::text(u"View"), .items = {}};
    int number = 1;
    for (const Page page : allPages) {
        menu.items.append(
            own(title(page), QString::number(number++), [show = commands.showPage, page] { show(page); }));
    }
    return menu;
}

Menu windowMenu() {
    return {.role = Menu::Role::windows,
            .title = SystemTerms::text(u"Window"),
            .items = {ofSystem(Kind::close, u"Close", QStringLiteral("w")),
                      ofSystem(Kind::minimize, u"Minimize", QStringLiteral("m")),
                      ofSystem(Kind::zoom, u"Zoom"), MenuItem(),
                      ofSystem(Kind::bringAllToFront, u"Bring All to Front")}};
}

Menu helpMenu(const MenuCommands& commands) {
    return {.role = Menu::Role::help,
            .title = SystemTerms::text(u"Help"),
            .items = {own(localized(u"Rapport de diagnostic"), {}, commands.createReport)}};
}

} // namespace

QList<Menu> programMenus(const MenuCommands& commands) {
    return {applicationMenu(commands), editMenu(), viewMenu(commands), windowMenu(), helpMenu(commands)};
}

} // namespace Fenwhirl
