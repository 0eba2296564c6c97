#include "ObjectiveC/Runtime.h"

#include "ObjectiveC/Abi.h"

#include <atomic>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <map>
#include <mutex>
#include <set>
#include <unordered_map>
#include <unordered_set>
#include <utility>
#include <vector>

namespace {

constexpr unsigned long metaInfo = 1; // set by the compiler for metaclasses
constexpr unsigned long loadedInfo = 1UL << 40;

// Stored in front of each object.
struct Header {
    std::atomic<long> references;
    long isDying;
};

static_assert(sizeof(Header) == 16);

using Cache = std::unordered_map<const char*, objc_slot>;

struct State {
    std::recursive_mutex mutex;
    std::unordered_set<std::string> names; // of selectors, each once
    std::map<std::string, Class> classes;
    std::map<id, std::set<id*>> weak;
    std::map<std::string, std::size_t> live;
    std::map<id, std::map<const void*, id>> associated;
    std::vector<std::string> strays;
};

State& state() {
    static auto* instance = new State; // leaked, because it is used until the very end of the process
    return *instance;
}

struct Pools {
    std::vector<id> objects;
    std::vector<std::size_t> marks;
    std::size_t uncounted = 0; // the first so many marks do not count as open pools
};

Pools& pools() {
    static thread_local Pools instance;
    return instance;
}

// Interns a selector's name, so that equal names have equal pointers.
const char* unique(const char* name) {
    return state().names.insert(name).first->c_str();
}

Header& header(id object) {
    return *(reinterpret_cast<Header*>(object) - 1);
}

// A string literal of up to eight ASCII characters is stored in the pointer itself.
bool isTiny(id object) {
    return (reinterpret_cast<std::uintptr_t>(object) & 7U) != 0;
}

Class classNamed(const char* name) {
    const auto found = state().classes.find(name);
    return found == state().classes.end() ? nullptr : found->second;
}

// Completes a class at load time, after its superclass: makes the instance size and the offsets of its ivars
// absolute, links its metaclass, and registers it by name.
void resolve(Class which) {
    if ((which->info & loadedInfo) != 0) {
        return;
    }
    which->info |= loadedInfo;
    const Class above = which->superclass;
    if (above != nullptr) {
        resolve(above);
    }
    const long inherited = above != nullptr ? above->instanceSize : 0;
    if (which->instanceSize <= 0) {
        if (which->ivars != nullptr) {
            for (int i = 0; i < which->ivars->count; ++i) {
                *which->ivars->ivars[i].offset += static_cast<int>(inherited);
            }
        }
        which->instanceSize = inherited - which->instanceSize;
    }
    which->isa->info |= loadedInfo;
    which->isa->superclass = above != nullptr ? above->isa : which;
    which->isa->isa = which->isa;
    state().classes[which->name] = which;
}

// Puts the methods of a category in front of those of the class, which they override.
void addMethods(Class to, objc_method_list* methods) {
    if (methods == nullptr) {
        return;
    }
    objc_method_list* last = methods;
    while (last->next != nullptr) {
        last = last->next;
    }
    last->next = to->methods;
    to->methods = methods;
}

// Whether an object is never freed: nil, string literals and classes.
bool isForever(id object) {
    if (object == nullptr || isTiny(object) ||
        static_cast<void*>(object->isa) == static_cast<void*>(__CFConstantStringClassReference)) {
        return true;
    }
    static const Class constantString = classNamed("NSConstantString");
    return object->isa == constantString || (object->isa->info & metaInfo) != 0;
}

// Looks a method up, with a cache for each class. Null when neither the class nor its superclasses have it.
objc_slot* slotFor(Class which, SEL selector) {
    const std::lock_guard lock(state().mutex);
    if (which->cache == nullptr) {
        which->cache = new Cache;
    }
    Cache& cache = *static_cast<Cache*>(which->cache);
    const auto known = cache.find(selector->name);
    if (known != cache.end()) {
        return &known->second;
    }
    const IMP implementation = Runtime::find(which, selector);
    if (implementation == nullptr) {
        return nullptr;
    }
    return &cache.emplace(selector->name, objc_slot{which, which, selector->types, 1, implementation})
                .first->second;
}

// The implementation of every message to nil.
id answerToNil(id /*self*/, SEL /*selector*/, ...) {
    return nullptr;
}

// Calls a method without arguments, unless the implementation is null.
void perform(id object, IMP implementation) {
    if (implementation != nullptr) {
        implementation(object, nullptr);
    }
}

SEL selectorNamed(const char* name) {
    static std::map<std::string, objc_selector> made;
    const std::lock_guard lock(state().mutex);
    return &made.try_emplace(name, objc_selector{unique(name), nullptr}).first->second;
}

// The method of this class itself, without those of its superclasses.
IMP ownMethod(Class which, SEL selector) {
    for (const objc_method_list* list = which->methods; list != nullptr; list = list->next) {
        for (int i = 0; i < list->count; ++i) {
            if (list->methods[i].selector->name == selector->name) {
                return list->methods[i].implementation;
            }
        }
    }
    return nullptr;
}

// Runs the constructors of the C++ ivars of a new object, those of the superclass first.
void construct(id object, Class which) {
    if (which == nullptr) {
        return;
    }
    construct(object, which->superclass);
    static const SEL selector = selectorNamed(".cxx_construct");
    perform(object, ownMethod(which, selector));
}

} // namespace

extern "C" {
int __CFConstantStringClassReference[32] = {}; // NOLINT: the compiler's name

int __gxx_personality_v0(int, int, std::uint64_t, void*, void*);

int __gnustep_objcxx_personality_v0(int version, int actions, std::uint64_t kind, void* exception,
                                    void* context) {
    return __gxx_personality_v0(version, actions, kind, exception, context);
}

void __objc_load(objc_init* program) {
    if (program->version == ~std::uint64_t{0}) {
        return;
    }
    program->version = ~std::uint64_t{0};
    for (SEL selector = program->selectorsBegin; selector != program->selectorsEnd; ++selector) {
        if (selector->name != nullptr) {
            selector->name = unique(selector->name);
        }
    }
    for (Class* which = program->classesBegin; which != program->classesEnd; ++which) {
        if (*which != nullptr) {
            resolve(*which);
        }
    }
    for (objc_category* each = program->categoriesBegin; each != program->categoriesEnd; ++each) {
        if (each->className == nullptr) {
            continue;
        }
        const Class which = classNamed(each->className);
        if (which == nullptr) {
            Runtime::die(std::string("a category of an unknown class ") + each->className);
        }
        addMethods(which, each->instanceMethods);
        addMethods(which->isa, each->classMethods);
    }
}

objc_slot* objc_msg_lookup_sender(id* receiver, SEL selector, id /*sender*/) {
    static objc_slot nothing = {nullptr, nullptr, "", 1, answerToNil};
    if (*receiver == nullptr) {
        return &nothing;
    }
    const Class which = Runtime::classOf(*receiver);
    objc_slot* slot = slotFor(which, selector);
    if (slot == nullptr) {
        Runtime::die(std::string(Runtime::isMeta(which) ? "+[" : "-[") + which->name + " " + selector->name +
                     "]: unrecognised selector");
    }
    return slot;
}

IMP objc_msg_lookup_super(objc_super* super, SEL selector) {
    const objc_slot* slot = slotFor(super->superclass, selector);
    if (slot == nullptr) {
        Runtime::die(std::string("[super ") + selector->name + "]: unrecognised selector");
    }
    return slot->implementation;
}

Class object_getClass(id object) {
    return object == nullptr ? nullptr : Runtime::classOf(object);
}

Class objc_superclass(Class which) {
    return which->superclass;
}

const char* class_getName(Class which) {
    return which->name;
}

const char* sel_getName(SEL selector) {
    return selector->name;
}

SEL sel_registerName(const char* name) {
    return selectorNamed(name);
}

id objc_retain(id object) {
    if (isForever(object)) {
        return object;
    }
    if (Runtime::isBlock(object)) { // a block on the stack stays there until it is copied
        return object->isa == reinterpret_cast<Class>(_NSConcreteMallocBlock)
                   ? static_cast<id>(_Block_copy(object))
                   : object;
    }
    ++header(object).references;
    return object;
}

void objc_release(id object) {
    if (isForever(object)) {
        return;
    }
    if (Runtime::isBlock(object)) {
        _Block_release(object);
        return;
    }
    if (--header(object).references > 0 || header(object).isDying != 0) {
        return;
    }
    {
        const std::lock_guard lock(state().mutex);
        header(object).isDying = 1;
        const auto weak = state().weak.find(object);
        if (weak != state().weak.end()) {
            for (id* reference : weak->second) {
                *reference = nullptr;
            }
            state().weak.erase(weak);
        }
    }
    perform(object, Runtime::find(object->isa, selectorNamed("dealloc")));
}

id objc_autorelease(id object) {
    if (isForever(object)) {
        return object;
    }
    if (pools().marks.size() <= pools().uncounted) {
        const std::lock_guard lock(state().mutex);
        state().strays.emplace_back(Runtime::isBlock(object) ? "a block" : Runtime::classOf(object)->name);
    }
    pools().objects.push_back(object);
    return object;
}

void* objc_autoreleasePoolPush() {
    pools().marks.push_back(pools().objects.size());
    return reinterpret_cast<void*>(pools().marks.size());
}

void objc_autoreleasePoolPop(void* pool) {
    while (pools().marks.size() >= reinterpret_cast<std::size_t>(pool)) {
        const std::size_t mark = pools().marks.back();
        while (pools().objects.size() > mark) { // releasing an object may autorelease more
            const id object = pools().objects.back();
            pools().objects.pop_back();
            objc_release(object);
        }
        pools().marks.pop_back();
    }
}

id objc_autoreleaseReturnValue(id object) {
    return objc_autorelease(object);
}

id objc_retainAutorelease(id object) {
    return objc_autorelease(objc_retain(object));
}

id objc_retainAutoreleaseReturnValue(id object) {
    return objc_autorelease(objc_retain(object));
}

id objc_retainAutoreleasedReturnValue(id object) {
    return objc_retain(object);
}

id objc_unsafeClaimAutoreleasedReturnValue(id object) {
    return object;
}

id objc_retainBlock(id block) {
    return static_cast<id>(_Block_copy(block));
}

void objc_storeStrong(id* place, id object) {
    const id before = *place;
    objc_retain(object);
    *place = object;
    objc_release(before);
}

id objc_storeWeak(id* place, id object) {
    const std::lock_guard lock(state().mutex);
    if (*place != nullptr) {
        const auto known = state().weak.find(*place);
        if (known != state().weak.end()) {
            known->second.erase(place);
            if (known->second.empty()) {
                state().weak.erase(known);
            }
        }
    }
    if (object != nullptr && !isForever(object)) {
        if (header(object).isDying != 0) {
            object = nullptr;
        } else {
            state().weak[object].insert(place);
        }
    }
    *place = object;
    return object;
}

id objc_initWeak(id* place, id object) {
    *place = nullptr;
    return objc_storeWeak(place, object);
}

id objc_loadWeakRetained(id* place) {
    const std::lock_guard lock(state().mutex);
    return objc_retain(*place);
}

id objc_loadWeak(id* place) {
    return objc_autorelease(objc_loadWeakRetained(place));
}

void objc_destroyWeak(id* place) {
    objc_storeWeak(place, nullptr);
}

void objc_copyWeak(id* to, id* from) {
    const id object = objc_loadWeakRetained(from);
    objc_initWeak(to, object);
    objc_release(object);
}

void objc_moveWeak(id* to, id* from) {
    objc_copyWeak(to, from);
    objc_destroyWeak(from);
}

id objc_getProperty(id self, SEL /*selector*/, std::ptrdiff_t offset, bool /*isAtomic*/) {
    return objc_retainAutorelease(*reinterpret_cast<id*>(reinterpret_cast<char*>(self) + offset));
}

static void setProperty(id self, id value, std::ptrdiff_t offset, bool copies) {
    id* place = reinterpret_cast<id*>(reinterpret_cast<char*>(self) + offset);
    id kept = nullptr;
    if (copies && value != nullptr && !isForever(value) && Runtime::isBlock(value)) {
        kept = static_cast<id>(_Block_copy(value));
    } else if (copies && value != nullptr && !isForever(value)) {
        kept = reinterpret_cast<id (*)(id, SEL)>(
            Runtime::find(Runtime::classOf(value), selectorNamed("copy")))(value, nullptr);
    } else {
        kept = objc_retain(value);
    }
    const id before = *place;
    *place = kept;
    objc_release(before);
}

void objc_setProperty(id self, SEL, std::ptrdiff_t offset, id value, bool, bool copies) {
    setProperty(self, value, offset, copies);
}

void objc_setProperty_atomic(id self, SEL, id value, std::ptrdiff_t offset) {
    setProperty(self, value, offset, false);
}

void objc_setProperty_nonatomic(id self, SEL, id value, std::ptrdiff_t offset) {
    setProperty(self, value, offset, false);
}

void objc_setProperty_atomic_copy(id self, SEL, id value, std::ptrdiff_t offset) {
    setProperty(self, value, offset, true);
}

void objc_setProperty_nonatomic_copy(id self, SEL, id value, std::ptrdiff_t offset) {
    setProperty(self, value, offset, true);
}

void objc_copyPropertyStruct(void* to, const void* from, std::ptrdiff_t size, bool, bool) {
    std::memcpy(to, from, static_cast<std::size_t>(size));
}

void objc_getPropertyStruct(void* to, const void* from, std::ptrdiff_t size, bool, bool) {
    std::memcpy(to, from, static_cast<std::size_t>(size));
}

void objc_setPropertyStruct(void* to, const void* from, std::ptrdiff_t size, bool, bool) {
    std::memcpy(to, from, static_cast<std::size_t>(size));
}

void objc_enumerationMutation(id) {
    Runtime::die("a collection was changed while it was enumerated");
}

void objc_setAssociatedObject(id object, const void* key, id value, std::uintptr_t policy) {
    const std::lock_guard lock(state().mutex);
    id& place = state().associated[object][key];
    const id before = place;
    place = policy == 0 ? value : objc_retain(value);
    objc_release(before);
}

id objc_getAssociatedObject(id object, const void* key) {
    const std::lock_guard lock(state().mutex);
    const auto all = state().associated.find(object);
    if (all == state().associated.end()) {
        return nullptr;
    }
    const auto found = all->second.find(key);
    return found == all->second.end() ? nullptr : objc_retainAutorelease(found->second);
}
}

Class Runtime::classOf(id object) {
    static const Class tiny = classNamed("FakeTinyString");
    static const Class text = classNamed("FakeCFConstantString");
    static const Class block = classNamed("FakeBlock");
    if (isTiny(object)) {
        return tiny;
    }
    if (static_cast<void*>(object->isa) == static_cast<void*>(__CFConstantStringClassReference)) {
        return text;
    }
    return isBlock(object) ? block : object->isa;
}

bool Runtime::isBlock(id object) {
    const void* const isa = object->isa;
    return isa == _NSConcreteStackBlock || isa == _NSConcreteMallocBlock || isa == _NSConcreteGlobalBlock;
}

bool Runtime::isMeta(Class which) {
    return (which->info & metaInfo) != 0;
}

IMP Runtime::find(Class startingAt, SEL selector) {
    for (Class which = startingAt; which != nullptr; which = which->superclass) {
        if (const IMP found = ownMethod(which, selector)) {
            return found;
        }
    }
    return nullptr;
}

id Runtime::allocate(Class ofClass) {
    void* const memory = std::calloc(1, sizeof(Header) + static_cast<std::size_t>(ofClass->instanceSize));
    if (memory == nullptr) {
        die("no memory");
    }
    auto* const front = static_cast<Header*>(memory);
    front->references = 1;
    const id object = reinterpret_cast<id>(front + 1);
    object->isa = ofClass;
    construct(object, ofClass);
    const std::lock_guard lock(state().mutex);
    ++state().live[ofClass->name];
    return object;
}

void Runtime::destroy(id object) {
    static const SEL selector = selectorNamed(".cxx_destruct");
    for (Class which = object->isa; which != nullptr; which = which->superclass) {
        perform(object, ownMethod(which, selector));
    }
    std::map<const void*, id> associated;
    {
        const std::lock_guard lock(state().mutex);
        --state().live[object->isa->name];
        const auto found = state().associated.find(object);
        if (found != state().associated.end()) {
            associated.swap(found->second);
            state().associated.erase(found);
        }
    }
    for (const auto& each : associated) {
        objc_release(each.second);
    }
    std::free(&header(object));
}

void Runtime::die(const std::string& why) {
    std::fprintf(stderr, "Objective-C: %s\n", why.c_str());
    std::abort();
}

std::size_t Runtime::liveObjects(const std::string& className) {
    const std::lock_guard lock(state().mutex);
    const auto found = state().live.find(className);
    return found == state().live.end() ? 0 : found->second;
}

std::map<std::string, std::size_t> Runtime::allLiveObjects() {
    const std::lock_guard lock(state().mutex);
    std::map<std::string, std::size_t> live;
    for (const auto& [name, count] : state().live) {
        if (count > 0) {
            live[name] = count;
        }
    }
    if (liveBlocks() > 0) {
        live["block"] = liveBlocks();
    }
    return live;
}

Runtime::WithoutPools::WithoutPools() : before_(pools().uncounted) {
    pools().uncounted = pools().marks.size();
}

Runtime::WithoutPools::~WithoutPools() {
    pools().uncounted = before_;
}

std::vector<std::string> Runtime::takeStrayAutoreleases() {
    const std::lock_guard lock(state().mutex);
    return std::exchange(state().strays, {});
}
