#include "Fenwhirl/Platform/PreferredLanguages.h"

#include <CoreFoundation/CoreFoundation.h>
#include <memory>
#include <type_traits>

namespace Fenwhirl {

QStringList preferredLanguages() {
    struct Release {
        void operator()(CFArrayRef array) const { CFRelease(array); }
    };

    const std::unique_ptr<std::remove_pointer_t<CFArrayRef>, Release> tags(CFLocaleCopyPreferredLanguages());
    QStringList languages;
    if (!tags) {
        return languages;
    }
    const CFIndex count = CFArrayGetCount(tags.get());
    for (CFIndex i = 0; i < count; ++i) {
        languages.append(
            QString::fromCFString(static_cast<CFStringRef>(CFArrayGetValueAtIndex(tags.get(), i))));
    }
    return languages;
}

} // namespace Fenwhirl
