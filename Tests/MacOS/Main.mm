#import "AtStart.h"
#include "Fenwhirl/Platform/Desktop/DesktopApplication.h"
#import "Frameworks/FakeMac.h"
#include "ObjectiveC/Runtime.h"

#include <QCoreApplication>

#include <gmock/gmock.h>

namespace Fenwhirl {

namespace {

bool hasDelegate = false;
bool hasEnvironment = false;
bool left = false;
__weak id<NSApplicationDelegate> installed = nil;

// Qt calls this function while the application object is being created.
void look() {
    @autoreleasepool {
        installed = static_cast<NSApplication*>(NSApp).delegate;
        hasDelegate = installed != nil;
    }
    hasEnvironment = qgetenv("QT_MAC_DISABLE_FOREGROUND_APPLICATION_TRANSFORM") == "1" &&
                     qgetenv("QV4_FORCE_INTERPRETER") == "1";
}

Q_COREAPP_STARTUP_FUNCTION(look)

} // namespace

// Lets the address sanitizer overwrite freed memory. Qt's libraries are not instrumented: without that, they
// would still read the old content through a dangling pointer, and the mistake would stay unnoticed.
extern "C" const char* __asan_default_options() { // NOLINT: the sanitizer's name
    return "detect_leaks=1:max_free_fill_size=1048576";
}

id<NSApplicationDelegate> AtStart::delegate() {
    return installed;
}

bool AtStart::hadDelegate() {
    return hasDelegate;
}

bool AtStart::hadEnvironment() {
    return hasEnvironment;
}

bool AtStart::autoreleasedWithoutPool() {
    return left;
}

} // namespace Fenwhirl

// Uses Qt's offscreen platform, because there is no screen and the fake Mac draws nothing.
int main(int argc, char** argv) {
    testing::InitGoogleMock(&argc, argv);
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const std::unique_ptr<QGuiApplication> application = Fenwhirl::makeDesktopApplication(argc, argv);
    Fenwhirl::left = !Runtime::takeStrayAutoreleases().empty();
    @autoreleasepool {
        FakeMac::checkEnd();
    }
    return RUN_ALL_TESTS();
}
