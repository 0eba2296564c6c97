#include "Fenwhirl/Platform/Notifier.h"
#include "Fenwhirl/Platform/ScriptNotifier.h"

namespace Fenwhirl {

namespace {

QString scriptTool() {
    return QStringLiteral("/usr/bin/osascript");
}

} // namespace

void Notifier::send(const QString& title, const QString& message) {
    notifyByScript(scriptTool(), title, message);
}

Notifier::Delivery Notifier::deliver(const QString& title, const QString& message) {
    return deliverByScript(scriptTool(), title, message);
}

} // namespace Fenwhirl
