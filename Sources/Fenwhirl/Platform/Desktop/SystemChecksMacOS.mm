#include "Fenwhirl/Platform/BundleInfo.h"
#include "Fenwhirl/Platform/Desktop/MainWindowBehaviour.h"
#include "Fenwhirl/Platform/Desktop/SystemChecks.h"
#include "Fenwhirl/Platform/LoginItemFile.h"
#include "Fenwhirl/Platform/Toolkit/ChildProcess.h"

#import <AppKit/AppKit.h>
#import <Metal/Metal.h>
#include <vector>

namespace Fenwhirl {

namespace {

QString titles(NSMenu* menu) {
    QStringList found;
    NSArray<NSMenuItem*>* items = menu.itemArray;
    for (NSUInteger i = 0; i < items.count; ++i) {
        if (!items[i].isSeparatorItem) {
            found.append(QString::fromNSString(items[i].title));
        }
    }
    return found.join(QStringLiteral(", "));
}

QString titles(const QList<MenuItem>& items) {
    QStringList wanted;
    for (const MenuItem& item : items) {
        if (item.kind != MenuItem::Kind::separator) {
            wanted.append(item.title);
        }
    }
    return wanted.join(QStringLiteral(", "));
}

CheckResult isAnother(const QString& found, const QString& wanted) {
    return CheckResult::fail(QStringLiteral("the menu bar has \"%1\" instead of \"%2\"").arg(found, wanted));
}

} // namespace

namespace SystemChecks {

// Windows are always the window server's.
void prepareScreen() {}

CheckResult signature(const std::string& tool) {
    const QString bundle = BundleInfo::path();
    const std::vector<std::string> arguments = {"--verify", "--deep", "--strict", bundle.toStdString()};
    const auto result = runChild(tool, arguments, ChildOutput::discard, ChildEnvironment::neutral);
    if (!result) {
        return CheckResult::skip(QString::fromStdString(tool) + QStringLiteral(" cannot be started"));
    }
    return result->succeeded()
               ? CheckResult::pass(QStringLiteral("valid, for ") + bundle)
               : CheckResult::fail(QStringLiteral("codesign --verify --deep --strict finds fault with ") +
                                   bundle);
}

CheckResult quarantine(const std::string& tool) {
    // Its first number, hexadecimal, has this bit when the user has agreed to open it.
    constexpr unsigned agreed = 0x40;
    const std::vector<std::string> arguments = {"-p", "com.apple.quarantine",
                                                BundleInfo::path().toStdString()};
    const auto result = runChild(tool, arguments, ChildOutput::capture, ChildEnvironment::neutral);
    if (!result) {
        return CheckResult::skip(QString::fromStdString(tool) + QStringLiteral(" cannot be started"));
    }
    if (!result->succeeded()) { // there is no such mark
        return CheckResult::pass(QStringLiteral("none"));
    }
    const QByteArray mark = QByteArray::fromStdString(result->output).trimmed();
    const QString shown = QString::fromUtf8(mark);
    if ((mark.split(';').first().toUInt(nullptr, 16) & agreed) != 0) {
        return CheckResult::pass(QStringLiteral("opened with the user's consent: ") + shown);
    }
    return CheckResult::fail(QStringLiteral("downloaded and never opened from the Finder: ") + shown);
}

CheckResult translocation() {
    const QString bundle = BundleInfo::path();
    return isTranslocated(bundle)
               ? CheckResult::fail(QStringLiteral("runs from %1: move it to Applications first").arg(bundle))
               : CheckResult::pass(QStringLiteral("none"));
}

CheckResult activationPolicy() {
    @autoreleasepool {
        MainWindowBehaviour::setRegular();
        const bool wasRegular = NSApp.activationPolicy == NSApplicationActivationPolicyRegular;
        MainWindowBehaviour::setAccessory();
        const bool isAccessory = NSApp.activationPolicy == NSApplicationActivationPolicyAccessory;
        if (!wasRegular) {
            return CheckResult::fail(QStringLiteral("it did not become a regular program"));
        }
        if (!isAccessory) {
            return CheckResult::fail(QStringLiteral("it did not become an accessory again"));
        }
        return CheckResult::pass(QStringLiteral("regular and accessory again"));
    }
}

CheckResult graphicsDevice() {
    @autoreleasepool {
        const id<MTLDevice> device = MTLCreateSystemDefaultDevice();
        return device != nil ? CheckResult::pass(QString::fromNSString(device.name))
                             : CheckResult::fail(QStringLiteral("there is no Metal device"));
    }
}

CheckResult menuBar(const QList<Menu>& menus) {
    @autoreleasepool {
        NSMenu* bar = static_cast<NSApplication*>(NSApp).mainMenu;
        const NSUInteger count = bar.itemArray.count;
        if (count != static_cast<NSUInteger>(menus.size())) {
            return CheckResult::fail(QStringLiteral("%1 menus instead of %2").arg(count).arg(menus.size()));
        }
        for (NSUInteger i = 0; i < count; ++i) {
            const Menu& wanted = menus[static_cast<qsizetype>(i)];
            NSMenu* menu = bar.itemArray[i].submenu;
            const QString title = QString::fromNSString(menu.title);
            if (title != wanted.title) {
                return isAnother(title, wanted.title);
            }
            if (titles(menu) != titles(wanted.items)) {
                return isAnother(titles(menu), titles(wanted.items));
            }
        }
        return CheckResult::pass(titles(bar));
    }
}

CheckResult unplacedStatusItem() {
    return CheckResult::fail(
        QStringLiteral("it cannot be seen: there is no room beside the notch, or it was taken away"));
}

} // namespace SystemChecks

} // namespace Fenwhirl
