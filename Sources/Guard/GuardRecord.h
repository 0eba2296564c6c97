// What the application tells its guard. Everything goes one way, through one pipe to the guard.
//
// A record is a line of ASCII text: "nothing", "all", or "fans" followed by the indices of the fans to hand
// back, each preceded by one blank ("fans" alone means: no fan, on purpose). An index prefixed with
// `pinnedMark` belongs to a fan that keeps its speed when the application ends, but not while the application
// is silent. The last complete line is in effect. An empty line is not a record but a sign of life. The byte
// `orderlyEnd` after the last line says that the application has handed back the fans itself; if the pipe
// ends without it, the guard acts.
//
// Needs the C library only, because both sides share it.

#pragma once

#include <cstddef>

namespace Fenwhirl::GuardRecord {

inline constexpr char nothing[] = "nothing";
inline constexpr char allFans[] = "all";
inline constexpr char fans[] = "fans";
inline constexpr char pinnedMark = '=';
inline constexpr char signOfLife = '\n';
inline constexpr char orderlyEnd = '\x04';

// The length of the longest line, including its end. An application with more fans to name sends "all".
inline constexpr std::size_t longestLine = 32768;

// An application that sends nothing for so long, in running time, is considered hung or stopped.
inline constexpr int silenceTimeoutSeconds = 10;

// The only program that the guard ever runs; the path cannot be changed from outside.
inline constexpr char helperPath[] = "/Library/PrivilegedHelperTools/FenwhirlHelper";

} // namespace Fenwhirl::GuardRecord
