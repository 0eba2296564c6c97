// The status item on Linux: a status notifier item while there is a host, otherwise an icon in the classic
// tray. Tests pass a bus of their own.

#pragma once

#include "Fenwhirl/Platform/Desktop/StatusHostQuirks.h"
#include "Fenwhirl/Platform/Desktop/StatusItem.h"
#include "Fenwhirl/Platform/Desktop/StatusNotifierHost.h"
#include "Fenwhirl/Platform/Desktop/StatusNotifierItem.h"
#include "Fenwhirl/Platform/Desktop/SystemAppearance.h"

#include <QCache>
#include <QDBusConnection>
#include <QImage>
#include <QList>
#include <QMenu>
#include <QSystemTrayIcon>

#include <memory>
#include <optional>
#include <utility>

namespace Fenwhirl {

class StatusItemLinux : public StatusItem {
    Q_OBJECT

public:
    StatusItemLinux(SymbolPainter symbol, const QDBusConnection& bus,
                    std::unique_ptr<SystemAppearance> appearance);

    void setText(const QString& text, const QString& shortText,
                 TextChange change = TextChange::notable) override;
    void setMenu(const StatusMenu& menu) override;
    void postpone() override;
    void appear() override;
    [[nodiscard]] bool isPlaced() const override;

private:
    // Chooses the kind of item by what the desktop offers now.
    void place();
    void showNotifierItem();
    void showClassicIcon();
    void updateContent();
    void showClassicMenu();

    SymbolPainter symbol_;
    QDBusConnection bus_;
    StatusNotifierHost host_;
    StatusHostQuirks quirks_; // of the host that shows the item now
    std::unique_ptr<SystemAppearance> appearance_;
    std::unique_ptr<StatusNotifierItem> item_;
    std::unique_ptr<QSystemTrayIcon> classic_;
    StatusMenu menu_;
    bool isPostponed_ = false;
    bool hasPlaceToTake_ = false;        // while postponed: the desktop has answered
    std::unique_ptr<QMenu> classicMenu_; // the menu that was shown last
    QString text_;
    QString shortText_;

    // A cache of drawn icons. The key is the text and whether the bar is dark; `shown_` is the key of the
    // icon on show. The cache exists because QPainter distributes each drawing to several threads, and a
    // temperature that alternates between two values would keep waking them.
    using IconKey = std::pair<QString, bool>;
    [[nodiscard]] QList<QImage> icons(const IconKey& key);
    void forgetIcons();
    void setClassicIcon(const IconKey& key);
    QCache<IconKey, QList<QImage>> drawn_{16};
    std::optional<IconKey> shown_;
    int askedWidth_ = 0; // the width requested from the classic tray
};

} // namespace Fenwhirl
