#pragma once

#include <QObject>
#include <QString>
#include <QtQml/qqmlregistration.h>

#include <functional>

// What a screen reader says although the focus stays where it is: QML singleton `Announcer`.
//
//   Announcer.say(qsTr("Contrôle activé"))
//
// Call it once for a change that a seeing user would notice, never for a measured value. A text is said in
// the window that is active, by its Announcement; where the system has announcements of its own, by these.
// An empty text says nothing.
//
// One instance per QML engine, owned by it; main thread only.

namespace Fenwhirl {

class Announcer : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_SINGLETON

public:
    using QObject::QObject;

    // `urgent` where what is being read may be cut short for it.
    Q_INVOKABLE void say(const QString& text, bool urgent = false);

Q_SIGNALS:
    // Not where the system says it.
    void said(const QString& text);
};

// How the system announces; false when it has nothing of the kind. Until it is given, nothing of the kind is
// there.
using SystemAnnouncement = std::function<bool(const QString& text, bool urgent)>;
void setSystemAnnouncement(SystemAnnouncement announcement);

} // namespace Fenwhirl
