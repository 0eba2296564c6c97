#pragma once

#include <QClipboard>
#include <QGuiApplication>
#include <QObject>
#include <QString>
#include <QtQml/qqmlregistration.h>

// The desktop's clipboard: QML singleton `Clipboard`. Main thread only.

namespace Fenwhirl {

class Clipboard : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_SINGLETON

public:
    using QObject::QObject;

    Q_INVOKABLE void copy(const QString& text) const { QGuiApplication::clipboard()->setText(text); }
};

} // namespace Fenwhirl
