#pragma once

#include <stddef.h>
#include <sys/time.h>
#include <sys/types.h>

#define CTL_KERN 1
#define KERN_PROC 14
#define KERN_PROC_PID 1

struct extern_proc {
    struct timeval p_starttime;
    pid_t p_pid;
};

struct kinfo_proc {
    struct extern_proc kp_proc;
    char rest[488];
};

extern "C" int sysctl(int* name, unsigned length, void* old, size_t* oldSize, void* new_, size_t newSize);
extern "C" int sysctlbyname(const char* name, void* old, size_t* oldSize, void* new_, size_t newSize);
