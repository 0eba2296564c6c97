#include "Fenwhirl/Platform/AppleScriptText.h"

namespace {

QString quoted(QString text) {
    text.replace(u'\\', u' ').replace(u'"', u'\'');
    return u'"' + text + u'"';
}

} // namespace

QString notificationStatement(const QString& title, const QString& message) {
    return QStringLiteral("display notification ") + quoted(message) + QStringLiteral(" with title ") +
           quoted(title);
}
