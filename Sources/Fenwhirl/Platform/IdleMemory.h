// Releases memory that an idle program does not need.
//
// Starting touches far more of a program and its libraries than waiting does, and those pages count towards
// its memory for as long as it runs. This function releases free blocks of the heap and, on Linux, pages of
// the program's files that were read and never written (code, constants, the linker's tables). Nothing is
// lost: a page that is used again is read again, from the system's file cache or at worst from the disk.
//
// Call this rarely, at the beginning of an idle period that is expected to last. It takes about a
// millisecond, and the next use of each released page takes a little longer. Any thread, while others run.

#pragma once

namespace Fenwhirl {

void releaseIdleMemory();

} // namespace Fenwhirl
