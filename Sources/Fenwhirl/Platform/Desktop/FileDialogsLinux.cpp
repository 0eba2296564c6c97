#include "Fenwhirl/Platform/Desktop/FileDialogs.h"
#include "Fenwhirl/Platform/Desktop/SavePortalLinux.h"

#include <QAbstractButton>
#include <QApplication>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDesktopServices>
#include <QDialogButtonBox>
#include <QDir>
#include <QFileDialog>
#include <QFileInfo>
#include <QHeaderView>
#include <QLibraryInfo>
#include <QLocale>
#include <QStandardPaths>
#include <QTranslator>
#include <QTreeView>
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

// Qt's dialog as it is looks older than our windows: its buttons have coloured icons, and the title of its
// last column is cut. Where the toolkit shows the desktop's dialog instead, there is nothing to change.
void modernize(QFileDialog& dialog) {
    if (const auto* box = dialog.findChild<QDialogButtonBox*>()) {
        for (QAbstractButton* button : box->buttons()) {
            button->setIcon({});
        }
    }
    if (const auto* list = dialog.findChild<QTreeView*>()) {
        QHeaderView& header = *list->header();
        header.setStretchLastSection(false);
        header.setSectionResizeMode(QHeaderView::ResizeToContents);
        header.setSectionResizeMode(0, QHeaderView::Stretch); // the names
    }
}

QString askWithQt(const QString& folder, const QString& proposedName, const QString& language) {
    QTranslator texts;
    if (texts.load(localeOf(language), QStringLiteral("qtbase"), QStringLiteral("_"),
                   QLibraryInfo::path(QLibraryInfo::TranslationsPath))) {
        QCoreApplication::installTranslator(&texts); // its destructor removes it again
    }
    QFileDialog dialog(nullptr, {}, folder);
    dialog.setAcceptMode(QFileDialog::AcceptSave);
    dialog.selectFile(proposedName);
    modernize(dialog);
    return dialog.exec() == QDialog::Accepted ? dialog.selectedFiles().value(0) : QString();
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
    return answer.answered ? answer.path : askWithQt(folder, proposedName, language);
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
