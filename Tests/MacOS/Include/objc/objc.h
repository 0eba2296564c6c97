// The basic types of Objective-C, for the tests that run the macOS sources on Linux.
#pragma once

#include <stddef.h>
#include <stdint.h>

typedef struct objc_class* Class;
typedef struct objc_selector* SEL;

struct objc_object {
    Class isa;
};
#ifdef __OBJC__
typedef struct objc_object* id;
#endif
#ifdef __cplusplus
typedef bool BOOL; // as on Apple silicon
#else
typedef _Bool BOOL;
#endif
#define YES __objc_yes
#define NO __objc_no
#ifdef __cplusplus
#    define nil nullptr
#    define Nil nullptr
#else
#    define nil ((void*)0)
#    define Nil ((void*)0)
#endif
typedef long NSInteger;
typedef unsigned long NSUInteger;

#ifdef __cplusplus
extern "C" {
#endif
const char* sel_getName(SEL selector);
SEL sel_registerName(const char* name);
const char* class_getName(Class which);
Class object_getClass(id object);
#ifdef __cplusplus
}
#endif
