// Takes a child of this process out of what the system ends as one.
//
// In a session that systemd manages, an application and everything that it starts lie in one unit, and the
// whole unit is ended with it: when memory is short, or when somebody stops the unit. A child that is to
// outlive the application gets a unit of its own.
//
// Threads: main thread.

#pragma once

#include <QString>

#include <sys/types.h>

namespace ProcessScope {

// Asks for the unit "app-NAME-PROCESS.scope" with this process in it; `description` is what lists of units
// show. Waits for nothing. Where there is no such manager, or it refuses, the child stays where it is.
void separate(pid_t process, const QString& name, const QString& description);

} // namespace ProcessScope
