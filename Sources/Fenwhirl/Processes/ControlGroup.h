// What the name of a process's control group says about its application.
//
// Desktops that are run by systemd start each application in a unit of its own, "app-LAUNCHER-NAME-….scope"
// or "app-NAME@….service", and snaps are in "snap.NAME.PROGRAM-….scope". NAME is the desktop entry's
// identifier, in systemd's own escapes; it comes from whoever started the unit.
//
// Pure; any thread.

#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>
#include <QStringView>

#include <optional>

// The path of the control group in the text of a process's "cgroup" file; empty when it names none.
[[nodiscard]] QString controlGroupIn(const QByteArray& text);

// The identifiers that the group's innermost unit may mean, the likeliest first: whether a launcher stands
// before the name cannot be seen from it.
[[nodiscard]] QStringList applicationIdsIn(QStringView group);

struct SnapName {
    QString snap;
    QString program;

    bool operator==(const SnapName&) const = default;
};

[[nodiscard]] std::optional<SnapName> snapIn(QStringView group);

// Whether the group is of what the desktop itself consists of: panels, window managers, session services.
[[nodiscard]] bool isOfDesktop(QStringView group);
