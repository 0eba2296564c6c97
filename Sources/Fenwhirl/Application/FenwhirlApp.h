// The one door between the executable and the graphical application.
//
// The executable links no Qt, because its set-user-ID copy runs as root far from any library; it loads this
// library at run time, only in the application role. Nothing may be thrown across this border: the two sides
// have C++ runtimes of their own.

#pragma once

// Runs the application until it quits; returns the process's exit status. Main thread, once.
extern "C" __attribute__((visibility("default"))) int fenwhirl_app_main(int argc, char** argv);
