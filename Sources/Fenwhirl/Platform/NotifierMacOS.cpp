#include "Fenwhirl/Platform/Notifier.h"
#include "Fenwhirl/Platform/ScriptNotifier.h"

void Notifier::send(const QString& title, const QString& message) {
    notifyByScript(QStringLiteral("/usr/bin/osascript"), title, message);
}
