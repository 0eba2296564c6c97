// The run of `--self-check`: every check on the real system, printed to standard output.
//
// It is no instance of the program: it shows no window that stays, changes no setting, and starts beside one
// that runs, which it leaves alone. A signal that asks it to end is obeyed after the check under way, so that
// nothing is left half done.

#pragma once

#include "Fenwhirl/Platform/Desktop/StatusIcon.h"

#include <QString>

namespace Fenwhirl {

// `symbol` draws the status item. The exit status: 0 when no check failed, 1 otherwise. Main thread, once in
// a process, in the place of the application.
[[nodiscard]] int runSelfCheck(int& argc, char** argv, const QString& version, const SymbolPainter& symbol);

} // namespace Fenwhirl
