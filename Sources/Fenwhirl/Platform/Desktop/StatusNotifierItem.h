// One status notifier item on the bus: the properties and methods that a host uses, and the signals that the
// host receives.
//
// Created when there is a host and destroyed when it goes. `announce` makes the item known once its content
// is set. The object has a bus connection of its own, so that its service name disappears with it.
//
// Threads: main thread only. Linux only.

#pragma once

#include "Fenwhirl/Platform/Desktop/StatusHostQuirks.h"
#include "Fenwhirl/Platform/Desktop/StatusNotifierMenu.h"

#include <QByteArray>
#include <QDBusArgument>
#include <QDBusConnection>
#include <QDBusContext>
#include <QDBusObjectPath>
#include <QElapsedTimer>
#include <QImage>
#include <QList>
#include <QObject>
#include <QPoint>
#include <QString>

#include <chrono>
#include <memory>
#include <utility>

namespace Fenwhirl {

// An image in the protocol's format: ARGB, most significant byte first.
struct StatusNotifierPixmap {
    int width = 0;
    int height = 0;
    QByteArray bytes;
};

using StatusNotifierPixmaps = QList<StatusNotifierPixmap>;

struct StatusNotifierToolTip {
    QString iconName;
    StatusNotifierPixmaps icon;
    QString title;
    QString text;
};

QDBusArgument& operator<<(QDBusArgument& argument, const StatusNotifierPixmap& pixmap);
const QDBusArgument& operator>>(const QDBusArgument& argument, StatusNotifierPixmap& pixmap);
QDBusArgument& operator<<(QDBusArgument& argument, const StatusNotifierToolTip& tip);
const QDBusArgument& operator>>(const QDBusArgument& argument, StatusNotifierToolTip& tip);

class StatusNotifierItem : public QObject, protected QDBusContext {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.kde.StatusNotifierItem")
    Q_PROPERTY(QString Category READ category)
    Q_PROPERTY(QString Id READ id)
    Q_PROPERTY(QString Title READ title)
    Q_PROPERTY(QString IconAccessibleDesc READ title)
    Q_PROPERTY(QString Status READ status)
    Q_PROPERTY(int WindowId READ windowId)
    Q_PROPERTY(QDBusObjectPath Menu READ menu)
    Q_PROPERTY(QString IconName READ iconName)
    Q_PROPERTY(Fenwhirl::StatusNotifierPixmaps IconPixmap READ iconPixmap)
    Q_PROPERTY(Fenwhirl::StatusNotifierToolTip ToolTip READ toolTip)
    Q_PROPERTY(bool ItemIsMenu READ itemIsMenu)

public:
    static constexpr std::chrono::seconds usualTextPause = std::chrono::seconds(10);

    // While the icon stays the same, the host is notified of new texts at most once per `textPause`.
    explicit StatusNotifierItem(const QDBusConnection& bus, const StatusHostQuirks& quirks = {},
                                std::chrono::milliseconds textPause = usualTextPause,
                                QObject* parent = nullptr);
    ~StatusNotifierItem() override;

    StatusNotifierItem(const StatusNotifierItem&) = delete;
    StatusNotifierItem& operator=(const StatusNotifierItem&) = delete;

    // Registers the item with the watcher. Call this once, after the first content was set.
    void announce();
    // Notifies the host, which then reads the icons.
    void setIcons(const QList<QImage>& icons);
    // Sets the context menu, for hosts that support one. Call this before the item is announced, and again
    // whenever the entries change.
    void setMenu(StatusMenu menu);
    // Sets the text that hosts read from now on. A host that writes it into its bar is notified at once. Any
    // other is notified after a change of the icon; otherwise rarely, and then only of a new tool tip,
    // because speeds fluctuate with every poll and each message wakes both programs.
    void setText(const QString& text);
    // The same, but a host that shows the text only in a tool tip is not notified.
    void setTextQuietly(const QString& text);

    [[nodiscard]] QString category() const;
    [[nodiscard]] QString id() const;

    [[nodiscard]] QString title() const { return title_; }

    [[nodiscard]] QString status() const;

    [[nodiscard]] int windowId() const { return 0; }

    [[nodiscard]] QDBusObjectPath menu() const;

    [[nodiscard]] QString iconName() const { return {}; }

    [[nodiscard]] StatusNotifierPixmaps iconPixmap() const { return icon_; }

    [[nodiscard]] StatusNotifierToolTip toolTip() const { return {{}, {}, title_, {}}; }

    [[nodiscard]] bool itemIsMenu() const { return false; }

public Q_SLOTS:

    // NOLINTBEGIN(readability-identifier-naming): the names of the interface
    // Called before a click where windows need permission to take the focus. The token is valid for that
    // click.
    Q_SCRIPTABLE void ProvideXdgActivationToken(const QString& token) { token_ = token; }

    // Left, middle and right click. x and y are the item's position as the host knows it, in physical pixels.
    Q_SCRIPTABLE void Activate(int x, int y);

    Q_SCRIPTABLE void SecondaryActivate(int x, int y) { choose(x, y); }

    Q_SCRIPTABLE void ContextMenu(int x, int y) { choose(x, y); }

    Q_SCRIPTABLE void Scroll(int /*delta*/, const QString& /*orientation*/) {}

Q_SIGNALS:
    Q_SCRIPTABLE void NewTitle();
    Q_SCRIPTABLE void NewIcon();
    Q_SCRIPTABLE void NewToolTip();
    Q_SCRIPTABLE void XAyatanaNewLabel(const QString& label, const QString& guide);
    // NOLINTEND(readability-identifier-naming)
    void activated(QPoint pixel, const QString& token);

private:
    void choose(int x, int y) { Q_EMIT activated({x, y}, std::exchange(token_, {})); }

    QDBusConnection bus_;
    QString sharedBus_; // the name of the application's connection, which bus_ is when no second one was made
    StatusHostQuirks quirks_;
    QString service_;
    QString token_;
    std::chrono::milliseconds textPause_;
    QString title_;
    QString notifiedTitle_;    // the text of the last notification
    QElapsedTimer told_;       // since that notification
    bool iconChanged_ = false; // since that notification
    StatusNotifierPixmaps icon_;
    std::unique_ptr<StatusNotifierMenu> menu_;
};

// The same with its text as a label, for hosts that write it beside the icon. Labels are not part of the
// protocol: a host that does not support them may refuse to show an item that has one, even an empty one
// (MATE).
class LabelledStatusNotifierItem : public StatusNotifierItem {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.kde.StatusNotifierItem")
    Q_PROPERTY(QString XAyatanaLabel READ title)
    Q_PROPERTY(QString XAyatanaLabelGuide READ title)

public:
    using StatusNotifierItem::StatusNotifierItem;
};

} // namespace Fenwhirl

Q_DECLARE_METATYPE(Fenwhirl::StatusNotifierPixmap)
Q_DECLARE_METATYPE(Fenwhirl::StatusNotifierPixmaps)
Q_DECLARE_METATYPE(Fenwhirl::StatusNotifierToolTip)
