// What the name of a process's control group says about its application.
//
// Desktops that are managed by systemd start each application in a unit of its own,
// "app-LAUNCHER-NAME-….scope" or "app-NAME@….service"; snaps run in "snap.NAME.PROGRAM-….scope". NAME is the
// desktop entry's identifier in systemd's escape notation. It is chosen by the program that started the unit,
// so it is not trustworthy.
//

#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>
#include <QStringView>

#include <optional>

namespace Fenwhirl {

// The path of the control group, from the text of a process's "cgroup" file; empty when the text names none.
[[nodiscard]] QString controlGroupIn(const QByteArray& text);

// The identifiers that the group's innermost unit may stand for, the most likely first. There can be several,
// because the unit does not show whether a launcher precedes the name.
[[nodiscard]] QStringList applicationIdsIn(QStringView group);

struct SnapName {
    QString snap;
    QString program;

    bool operator==(const SnapName&) const = default;
};

[[nodiscard]] std::optional<SnapName> snapIn(QStringView group);

// Whether the group belongs to a component of the desktop itself: panels, window managers, session services.
[[nodiscard]] bool isDesktopComponent(QStringView group);

} // namespace Fenwhirl
