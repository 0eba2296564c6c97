#include "Fenwhirl/Platform/ScriptNotifier.h"

#include "Fenwhirl/Platform/AppleScriptText.h"

#include <QProcess>

void notifyByScript(const QString& tool, const QString& title, const QString& message) {
    QProcess script;
    script.setProgram(tool);
    script.setArguments({QStringLiteral("-e"), notificationStatement(title, message)});
    script.setStandardOutputFile(QProcess::nullDevice());
    script.setStandardErrorFile(QProcess::nullDevice());
    // Detached: the system's first process is its parent, so nobody here has to wait for it.
    script.startDetached();
}
