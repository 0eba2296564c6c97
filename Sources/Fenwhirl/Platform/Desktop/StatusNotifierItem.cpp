#include "Fenwhirl/Platform/Desktop/StatusNotifierItem.h"

#include "Fenwhirl/Platform/Desktop/StatusNotifierHost.h"

#include <QCoreApplication>
#include <QDBusMessage>
#include <QDBusMetaType>
#include <QtEndian>

#include <cstring>
#include <utility>

namespace Fenwhirl {

QDBusArgument& operator<<(QDBusArgument& argument, const StatusNotifierPixmap& pixmap) {
    argument.beginStructure();
    argument << pixmap.width << pixmap.height << pixmap.bytes;
    argument.endStructure();
    return argument;
}

const QDBusArgument& operator>>(const QDBusArgument& argument, StatusNotifierPixmap& pixmap) {
    argument.beginStructure();
    argument >> pixmap.width >> pixmap.height >> pixmap.bytes;
    argument.endStructure();
    return argument;
}

QDBusArgument& operator<<(QDBusArgument& argument, const StatusNotifierToolTip& tip) {
    argument.beginStructure();
    argument << tip.iconName << tip.icon << tip.title << tip.text;
    argument.endStructure();
    return argument;
}

const QDBusArgument& operator>>(const QDBusArgument& argument, StatusNotifierToolTip& tip) {
    argument.beginStructure();
    argument >> tip.iconName >> tip.icon >> tip.title >> tip.text;
    argument.endStructure();
    return argument;
}

namespace {

QString itemPath() {
    return QStringLiteral("/StatusNotifierItem");
}

QString menuPath() {
    return itemPath() + QStringLiteral("/Menu");
}

StatusNotifierPixmap pixmapOf(const QImage& image) {
    const QImage argb = image.convertToFormat(QImage::Format_ARGB32);
    StatusNotifierPixmap pixmap{argb.width(), argb.height(), {}};
    pixmap.bytes.resize(qsizetype{4} * argb.width() * argb.height());
    char* target = pixmap.bytes.data();
    for (int y = 0; y < argb.height(); ++y) {
        const auto* line = reinterpret_cast<const QRgb*>(argb.constScanLine(y));
        for (int x = 0; x < argb.width(); ++x, target += 4) {
            const auto bigEndian = qToBigEndian<quint32>(line[x]);
            std::memcpy(target, &bigEndian, sizeof bigEndian);
        }
    }
    return pixmap;
}

// A second connection to the same bus, which can be closed when the item is destroyed.
QDBusConnection ownConnection(const QDBusConnection& bus) {
    static int made = 0;
    const QString name = QStringLiteral("fenwhirl.status-item.%1").arg(++made);
    const QString address = qEnvironmentVariable("DBUS_SESSION_BUS_ADDRESS");
    QDBusConnection own = address.isEmpty() ? QDBusConnection::connectToBus(QDBusConnection::SessionBus, name)
                                            : QDBusConnection::connectToBus(address, name);
    return own.isConnected() ? own : bus;
}

} // namespace

StatusNotifierItem::StatusNotifierItem(const QDBusConnection& bus, const StatusHostQuirks& quirks,
                                       std::chrono::milliseconds textPause, QObject* parent)
    : QObject(parent)
    , bus_(ownConnection(bus))
    , sharedBus_(bus.name())
    , quirks_(quirks)
    , textPause_(textPause) {
    qDBusRegisterMetaType<StatusNotifierPixmap>();
    qDBusRegisterMetaType<StatusNotifierPixmaps>();
    qDBusRegisterMetaType<StatusNotifierToolTip>();
    static int made = 0;
    service_ = QStringLiteral("org.kde.StatusNotifierItem-%1-%2")
                   .arg(QCoreApplication::applicationPid())
                   .arg(++made);
    [[maybe_unused]] const bool registered = bus_.registerObject(
        itemPath(), this, QDBusConnection::ExportScriptableContents | QDBusConnection::ExportAllProperties);
    Q_ASSERT(registered || !bus_.isConnected());
    bus_.registerService(service_);
}

StatusNotifierItem::~StatusNotifierItem() {
    bus_.unregisterService(service_);
    bus_.unregisterObject(itemPath());
    bus_.unregisterObject(menuPath());
    if (bus_.name() != sharedBus_) {
        QDBusConnection::disconnectFromBus(bus_.name());
    }
}

void StatusNotifierItem::announce() {
    QDBusMessage call = QDBusMessage::createMethodCall(
        StatusNotifierHost::watcherService(), StatusNotifierHost::watcherPath(),
        StatusNotifierHost::watcherService(), QStringLiteral("RegisterStatusNotifierItem"));
    call << (quirks_.needsUniqueName ? bus_.baseService() : service_);
    bus_.send(call);
}

void StatusNotifierItem::setIcons(const QList<QImage>& icons) {
    icon_.clear();
    for (const QImage& icon : icons) {
        icon_.append(pixmapOf(icon));
    }
    iconChanged_ = true;
    Q_EMIT NewIcon();
}

void StatusNotifierItem::setTextQuietly(const QString& text) {
    const bool changes = std::exchange(title_, text) != text;
    if (changes && quirks_.text == StatusHostQuirks::Text::asLabel) {
        Q_EMIT XAyatanaNewLabel(title_, title_);
    }
}

void StatusNotifierItem::setText(const QString& text) {
    setTextQuietly(text);
    const bool mayTell =
        iconChanged_ || !told_.isValid() || std::chrono::milliseconds(told_.elapsed()) >= textPause_;
    if (title_ == notifiedTitle_ || !mayTell) {
        return;
    }
    // Hosts read everything again after each signal, so unnecessary signals are avoided.
    if (std::exchange(iconChanged_, false) || !told_.isValid()) {
        Q_EMIT NewTitle();
    }
    told_.start();
    notifiedTitle_ = title_;
    Q_EMIT NewToolTip();
}

QString StatusNotifierItem::category() const {
    return QStringLiteral("Hardware");
}

QString StatusNotifierItem::id() const {
    return QStringLiteral("com.fenwhirl.app");
}

QString StatusNotifierItem::status() const {
    return QStringLiteral("Active");
}

// Does nothing for a host that would show the menu at a click that should open the panel.
void StatusNotifierItem::setMenu(StatusMenu menu) {
    if (quirks_.requiresMenu) {
        return;
    }
    const bool isNew = !menu_;
    if (isNew) {
        menu_ = std::make_unique<StatusNotifierMenu>();
    }
    menu_->setEntries(std::move(menu));
    if (isNew) {
        bus_.registerObject(menuPath(), menu_.get(),
                            QDBusConnection::ExportScriptableContents | QDBusConnection::ExportAllProperties);
    }
}

// The protocol has a special path for "no menu". A host that requires a menu is given the path of one that
// does not exist, which it treats as empty.
QDBusObjectPath StatusNotifierItem::menu() const {
    return QDBusObjectPath(quirks_.requiresMenu || menu_ ? menuPath() : QStringLiteral("/NO_DBUSMENU"));
}

// GNOME's extension reserves a single click for menus and calls Activate on a double click. Until an Activate
// has succeeded, however, it counts presses and releases alike, so that a single click counts as two. An
// Activate that always fails keeps it in that state. The error is "cancelled" in the notation of its library,
// because it is the only error that the extension does not write to the journal.
void StatusNotifierItem::Activate(int x, int y) {
    if (quirks_.needsFailedActivate && calledFromDBus()) {
        sendErrorReply(QStringLiteral("org.gtk.GDBus.UnmappedGError.Quark._g_2dio_2derror_2dquark.Code19"),
                       QStringLiteral("done"));
    }
    choose(x, y);
}

} // namespace Fenwhirl
