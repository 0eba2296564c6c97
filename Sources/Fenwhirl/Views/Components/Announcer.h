#pragma once

#include <QObject>
#include <QString>
#include <QtQml/qqmlregistration.h>

#include <functional>

// Makes a screen reader say a text while the focus stays where it is: QML singleton `Announcer`.
//
//   Announcer.say(qsTr("Contrôle activé"))
//
// Call it once for each change that a sighted user would notice, never for a measured value. If the system
// has announcements of its own, these are used; otherwise the Announcement of the active window makes the
// text heard. An empty text is ignored.
//
// One instance per QML engine, owned by it; main thread only.

namespace Fenwhirl {

class Announcer : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_SINGLETON

public:
    using QObject::QObject;

    // `urgent`: the text may interrupt what is being read.
    Q_INVOKABLE void say(const QString& text, bool urgent = false);

Q_SIGNALS:
    // Not emitted when the system makes the announcement.
    void said(const QString& text);
};

// The system's way of making an announcement; returns false when it has none. Until this is set, there is
// none.
using SystemAnnouncement = std::function<bool(const QString& text, bool urgent)>;
void setSystemAnnouncement(SystemAnnouncement announcement);

} // namespace Fenwhirl
