#include "Fenwhirl/Platform/Desktop/ComputerName.h"

#import <Foundation/Foundation.h>

QString computerName() {
    @autoreleasepool {
        return QString::fromNSString(NSHost.currentHost.localizedName);
    }
}
