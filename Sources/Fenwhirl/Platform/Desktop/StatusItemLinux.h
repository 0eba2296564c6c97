// The status item on Linux: a status notifier item while a host is there, else an icon in the classic tray.
// Tests make it with a bus of their own.

#pragma once

#include "Fenwhirl/Platform/Desktop/StatusHostHabits.h"
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

class StatusItemLinux : public StatusItem {
    Q_OBJECT

public:
    StatusItemLinux(SymbolPainter symbol, const QDBusConnection& bus,
                    std::unique_ptr<SystemAppearance> appearance);

    void setText(const QString& text, const QString& shortText) override;
    void setMenu(const StatusMenu& menu) override;
    [[nodiscard]] bool isPlaced() const override;

private:
    // Chooses between the two kinds of item by what the desktop offers now.
    void place();
    void showNotifierItem();
    void showClassicIcon();
    void updateContent();
    void showClassicMenu();

    SymbolPainter symbol_;
    QDBusConnection bus_;
    StatusNotifierHost host_;
    StatusHostHabits habits_; // of the place where the item is
    std::unique_ptr<SystemAppearance> appearance_;
    std::unique_ptr<StatusNotifierItem> item_;
    std::unique_ptr<QSystemTrayIcon> classic_;
    StatusMenu menu_;
    std::unique_ptr<QMenu> classicMenu_; // the one that was shown last
    QString text_;
    QString shortText_;

    // Drawn icons by text and whether they are for a dark bar, and which of them are shown. QPainter shares
    // out each drawing to threads, so a temperature that goes to and fro would wake them all the time.
    using IconKey = std::pair<QString, bool>;
    [[nodiscard]] QList<QImage> icons(const IconKey& key);
    void forgetIcons();
    void setClassicIcon(const IconKey& key);
    QCache<IconKey, QList<QImage>> drawn_{16};
    std::optional<IconKey> shown_;
    int askedWidth_ = 0; // of the classic tray
};
