#include "Fenwhirl/Platform/SystemName.h"

#import <Foundation/Foundation.h>

QString computerName() {
    @autoreleasepool {
        return QString::fromNSString(NSHost.currentHost.localizedName);
    }
}
