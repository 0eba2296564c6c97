#pragma once

#include <stdint.h>

struct proc_fdinfo {
    int32_t proc_fd;
    uint32_t proc_fdtype;
};

#define PROC_PIDLISTFDS 1

extern "C" int proc_pidinfo(int pid, int flavor, uint64_t argument, void* buffer, int size);
