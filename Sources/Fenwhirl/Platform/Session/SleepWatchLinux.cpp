#include "Fenwhirl/Platform/Session/SleepWatchLinux.h"

#include <QDBusVariant>

#include <utility>

namespace Fenwhirl {

namespace {

QString announcement() {
    return QStringLiteral("PrepareForSleep");
}

bool isYes(const QVariant& value) {
    return value.metaType() == QMetaType::fromType<bool>() && value.toBool();
}

void prepare(QTimer& timer, std::chrono::milliseconds interval) {
    timer.setSingleShot(true);
    timer.setInterval(interval);
}

} // namespace

std::unique_ptr<SleepWatch> SleepWatch::create() {
    return std::make_unique<SleepWatchLinux>(Logind::systemBusAddress());
}

SleepWatchLinux::SleepWatchLinux(QString address, SleepTimeouts patience)
    : logind_(std::move(address), patience.answer) {
    connect(&logind_, &LogindConnection::ownerChanged, this, &SleepWatchLinux::takeOwner);
    connect(&logind_, &LogindConnection::heard, this, &SleepWatchLinux::heard);
    connect(&logind_, &LogindConnection::lost, this, [this] {
        if (isAboutToSleep_) {
            doubt_.start(); // a question that was under way will not be answered
        }
        if (wasAnswered_) { // a bus that never answered rejects us, so it is not tried again
            again_.start();
        }
    });
    prepare(delay_, patience.atMost);
    connect(&delay_, &QTimer::timeout, this, &SleepWatchLinux::ready);
    prepare(doubt_, patience.doubt);
    connect(&doubt_, &QTimer::timeout, this, &SleepWatchLinux::look);
    prepare(again_, patience.again);
    connect(&again_, &QTimer::timeout, this, [this] {
        if (logind_.isOpen()) {
            find();
        } else {
            open();
        }
    });
    open();
    if (!logind_.isOpen()) {
        again_.stop(); // there never was a bus, so no connection was lost
    }
}

void SleepWatchLinux::open() {
    isLocking_ = false;
    if (logind_.open({announcement()})) {
        find();
    } else {
        again_.start();
    }
}

void SleepWatchLinux::find() {
    logind_.find(
        [this](const QDBusMessage& reply) {
            wasAnswered_ = true;
            if (!Logind::isError(reply)) {
                takeOwner(reply.arguments().value(0).toString());
            }
        },
        [this] { again_.start(); });
}

void SleepWatchLinux::takeOwner(const QString& owner) {
    wasAnswered_ = true;
    logind_.setOwner(owner);
    isLocking_ = false;
    lock_ = {}; // it belonged to the previous logind
    if (!owner.isEmpty()) {
        look();
    }
}

void SleepWatchLinux::heard(const QDBusMessage& signal) {
    if (signal.interface() == Logind::managerInterface() && signal.path() == Logind::path() &&
        signal.member() == announcement()) {
        take(isYes(signal.arguments().value(0)));
    }
}

void SleepWatchLinux::look() {
    if (logind_.owner().isEmpty()) {
        take(false);
        return;
    }
    logind_.ask(
        Logind::path(), Logind::propertiesInterface(), QStringLiteral("Get"),
        {Logind::managerInterface(), QStringLiteral("PreparingForSleep")},
        [this](const QDBusMessage& reply) {
            take(!Logind::isError(reply) &&
                 isYes(reply.arguments().value(0).value<QDBusVariant>().variant()));
        },
        [this] {
            take(false);
            again_.start();
        });
}

void SleepWatchLinux::take(bool isAboutToSleep) {
    if (isAboutToSleep) {
        doubt_.start();
    } else {
        doubt_.stop();
    }
    if (std::exchange(isAboutToSleep_, isAboutToSleep) != isAboutToSleep) {
        if (isAboutToSleep) {
            delay_.start();
            Q_EMIT goingToSleep();
            return;
        }
        delay_.stop();
        Q_EMIT awake();
    }
    if (!isAboutToSleep && !lock_.isValid()) {
        lock();
    }
}

void SleepWatchLinux::lock() {
    if (logind_.owner().isEmpty() || std::exchange(isLocking_, true)) {
        return;
    }
    logind_.ask(
        Logind::path(), Logind::managerInterface(), QStringLiteral("Inhibit"),
        {QStringLiteral("sleep"), QStringLiteral("Fenwhirl"),
         QStringLiteral("Fenwhirl hands the fans back first"), QStringLiteral("delay")},
        [this, owner = logind_.owner()](const QDBusMessage& reply) {
            if (owner != logind_.owner()) {
                return;
            }
            isLocking_ = false;
            // A lock that arrives after the sleep has begun does not delay it.
            if (!Logind::isError(reply) && !isAboutToSleep_) {
                lock_ = reply.arguments().value(0).value<QDBusUnixFileDescriptor>();
            }
        },
        [this] {
            isLocking_ = false;
            again_.start();
        });
}

void SleepWatchLinux::ready() {
    if (!isAboutToSleep_) {
        return;
    }
    delay_.stop();
    lock_ = {};
}

} // namespace Fenwhirl
