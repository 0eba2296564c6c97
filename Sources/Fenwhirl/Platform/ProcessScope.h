// Moves a child of this process into a systemd unit of its own.
//
// In a session that systemd manages, an application and everything that it starts are in one unit, and the
// whole unit is ended together: when memory is short, or when somebody stops the unit. A child that must
// outlive the application gets a unit of its own.
//
// Threads: main thread.

#pragma once

#include <QString>

#include <sys/types.h>

namespace Fenwhirl::ProcessScope {

// Requests a unit "app-NAME-PROCESS.scope" that contains this process; `description` is what lists of units
// show. Does not wait. Where there is no such manager, or it refuses, the child stays where it is.
void separate(pid_t process, const QString& name, const QString& description);

} // namespace Fenwhirl::ProcessScope
