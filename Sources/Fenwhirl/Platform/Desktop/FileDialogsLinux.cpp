#include "Fenwhirl/Platform/Desktop/FileDialogs.h"
#include "Fenwhirl/Platform/Desktop/SavePortalLinux.h"

#include <QApplication>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDesktopServices>
#include <QDir>
#include <QFileDialog>
#include <QFileInfo>
#include <QLibraryInfo>
#include <QLocale>
#include <QStandardPaths>
#include <QTranslator>
#include <QUrl>
#include <QWidget>

namespace Fenwhirl {

namespace {

// Qt's texts for "pt" are Brazilian, so the European ones are requested. Texts that Qt has not translated
// come from the application's own translator.
QLocale localeOf(const QString& language) {
    return QLocale(language == QStringLiteral("pt") ? QStringLiteral("pt_PT") : language);
}

// The status item's menu grabs the mouse. While the portal's dialog is open the menu would get no input, so
// the mouse would be dead everywhere.
void closePopups() {
    while (QWidget* const popup = QApplication::activePopupWidget()) {
        if (!popup->close()) {
            return;
        }
    }
}

QString askWithQt(const QString& place, const QString& language) {
    QTranslator texts;
    if (texts.load(localeOf(language), QStringLiteral("qtbase"), QStringLiteral("_"),
                   QLibraryInfo::path(QLibraryInfo::TranslationsPath))) {
        QCoreApplication::installTranslator(&texts); // its destructor removes it again
    }
    return QFileDialog::getSaveFileName(nullptr, {}, place);
}

} // namespace

QString askSavePath(const QString& proposedName, const QString& language) {
    if (SavePortalLinux::isAsking()) {
        return {};
    }
    closePopups();
    QString folder = QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation);
    if (!QFileInfo(folder).isDir()) {
        folder = QDir::homePath();
    }
    SavePortalLinux portal(QDBusConnection::sessionBus());
    // The title is the program's name, which needs no translation.
    const SavePortalLinux::Answer answer =
        portal.ask(QCoreApplication::applicationName(), folder, proposedName);
    return answer.answered ? answer.path : askWithQt(folder + u'/' + proposedName, language);
}

bool isAskingSavePath() {
    return SavePortalLinux::isAsking();
}

void revealInFileBrowser(const QString& path) {
    QDBusMessage call = QDBusMessage::createMethodCall(
        QStringLiteral("org.freedesktop.FileManager1"), QStringLiteral("/org/freedesktop/FileManager1"),
        QStringLiteral("org.freedesktop.FileManager1"), QStringLiteral("ShowItems"));
    call << QStringList{QUrl::fromLocalFile(path).toString()} << QString();
    auto* pending = new QDBusPendingCallWatcher(QDBusConnection::sessionBus().asyncCall(call));
    QObject::connect(pending, &QDBusPendingCallWatcher::finished, pending, [pending, path] {
        pending->deleteLater();
        if (pending->isError()) {
            QDesktopServices::openUrl(QUrl::fromLocalFile(QFileInfo(path).absolutePath()));
        }
    });
}

} // namespace Fenwhirl
