#include "Fenwhirl/Platform/BundleInfo.h"

#import <Foundation/Foundation.h>

namespace Fenwhirl {

namespace {

std::optional<QString> infoText(NSString* key) {
    @autoreleasepool {
        const id value = [NSBundle.mainBundle objectForInfoDictionaryKey:key];
        if (![value isKindOfClass:[NSString class]]) {
            return std::nullopt;
        }
        return QString::fromUtf8([static_cast<NSString*>(value) UTF8String]);
    }
}

} // namespace

std::optional<QString> BundleInfo::name() {
    return infoText(@"CFBundleName");
}

std::optional<QString> BundleInfo::shortVersion() {
    return infoText(@"CFBundleShortVersionString");
}

QString BundleInfo::path() {
    @autoreleasepool {
        return QString::fromUtf8([NSBundle.mainBundle.bundlePath UTF8String]);
    }
}

} // namespace Fenwhirl
