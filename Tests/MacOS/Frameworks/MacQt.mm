// The functions that Qt has on macOS only, and the native views of Qt's windows.

#import "Frameworks/MacQt.h"

#import "Frameworks/Fakes.h"
#include "Frameworks/NativeWindows.h"

#include <QByteArray>
#include <QString>
#include <QWindow>

#include <map>

QString QString::fromNSString(const NSString* text) {
    return text == nil ? QString() : QString::fromUtf8([const_cast<NSString*>(text) UTF8String]);
}

NSString* QString::toNSString() const {
    return makeText(*this);
}

QString QString::fromCFString(CFStringRef text) {
    return fromNSString((__bridge NSString*)text);
}

NSData* QByteArray::toNSData() const {
    return makeData(*this);
}

namespace {

struct Native {
    NSView* view;
    NSWindow* window;
};

std::map<const QWindow*, Native> natives;
const FakeMac::AtEnd atEnd([] { natives.clear(); });

} // namespace

// Overrides Qt's own function. On macOS the identifier is the address of an NSView, which is created together
// with its NSWindow by the first call.
WId QWindow::winId() const {
    FakeMac::requireMainThread("QWindow::winId");
    Native& native = natives[this];
    if (native.view == nil) {
        native.view = [[NSView alloc] init];
        const bool isPanel = type() == Qt::Tool || type() == Qt::Popup;
        native.window = isPanel ? [[NSPanel alloc] init] : [[NSWindow alloc] init];
        native.window.hidesOnDeactivate = type() == Qt::Tool;
        native.view.window = native.window;
    }
    return reinterpret_cast<WId>((__bridge void*)native.view);
}

NSWindow* FakeMac::nativeWindow(QWindow& window) {
    (void)window.winId();
    return natives[&window].window;
}

void FakeMac::destroyNative(QWindow& window) {
    natives.erase(&window);
}
