#pragma once

#include <QFont>
#include <QFontMetricsF>
#include <QObject>
#include <QtQml/qqmlregistration.h>

// How high a font's glyphs are, from the ascent to the descent: QML singleton `GlyphBox`.
//
// For texts that place their glyphs in lines of a height of their own. Asking here costs each of them a
// question where a FontMetrics of its own would cost an object with a life, and a window has a hundred texts.
// Any thread.

namespace Fenwhirl {

class GlyphBox : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_SINGLETON

public:
    using QObject::QObject;

    // In points.
    Q_INVOKABLE [[nodiscard]] double height(const QFont& font) const { return QFontMetricsF(font).height(); }
};

} // namespace Fenwhirl
