// The single entry point from the executable into the graphical application.
//
// The executable does not link Qt, because its set-user-ID copy runs as root far from any library. It loads
// this library at run time, and only in the application role. Exceptions must not cross this boundary: the
// two sides have separate C++ runtimes.

#pragma once

namespace Fenwhirl {

// Runs the application until it quits; returns the exit status of the process. Main thread, once.
extern "C" __attribute__((visibility("default"))) int fenwhirl_app_main(int argc, char** argv);

} // namespace Fenwhirl
