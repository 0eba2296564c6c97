// SingleInstance on Linux: the lock, the bus name and the named pipe. Tests pass a folder of their own.

#pragma once

#include "Fenwhirl/Platform/Desktop/InstanceLock.h"
#include "Fenwhirl/Platform/Desktop/SingleInstance.h"

#include <QDBusConnection>
#include <QString>
#include <QStringList>
#include <QVariantList>
#include <QVariantMap>

namespace Fenwhirl {

class SingleInstanceLinux : public SingleInstance {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.Application")

public:
    // `folder` must belong to this user alone. If it is empty there is no lock, and only the bus decides.
    SingleInstanceLinux(const QString& folder, QDBusConnection bus);
    ~SingleInstanceLinux() override;

    SingleInstanceLinux(const SingleInstanceLinux&) = delete;
    SingleInstanceLinux& operator=(const SingleInstanceLinux&) = delete;

    [[nodiscard]] bool becomeFirst() override;
    [[nodiscard]] bool raiseFirst() override;
    [[nodiscard]] bool notifyFirst(const QString& action) override;
    void stopListening() override;

public Q_SLOTS:
    // NOLINTBEGIN(readability-identifier-naming): the names of the interface
    // The methods of org.freedesktop.Application.
    Q_SCRIPTABLE void Activate(const QVariantMap& platformData);
    Q_SCRIPTABLE void ActivateAction(const QString& action, const QVariantList& parameters,
                                     const QVariantMap& platformData);
    // Shows the window, because the program does not open files.
    Q_SCRIPTABLE void Open(const QStringList& addresses, const QVariantMap& platformData);
    // NOLINTEND(readability-identifier-naming)

private:
    // Takes the name on the bus. False when another process already runs the program on this bus.
    [[nodiscard]] bool joinBus();
    // Whether the owner of the name has been verified to be this program, run by this user.
    [[nodiscard]] bool isNameOurs() const;
    void removeObject();
    void leaveBus();
    // Calls a method of the first instance; returns whether it answered.
    [[nodiscard]] bool callFirst(const QString& method, const QVariantList& arguments) const;

    InstanceLock lock_;
    QDBusConnection bus_;
    bool hasObject_ = false; // registered on the bus
    bool hasName_ = false;
};

// $XDG_RUNTIME_DIR, otherwise a folder under /tmp with the user id in its name; empty when neither belongs to
// this user alone.
[[nodiscard]] QString privateRuntimeFolder();

} // namespace Fenwhirl
