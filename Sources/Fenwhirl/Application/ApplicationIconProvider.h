// Gives QML the icons of applications: "image://application/" and the application's path, percent-encoded.
//
// Threads: main thread (a provider of pixmaps is asked there). Owned by the engine.

#pragma once

#include <QQuickImageProvider>
#include <QString>

class ApplicationIconProvider : public QQuickImageProvider {
public:
    ApplicationIconProvider();

    // The address of an application's icon; empty when the system has none for it.
    [[nodiscard]] static QString sourceFor(const QString& applicationPath);
    [[nodiscard]] static QString name();

    QPixmap requestPixmap(const QString& id, QSize* size, const QSize& requestedSize) override;
};
