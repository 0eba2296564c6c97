// What the fakes of the frameworks share. Main thread only, unless it says otherwise.

#pragma once

#import "Frameworks/FakeMac.h"

#include <QByteArray>
#include <QString>

#include <algorithm>
#include <functional>
#include <vector>

// Objects of Foundation. Any thread.
NSString* makeText(const QString& text);
NSData* makeData(const QByteArray& content);
NSNumber* makeNumber(double value, bool isBoolean);

// Each subclass of NSString implements this; NSString implements the rest with it.
@interface NSString ()
- (QString)fakeText;
@end

namespace FakeMac {

// The string that @available is replaced by where the system is new enough.
extern const char versionIsThere[];

// Requires the main thread and writes the call into the journal.
void did(const char* call);

// Registers a function that each checkEnd() calls before it resets the settings.
class AtEnd {
public:
    explicit AtEnd(std::function<void()> forget);
};

// The only instance of a class. Each test gets a new one.
template <typename Type>
class Shared {
public:
    Type* get() {
        if (object_ == nil) {
            object_ = [[Type alloc] init];
        }
        return object_;
    }

private:
    Type* object_ = nil;
    AtEnd atEnd_{[this] { object_ = nil; }};
};

// What a program obtains from the system and must give back. What is left at the end of a test is a violation.
template <typename Thing>
class Registry {
public:
    // The texts of the two violations: a thing is left at the end, or an unknown one is given back.
    Registry(const char* left, const char* unknown)
        : unknown_(unknown)
        , atEnd_([this, left] {
            if (!all_.empty()) {
                violate(left);
            }
            all_.clear();
        }) {}

    void add(Thing thing) { all_.push_back(thing); }

    // Removes the first thing that matches; returns whether there was one.
    template <typename Match>
    bool remove(Match matches) {
        const auto found = std::find_if(all_.begin(), all_.end(), matches);
        if (found == all_.end()) {
            violate(unknown_);
            return false;
        }
        all_.erase(found);
        return true;
    }

    // A copy, because a callback may add or remove things.
    [[nodiscard]] std::vector<Thing> all() const { return all_; }

    [[nodiscard]] std::size_t size() const { return all_.size(); }

private:
    const char* unknown_;
    std::vector<Thing> all_;
    AtEnd atEnd_;
};

} // namespace FakeMac
