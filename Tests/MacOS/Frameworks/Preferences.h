// The system's preferences, as tests see and arrange them. Main thread only.

#pragma once

#include <QString>

#import <Foundation/Foundation.h>
#include <map>
#include <utility>

namespace FakeMac {

struct Preferences {
    // By application, user and host, and by key.
    std::map<std::pair<QString, QString>, id> values;
    bool refusesTexts = false;   // no text can be made
    bool losesPrecision = false; // numbers do not fit
};

Preferences& preferences();

} // namespace FakeMac
