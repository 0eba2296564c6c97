// The lock, the bus name and the named pipe behind SingleInstance on Linux. Tests make it with a folder of
// their own.

#pragma once

#include "Fenwhirl/Platform/Desktop/InstanceLock.h"
#include "Fenwhirl/Platform/Desktop/SingleInstance.h"

#include <QDBusConnection>
#include <QString>
#include <QStringList>
#include <QVariantList>
#include <QVariantMap>

class SingleInstanceLinux : public SingleInstance {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.Application")

public:
    // `folder` belongs to this user alone; empty means that there is none and only the bus decides.
    SingleInstanceLinux(const QString& folder, QDBusConnection bus);
    ~SingleInstanceLinux() override;

    SingleInstanceLinux(const SingleInstanceLinux&) = delete;
    SingleInstanceLinux& operator=(const SingleInstanceLinux&) = delete;

    [[nodiscard]] bool becomeFirst() override;
    void raiseFirst() override;
    [[nodiscard]] bool tellFirst(const QString& action) override;

public Q_SLOTS:
    // The bus interface.
    Q_SCRIPTABLE void Activate(const QVariantMap& platformData);
    Q_SCRIPTABLE void ActivateAction(const QString& action, const QVariantList& parameters,
                                     const QVariantMap& platformData);
    // No file is ours to open: shows the window.
    Q_SCRIPTABLE void Open(const QStringList& addresses, const QVariantMap& platformData);

private:
    // False when another process is the program on this bus.
    [[nodiscard]] bool joinBus();
    // Whether the name's owner is proven to be this program, run by this user.
    [[nodiscard]] bool isNameOurs() const;
    void leaveBus();
    // One method of the first one's; whether it answered.
    [[nodiscard]] bool callFirst(const QString& method, const QVariantList& arguments) const;

    InstanceLock lock_;
    QDBusConnection bus_;
    bool hasObject_ = false; // on the bus
    bool hasName_ = false;
};

// $XDG_RUNTIME_DIR, else a folder under /tmp with the user's number in its name; empty when neither belongs
// to this user alone.
[[nodiscard]] QString privateRuntimeFolder();
