// The structures that the compiler emits and passes to the runtime (the ABI of -fobjc-runtime=gnustep-2.0).
// Internal to this folder.

#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

extern "C" {

struct objc_object;
struct objc_class;
using id = objc_object*;
using Class = objc_class*;
using IMP = id (*)(id, struct objc_selector*, ...);

struct objc_selector {
    const char* name; // unique for each name once the program is loaded, so that pointers can be compared
    const char* types;
};

using SEL = objc_selector*;

struct objc_object {
    Class isa;
};

struct objc_method {
    IMP implementation;
    SEL selector;
    const char* types;
};

struct objc_method_list {
    objc_method_list* next;
    int count;
    std::size_t methodSize;
    objc_method methods[1];
};

struct objc_ivar {
    const char* name;
    const char* type;
    int* offset; // relative to the end of the superclass until the program is loaded
    std::uint32_t size;
    std::uint32_t flags;
};

struct objc_ivar_list {
    int count;
    std::size_t ivarSize;
    objc_ivar ivars[1];
};

struct objc_class {
    Class isa;
    Class superclass;
    const char* name;
    long version;
    unsigned long info;
    long instanceSize; // negative and without the superclass's size until the program is loaded
    objc_ivar_list* ivars;
    objc_method_list* methods;
    void* cache;
    IMP construct;
    IMP destruct;
    Class firstSubclass;
    Class nextSibling;
    void* protocols;
    void* extra;
    long abiVersion;
    void* properties;
};

struct objc_category {
    const char* name;
    const char* className;
    objc_method_list* instanceMethods;
    objc_method_list* classMethods;
    void* protocols;
    void* properties;
    void* classProperties;
};

struct objc_slot {
    Class owner;
    Class cachedFor;
    const char* types;
    int version;
    IMP implementation;
};

struct objc_super {
    id receiver;
    Class superclass;
};

struct objc_init {
    std::uint64_t version;
    SEL selectorsBegin, selectorsEnd;
    Class *classesBegin, *classesEnd;
    Class *referencesBegin, *referencesEnd;
    objc_category *categoriesBegin, *categoriesEnd;
    void* rest[8];
};

// The layout of a block, as the compiler emits it.
struct BlockDescriptor {
    unsigned long reserved;
    unsigned long size;
    void (*copy)(void* to, const void* from); // with `dispose`, present only if the block's flags say so
    void (*dispose)(const void* block);
};

struct Block {
    void* isa;
    std::int32_t flags;
    std::int32_t reserved;
    void (*invoke)(void*, ...);
    BlockDescriptor* descriptor;
};

extern void* _NSConcreteStackBlock[32];
extern void* _NSConcreteMallocBlock[32];
extern void* _NSConcreteGlobalBlock[32];
extern int __CFConstantStringClassReference[]; // NOLINT: the compiler's name

id objc_retain(id object);
void objc_release(id object);
void* _Block_copy(const void* block);
void _Block_release(const void* block);
}

// Shared by Runtime.cpp, Blocks.cpp and NSObject.mm.
namespace Runtime {

[[nodiscard]] Class classOf(id object);
[[nodiscard]] bool isBlock(id object);
[[nodiscard]] IMP find(Class startingAt, SEL selector); // null when there is none
[[nodiscard]] id allocate(Class ofClass);
void destroy(id object); // the implementation of NSObject's dealloc
[[nodiscard]] std::size_t liveBlocks();
[[nodiscard]] bool isMeta(Class which);
[[noreturn]] void die(const std::string& why);

} // namespace Runtime
