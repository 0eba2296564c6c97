#include "Fenwhirl/Views/ReportView.h"

#include <QPointer>
#include <QSaveFile>

#include <utility>

namespace Fenwhirl {

void saveReport(const QString& text, const AskSavePath& askSavePath, const RevealFile& revealFile) {
    const QString path = askSavePath(QStringLiteral("Fenwhirl-diagnostic.txt"));
    if (path.isEmpty()) {
        return;
    }
    QSaveFile file(path);
    const QByteArray utf8 = text.toUtf8();
    // Flushed before, because what a full disk refuses when the file is closed does not keep QSaveFile from replacing it.
    if (file.open(QIODevice::WriteOnly) && file.write(utf8) == utf8.size() && file.flush() && file.commit()) {
        revealFile(path);
    }
}

ReportView::ReportView(Monitor& monitor, Save save, QObject* parent)
    : QObject(parent)
    , monitor_(monitor)
    , save_(std::move(save)) {}

void ReportView::create() {
    if (std::exchange(busy_, true)) {
        return;
    }
    Q_EMIT busyChanged();
    // The view may be gone when the report is ready.
    monitor_.makeDiagnosticReport(withFanTest_, [self = QPointer<ReportView>(this)](const QString& text) {
        if (!self) {
            return;
        }
        self->busy_ = false;
        Q_EMIT self->busyChanged();
        self->save_(text);
    });
}

} // namespace Fenwhirl
