// Memory that a program at rest can do without.
//
// A start touches far more of a program and its libraries than waiting does, and those pages stay counted to
// it for as long as it runs. Here they are handed back: free blocks of the heap, and on Linux what was read
// from the program's files and never written (code, constants, the tables of the linker). Nothing is lost:
// what is touched again is there again, from the system's cache of files, or in the worst case from the disk.
//
// To be called seldom, when a rest begins that is expected to last. Takes about a millisecond, and the next
// use of every part a little longer. Any thread, while others run.

#pragma once

void giveBackRestingMemory();
