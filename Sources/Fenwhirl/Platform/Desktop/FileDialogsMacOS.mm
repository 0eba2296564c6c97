#include "Fenwhirl/Platform/Desktop/FileDialogs.h"

#import <AppKit/AppKit.h>

QString askSavePath(const QString& proposedName, const QString& /*language*/) {
    @autoreleasepool {
        NSSavePanel* panel = [NSSavePanel savePanel];
        panel.nameFieldStringValue = proposedName.toNSString();
        if ([panel runModal] != NSModalResponseOK) {
            return {};
        }
        return QString::fromNSString(panel.URL.path);
    }
}

void revealInFileBrowser(const QString& path) {
    @autoreleasepool {
        NSURL* file = [NSURL fileURLWithPath:path.toNSString()];
        [NSWorkspace.sharedWorkspace activateFileViewerSelectingURLs:@[ file ]];
    }
}
