#include "Fenwhirl/Platform/SystemName.h"

#import <Foundation/Foundation.h>

namespace Fenwhirl {

QString computerName() {
    @autoreleasepool {
        return QString::fromNSString(NSHost.currentHost.localizedName);
    }
}

} // namespace Fenwhirl
