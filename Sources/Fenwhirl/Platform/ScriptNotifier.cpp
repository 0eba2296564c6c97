#include "Fenwhirl/Platform/ScriptNotifier.h"

#include "Fenwhirl/Platform/AppleScriptText.h"

#include <QProcess>

void notifyByScript(const QString& tool, const QString& title, const QString& message) {
    QProcess script;
    script.setProgram(tool);
    script.setArguments({QStringLiteral("-e"), notificationStatement(title, message)});
    script.setStandardOutputFile(QProcess::nullDevice());
    script.setStandardErrorFile(QProcess::nullDevice());
    // A detached process is adopted by the system's first process, so that nobody here has to wait for it.
    script.startDetached();
}
