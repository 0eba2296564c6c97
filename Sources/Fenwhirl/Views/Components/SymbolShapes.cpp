#include "Fenwhirl/Views/Components/SymbolShapes.h"

#include "Fenwhirl/Views/Components/PathData.h"

#include <QColor>
#include <QFile>
#include <QHash>
#include <QMutex>
#include <QPainter>
#include <QTransform>
#include <QXmlStreamReader>

#include <algorithm>
#include <array>
#include <cmath>

namespace Fenwhirl {

namespace {

// The sizes in pixels for which there is a drawing of the fan, largest first.
constexpr std::array fanSizes = {24, 22, 18, 16};
constexpr int finestFan = 40; // from here on the drawing without a size will do
constexpr double boldStroke = 1.3;

std::vector<SymbolShape> readDrawing(const QString& name) {
    std::vector<SymbolShape> shapes;
    QFile file(QStringLiteral(":/qt/qml/Fenwhirl/Components/Symbols/%1.svg").arg(name));
    if (name.isEmpty() || !file.open(QIODevice::ReadOnly)) {
        return shapes;
    }
    QXmlStreamReader xml(&file);
    double scale = 1.0; // from the file's grid to ours
    while (!xml.atEnd()) {
        if (xml.readNext() != QXmlStreamReader::StartElement) {
            continue;
        }
        const QXmlStreamAttributes attributes = xml.attributes();
        if (xml.name() == QLatin1String("svg")) {
            scale = symbolGrid / attributes.value(QLatin1String("width")).toDouble();
        }
        if (xml.name() != QLatin1String("path")) {
            continue;
        }
        auto path = painterPath(attributes.value(QLatin1String("d")));
        if (!path) {
            return {};
        }
        if (scale != 1.0) {
            *path = QTransform::fromScale(scale, scale).map(*path);
        }
        // The default fill rule of SVG is nonzero, that of QPainterPath is odd-even.
        path->setFillRule(Qt::WindingFill);
        const bool stroked = attributes.hasAttribute(QLatin1String("stroke"));
        shapes.push_back(
            {*path, stroked ? attributes.value(QLatin1String("stroke-width")).toDouble() * scale : 0.0});
    }
    return shapes;
}

} // namespace

const std::vector<SymbolShape>& symbolShapes(const QString& name) {
    static QMutex mutex;
    static QHash<QString, std::shared_ptr<const std::vector<SymbolShape>>> drawings;
    const QMutexLocker lock(&mutex);
    auto& drawing = drawings[name];
    if (!drawing) {
        drawing = std::make_shared<const std::vector<SymbolShape>>(readDrawing(name));
    }
    return *drawing;
}

QString drawingForPixels(const QString& name, double pixels) {
    if (name != QLatin1String("fan")) {
        return name;
    }
    const int whole = static_cast<int>(std::lround(std::clamp(pixels, 0.0, 4096.0)));
    if (whole < fanSizes.back()) {
        return QStringLiteral("fan.fill");
    }
    // A multiple of a size is that size on a screen with more pixels per point.
    for (const int size : fanSizes) {
        if (whole % size == 0) {
            return QStringLiteral("fan.%1").arg(size);
        }
    }
    if (whole >= finestFan) {
        return name;
    }
    const auto* const smaller =
        std::find_if(fanSizes.begin(), fanSizes.end(), [whole](int size) { return size <= whole; });
    return QStringLiteral("fan.%1").arg(*smaller);
}

void drawSymbol(QPainter& painter, const QString& name, const QRectF& bounds, const QColor& color,
                SymbolWeight weight) {
    const double side = std::min(bounds.width(), bounds.height());
    const double scale = side / symbolGrid;
    const double pixels = side * std::sqrt(std::abs(painter.deviceTransform().determinant()));
    const double thickness = weight == SymbolWeight::bold ? boldStroke : 1.0;
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.translate(bounds.center());
    painter.scale(scale, scale);
    painter.translate(-symbolGrid / 2.0, -symbolGrid / 2.0);
    const QString drawing = drawingForPixels(name, pixels); // gcc 14 warns of a temporary
    for (const SymbolShape& shape : symbolShapes(drawing)) {
        if (shape.strokeWidth > 0.0) {
            painter.strokePath(shape.path, QPen(color, shape.strokeWidth * thickness, Qt::SolidLine,
                                                Qt::RoundCap, Qt::RoundJoin));
        } else {
            painter.fillPath(shape.path, color);
        }
    }
    painter.restore();
}

} // namespace Fenwhirl
