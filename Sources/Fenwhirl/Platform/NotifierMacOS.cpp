#include "Fenwhirl/Platform/AppleScriptText.h"
#include "Fenwhirl/Platform/Notifier.h"

#include <QProcess>

void Notifier::send(const QString& title, const QString& message) {
    QProcess script;
    script.setProgram(QStringLiteral("/usr/bin/osascript"));
    script.setArguments({QStringLiteral("-e"), notificationStatement(title, message)});
    script.setStandardOutputFile(QProcess::nullDevice());
    script.setStandardErrorFile(QProcess::nullDevice());
    // Detached: the system's first process is its parent, so nobody here has to wait for it.
    script.startDetached();
}
