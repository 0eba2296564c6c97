#include "Fenwhirl/Platform/Desktop/SavePortalLinux.h"

#include <QCoreApplication>
#include <QDBusMessage>
#include <QDBusObjectPath>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDBusServiceWatcher>
#include <QEvent>
#include <QFile>
#include <QGuiApplication>
#include <QUrl>
#include <QWindow>

#include <utility>

namespace Fenwhirl {

namespace {

// Long enough to start the portal first and then the program that shows the dialog.
constexpr int startMilliseconds = 10'000;

enum ResponseCode : uint { confirmed = 0, cancelled = 1 };

bool asking = false;

QString portalService() {
    return QStringLiteral("org.freedesktop.portal.Desktop");
}

QString requestInterface() {
    return QStringLiteral("org.freedesktop.portal.Request");
}

// The object path on which the portal will answer. It is computed beforehand, because the portal may answer
// before it reports the path.
QString requestPath(const QDBusConnection& bus, const QString& token) {
    QString sender = bus.baseService().mid(1); // without its colon
    sender.replace(u'.', u'_');
    return QStringLiteral("/org/freedesktop/portal/desktop/request/") + sender + u'/' + token;
}

// The window that the dialog should be in front of, in the portal's notation; empty where it cannot be named.
QString parentWindow() {
    const QWindow* const window = QGuiApplication::focusWindow();
    if (window == nullptr || QGuiApplication::platformName() != QStringLiteral("xcb")) {
        return {};
    }
    return QStringLiteral("x11:") + QString::number(window->winId(), 16);
}

bool isInput(QEvent::Type type) {
    switch (type) {
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonRelease:
    case QEvent::MouseButtonDblClick:
    case QEvent::Wheel:
    case QEvent::KeyPress:
    case QEvent::KeyRelease:
    case QEvent::Shortcut:
    case QEvent::ShortcutOverride:
    case QEvent::TouchBegin:
    case QEvent::TouchUpdate:
    case QEvent::TouchEnd:
        return true;
    default:
        return false;
    }
}

} // namespace

SavePortalLinux::SavePortalLinux(QDBusConnection bus) : bus_(std::move(bus)) {}

bool SavePortalLinux::isAsking() {
    return asking;
}

SavePortalLinux::Answer SavePortalLinux::ask(const QString& title, const QString& folder,
                                             const QString& name) {
    answer_ = {};
    if (!bus_.isConnected()) {
        return answer_;
    }
    static int count = 0;
    const QString token = QStringLiteral("fenwhirl%1").arg(++count);
    listenTo(requestPath(bus_, token));
    QDBusServiceWatcher watcher(portalService(), bus_, QDBusServiceWatcher::WatchForUnregistration);
    connect(&watcher, &QDBusServiceWatcher::serviceUnregistered, this, [this] {
        open_ = false;
        finish(false);
    });

    QDBusMessage call = QDBusMessage::createMethodCall(
        portalService(), QStringLiteral("/org/freedesktop/portal/desktop"),
        QStringLiteral("org.freedesktop.portal.FileChooser"), QStringLiteral("SaveFile"));
    call << parentWindow() << title
         << QVariantMap{{QStringLiteral("handle_token"), token},
                        {QStringLiteral("modal"), true},
                        {QStringLiteral("current_name"), name},
                        // The portal expects a file name as bytes with a terminating zero.
                        {QStringLiteral("current_folder"), QFile::encodeName(folder) + '\0'}};
    open_ = true;
    QDBusPendingCallWatcher reply(bus_.asyncCall(call, startMilliseconds));
    connect(&reply, &QDBusPendingCallWatcher::finished, this, [this, &reply] {
        const QDBusPendingReply<QDBusObjectPath> request = reply;
        if (request.isError()) {
            finish(false);
        } else if (request.value().path() != request_) { // an old portal chooses a path of its own
            listenTo(request.value().path());
        }
    });

    asking = true;
    answer_ = {.answered = true, .path = {}}; // the result if the program ends meanwhile
    QCoreApplication::instance()->installEventFilter(this);
    loop_.exec();
    QCoreApplication::instance()->removeEventFilter(this);
    asking = false;
    if (std::exchange(open_, false)) {
        bus_.send(QDBusMessage::createMethodCall(portalService(), request_, requestInterface(),
                                                 QStringLiteral("Close")));
    }
    return answer_;
}

void SavePortalLinux::listenTo(const QString& request) {
    request_ = request;
    bus_.connect(portalService(), request, requestInterface(), QStringLiteral("Response"), this,
                 SLOT(responded(uint, QVariantMap)));
}

void SavePortalLinux::responded(uint code, const QVariantMap& results) {
    open_ = false;
    const QStringList places = results.value(QStringLiteral("uris")).toStringList();
    if (code == confirmed && !places.isEmpty()) {
        finish(true, QUrl(places.first()).toLocalFile());
    } else {
        finish(code == cancelled || code == confirmed); // any other code means that it could not ask
    }
}

void SavePortalLinux::finish(bool answered, const QString& path) {
    answer_ = {.answered = answered, .path = path};
    loop_.quit();
}

bool SavePortalLinux::eventFilter(QObject* watched, QEvent* event) {
    return watched->isWindowType() && isInput(event->type());
}

} // namespace Fenwhirl
