// One status notifier item on the bus: what a host asks of it, and what it tells the host.
//
// Made when a host is there and destroyed when it goes; `announce` makes it known once its content is set.
// The object is on the bus under a connection of its own, so that its service name disappears with it.
//
// Threads: main thread only. Linux only.

#pragma once

#include "Fenwhirl/Platform/Desktop/StatusHostHabits.h"
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

// An image as the protocol carries it: ARGB, most significant byte first.
struct StatusNotifierPixmap {
    int width = 0;
    int height = 0;
    QByteArray bytes;
};
Q_DECLARE_METATYPE(StatusNotifierPixmap)
using StatusNotifierPixmaps = QList<StatusNotifierPixmap>;
Q_DECLARE_METATYPE(StatusNotifierPixmaps)

struct StatusNotifierToolTip {
    QString iconName;
    StatusNotifierPixmaps icon;
    QString title;
    QString text;
};
Q_DECLARE_METATYPE(StatusNotifierToolTip)

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
    Q_PROPERTY(StatusNotifierPixmaps IconPixmap READ iconPixmap)
    Q_PROPERTY(StatusNotifierToolTip ToolTip READ toolTip)
    Q_PROPERTY(bool ItemIsMenu READ itemIsMenu)

public:
    static constexpr std::chrono::seconds usualTextPause = std::chrono::seconds(10);

    // `textPause` is the time for which the host is not told again of a text while the icon stays the same.
    explicit StatusNotifierItem(const QDBusConnection& bus, const StatusHostHabits& habits = {},
                                std::chrono::milliseconds textPause = usualTextPause,
                                QObject* parent = nullptr);
    ~StatusNotifierItem() override;

    StatusNotifierItem(const StatusNotifierItem&) = delete;
    StatusNotifierItem& operator=(const StatusNotifierItem&) = delete;

    // Tells the watcher of the item; once, after its first content was set.
    void announce();
    // Tells the host, which then asks for it.
    void setIcons(const QList<QImage>& icons);
    // The context menu, if the host has a place for one; before the item is announced, or later with other
    // entries.
    void setMenu(StatusMenu menu);
    // Whoever asks gets this text from now on. A host that writes it into its bar is told at once; any other
    // after a change of the icon, but seldom otherwise, and then only that the tool tip is another: speeds
    // flutter with every poll, and each word with the host wakes both programs up.
    void setText(const QString& text);

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

    // Comes before a click where windows may not take the focus by themselves; good for that one.
    Q_SCRIPTABLE void ProvideXdgActivationToken(const QString& token) { token_ = token; }

    // Left, middle and right click; x and y in pixels of the screen, where the host thinks the item is.
    Q_SCRIPTABLE void Activate(int x, int y);

    Q_SCRIPTABLE void SecondaryActivate(int x, int y) { choose(x, y); }

    Q_SCRIPTABLE void ContextMenu(int x, int y) { choose(x, y); }

    Q_SCRIPTABLE void Scroll(int /*delta*/, const QString& /*orientation*/) {}

Q_SIGNALS:
    Q_SCRIPTABLE void NewTitle();
    Q_SCRIPTABLE void NewIcon();
    Q_SCRIPTABLE void NewToolTip();
    Q_SCRIPTABLE void XAyatanaNewLabel(const QString& label, const QString& guide);
    void activated(QPoint pixel, const QString& token);

private:
    void choose(int x, int y) { Q_EMIT activated({x, y}, std::exchange(token_, {})); }

    QDBusConnection bus_;
    StatusHostHabits habits_;
    QString service_;
    QString token_;
    std::chrono::milliseconds textPause_;
    QString title_;
    QString toldTitle_; // what the host knows, and since when
    QElapsedTimer told_;
    bool iconChanged_ = false; // since then
    StatusNotifierPixmaps icon_;
    std::unique_ptr<StatusNotifierMenu> menu_;
};

// The same with its text as a label, for hosts that write it beside the icon. Not of the protocol: a host
// that does not know labels may not show an item that has one, be it empty (MATE).
class LabelledStatusNotifierItem : public StatusNotifierItem {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.kde.StatusNotifierItem")
    Q_PROPERTY(QString XAyatanaLabel READ title)
    Q_PROPERTY(QString XAyatanaLabelGuide READ title)

public:
    using StatusNotifierItem::StatusNotifierItem;
};
