// Gives QML the icons of applications: "image://application/" and the application's path, percent-encoded.
//
// Threads: main thread (a provider of pixmaps is asked there). Owned by the engine.

#pragma once

#include <QQuickImageProvider>

class ApplicationIconProvider : public QQuickImageProvider {
public:
    ApplicationIconProvider();

    QPixmap requestPixmap(const QString& id, QSize* size, const QSize& requestedSize) override;
};
