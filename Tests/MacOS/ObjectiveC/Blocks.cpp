// The runtime of blocks: copies a block from the stack to the heap when it is retained, counts its
// references, and releases its captured variables with the last reference.

#include "ObjectiveC/Abi.h"
#include "ObjectiveC/Runtime.h"

#include <atomic>
#include <cstdlib>
#include <cstring>

namespace {

constexpr std::int32_t hasCopyAndDispose = 1 << 25;

// Kinds of captured variables, as the compiler passes them to _Block_object_assign.
constexpr int isObject = 3;
constexpr int isBlockField = 7;

std::atomic<std::size_t> live = 0;

// Counts references in the field of the block that the compiler reserves for the runtime.
std::atomic_ref<std::int32_t> references(Block* block) {
    return std::atomic_ref(block->reserved);
}

} // namespace

extern "C" {

void* _NSConcreteStackBlock[32] = {};
void* _NSConcreteMallocBlock[32] = {};
void* _NSConcreteGlobalBlock[32] = {};

void* _Block_copy(const void* original) {
    auto* block = static_cast<Block*>(const_cast<void*>(original));
    if (block == nullptr || block->isa == _NSConcreteGlobalBlock) {
        return block;
    }
    if (block->isa == _NSConcreteMallocBlock) {
        ++references(block);
        return block;
    }
    auto* const copy = static_cast<Block*>(std::malloc(block->descriptor->size));
    if (copy == nullptr) {
        Runtime::die("no memory");
    }
    std::memcpy(copy, block, block->descriptor->size);
    copy->isa = _NSConcreteMallocBlock;
    copy->reserved = 1;
    if ((copy->flags & hasCopyAndDispose) != 0) {
        copy->descriptor->copy(copy, block);
    }
    ++live;
    return copy;
}

void _Block_release(const void* original) {
    auto* block = static_cast<Block*>(const_cast<void*>(original));
    if (block == nullptr || block->isa != _NSConcreteMallocBlock || --references(block) > 0) {
        return;
    }
    if ((block->flags & hasCopyAndDispose) != 0) {
        block->descriptor->dispose(block);
    }
    --live;
    std::free(block);
}

void _Block_object_assign(void* to, const void* from, int kind) {
    const id object = static_cast<id>(const_cast<void*>(from));
    if (kind == isBlockField) {
        *static_cast<void**>(to) = _Block_copy(from);
    } else if (kind == isObject) {
        *static_cast<id*>(to) = objc_retain(object);
    } else {
        Runtime::die("a block holds a variable of a kind that these tests do not know");
    }
}

void _Block_object_dispose(const void* object, int kind) {
    if (kind == isBlockField) {
        _Block_release(object);
    } else if (kind == isObject) {
        objc_release(static_cast<id>(const_cast<void*>(object)));
    }
}
}

std::size_t Runtime::liveBlocks() {
    return live;
}
