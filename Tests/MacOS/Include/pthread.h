#pragma once

#include_next <pthread.h>

#ifdef __cplusplus
extern "C" int pthread_main_np();
int pthread_setname_np(const char* name); // of the calling thread alone
#endif
