#pragma once

#include <QFont>
#include <QFontMetricsF>
#include <QObject>
#include <QtQml/qqmlregistration.h>

// The height of a font's glyphs, from the ascent to the descent: QML singleton `GlyphBox`.
//
// For texts that position their glyphs in lines of a given height. A call of this function costs less than a
// FontMetrics object for each text, and a window has a hundred texts. Any thread.

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
