// What the application and its guard say to each other, all of it through one pipe to the guard.
//
// A record is a line of ASCII text: "nothing", "all", or "fans" followed by the indices to hand back, each
// after one blank ("fans" alone: no fan, on purpose). An index behind `pinnedMark` belongs to a fan that
// keeps its speed when the application ends, but not while it is silent. The last complete line counts. An
// empty line is no record but a sign of life. The byte `orderlyEnd` behind the last line says that the
// application has handed back by itself; the end of the pipe without it is the guard's cue.
//
// C library only, shared by both sides.

#pragma once

#include <cstddef>

namespace GuardRecord {

inline constexpr char nothing[] = "nothing";
inline constexpr char allFans[] = "all";
inline constexpr char fans[] = "fans";
inline constexpr char pinnedMark = '=';
inline constexpr char signOfLife = '\n';
inline constexpr char orderlyEnd = '\x04';

// The longest line, its end included; whoever has more fans to name says "all".
inline constexpr std::size_t longestLine = 32768;

// An application that says nothing for so long, in running time, is taken for hung or stopped.
inline constexpr int secondsOfSilence = 10;

// The only program that the guard ever runs. It takes no path from outside.
inline constexpr char helperPath[] = "/Library/PrivilegedHelperTools/FenwhirlHelper";

} // namespace GuardRecord
