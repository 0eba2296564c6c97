// Provides QML with the icons of applications, as "image://application/" followed by the application's path,
// percent-encoded.
//
// Threads: main thread, on which Qt calls providers of pixmaps. Owned by the engine.

#pragma once

#include <QQuickImageProvider>
#include <QString>

namespace Fenwhirl {

class ApplicationIconProvider : public QQuickImageProvider {
public:
    ApplicationIconProvider();

    // The URL of an application's icon; empty when the system has no icon for it.
    [[nodiscard]] static QString sourceFor(const QString& applicationPath);
    [[nodiscard]] static QString name();

    QPixmap requestPixmap(const QString& id, QSize* size, const QSize& requestedSize) override;
};

} // namespace Fenwhirl
