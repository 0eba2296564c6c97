#include "Fenwhirl/Platform/ScriptNotifier.h"

#include <QProcess>

namespace Fenwhirl {

namespace {

QString quoted(QString text) {
    text.replace(u'\\', u' ').replace(u'"', u'\'');
    return u'"' + text + u'"';
}

void prepare(QProcess& script, const QString& tool, const QString& title, const QString& message) {
    script.setProgram(tool);
    script.setArguments({QStringLiteral("-e"), notificationStatement(title, message)});
    script.setStandardOutputFile(QProcess::nullDevice());
    script.setStandardErrorFile(QProcess::nullDevice());
}

} // namespace

QString notificationStatement(const QString& title, const QString& message) {
    return QStringLiteral("display notification ") + quoted(message) + QStringLiteral(" with title ") +
           quoted(title);
}

void notifyByScript(const QString& tool, const QString& title, const QString& message) {
    QProcess script;
    prepare(script, tool, title, message);
    // A detached process is adopted by the system's first process, so that nobody here has to wait for it.
    script.startDetached();
}

Notifier::Delivery deliverByScript(const QString& tool, const QString& title, const QString& message) {
    constexpr int patienceMilliseconds = 5000;
    QProcess script;
    prepare(script, tool, title, message);
    script.start();
    if (!script.waitForStarted(patienceMilliseconds)) {
        return Notifier::Delivery::noService;
    }
    if (!script.waitForFinished(patienceMilliseconds)) {
        script.kill();
        script.waitForFinished(patienceMilliseconds);
        return Notifier::Delivery::refused;
    }
    return script.exitStatus() == QProcess::NormalExit && script.exitCode() == 0
               ? Notifier::Delivery::taken
               : Notifier::Delivery::refused;
}

} // namespace Fenwhirl
