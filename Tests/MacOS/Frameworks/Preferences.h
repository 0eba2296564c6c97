// The fake system preferences, which tests inspect and arrange. Main thread only.

#pragma once

#include <QString>

#import <Foundation/Foundation.h>
#include <map>
#include <utility>

namespace FakeMac {

struct Preferences {
    // By domain (application, user and host) and by key.
    std::map<std::pair<QString, QString>, id> values;
    bool refusesTexts = false;   // creating a string fails
    bool losesPrecision = false; // converting a number reports a loss of precision
};

Preferences& preferences();

} // namespace FakeMac
