#include "Fenwhirl/Platform/Desktop/FileDialogs.h"

#include <QScopeGuard>

#import <AppKit/AppKit.h>
#include <utility>

namespace Fenwhirl {

namespace {

bool asking = false;

} // namespace

QString askSavePath(const QString& proposedName, const QString& /*language*/) {
    if (std::exchange(asking, true)) {
        return {};
    }
    const auto finished = qScopeGuard([] { asking = false; });
    @autoreleasepool {
        NSSavePanel* panel = [NSSavePanel savePanel];
        panel.nameFieldStringValue = proposedName.toNSString();
        if ([panel runModal] != NSModalResponseOK) {
            return {};
        }
        return QString::fromNSString(panel.URL.path);
    }
}

bool isAskingSavePath() {
    return asking;
}

void revealInFileBrowser(const QString& path) {
    @autoreleasepool {
        NSURL* file = [NSURL fileURLWithPath:path.toNSString()];
        [NSWorkspace.sharedWorkspace activateFileViewerSelectingURLs:@[ file ]];
    }
}

} // namespace Fenwhirl
