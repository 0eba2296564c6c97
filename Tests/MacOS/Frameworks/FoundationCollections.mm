// A fake of the part of Foundation that our sources call: numbers, data and collections.

#import "Frameworks/Fakes.h"

#include <utility>

@implementation NSNumber

+ (NSNumber*)numberWithInteger:(NSInteger)value {
    return makeNumber(static_cast<double>(value), false);
}

+ (NSNumber*)numberWithLong:(long)value {
    return makeNumber(static_cast<double>(value), false);
}

- (BOOL)boolValue {
    return self.value != 0;
}

@end

NSNumber* makeNumber(double value, bool isBoolean) {
    NSNumber* made = [[NSNumber alloc] init];
    made.value = value;
    made.isBoolean = isBoolean;
    return made;
}

@interface NSData ()
@property(nonatomic) QByteArray content;
@end

@implementation NSData

- (NSUInteger)length {
    return static_cast<NSUInteger>(self.content.size());
}

- (const void*)bytes {
    return self.content.constData();
}

@end

NSData* makeData(const QByteArray& content) {
    NSData* made = [[NSData alloc] init];
    made.content = content;
    return made;
}

// One step of fast enumeration: as many of the following objects as fit into the buffer.
template <typename At>
static NSUInteger nextOnes(NSFastEnumerationState* state, id __unsafe_unretained* buffer, NSUInteger count,
                           std::size_t size, At at) {
    static unsigned long never = 0;
    state->mutationsPtr = &never;
    NSUInteger given = 0;
    while (given < count && state->state < size) {
        buffer[given++] = at(state->state++);
    }
    state->itemsPtr = buffer;
    return given;
}

@implementation NSArray {
    std::vector<id> objects_;
}

+ (instancetype)arrayWithObjects:(const id[])objects count:(NSUInteger)count {
    NSArray* made = [[NSArray alloc] init];
    made->objects_.assign(objects, objects + count);
    return made;
}

- (NSUInteger)count {
    return objects_.size();
}

- (id)objectAtIndexedSubscript:(NSUInteger)index {
    if (index >= objects_.size()) {
        FakeMac::violate("an array was asked for what is beyond its end");
        return nil;
    }
    return objects_[index];
}

- (NSUInteger)countByEnumeratingWithState:(NSFastEnumerationState*)state
                                  objects:(id __unsafe_unretained[])buffer
                                    count:(NSUInteger)count {
    return nextOnes(state, buffer, count, objects_.size(), [&](std::size_t i) { return objects_[i]; });
}

- (id)copy {
    return self;
}

@end

@implementation NSDictionary {
    std::vector<std::pair<id, id>> entries_;
}

+ (instancetype)dictionaryWithObjects:(const id[])objects forKeys:(const id[])keys count:(NSUInteger)count {
    NSDictionary* made = [[NSDictionary alloc] init];
    for (NSUInteger i = 0; i < count; ++i) {
        made->entries_.emplace_back(keys[i], objects[i]);
    }
    return made;
}

- (id)copy {
    return self;
}

- (id)objectForKeyedSubscript:(id)key {
    for (const auto& [name, object] : entries_) {
        if ([name isEqual:key]) {
            return object;
        }
    }
    return nil;
}

- (NSUInteger)countByEnumeratingWithState:(NSFastEnumerationState*)state
                                  objects:(id __unsafe_unretained[])buffer
                                    count:(NSUInteger)count {
    return nextOnes(state, buffer, count, entries_.size(), [&](std::size_t i) { return entries_[i].first; });
}

@end
