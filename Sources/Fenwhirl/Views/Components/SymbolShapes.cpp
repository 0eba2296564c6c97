#include "Fenwhirl/Views/Components/SymbolShapes.h"

#include "Fenwhirl/Views/Components/PathData.h"

#include <QColor>
#include <QFile>
#include <QHash>
#include <QMutex>
#include <QPainter>
#include <QXmlStreamReader>

#include <algorithm>

namespace Fenwhirl {

namespace {

std::vector<SymbolShape> readDrawing(const QString& name) {
    std::vector<SymbolShape> shapes;
    QFile file(QStringLiteral(":/qt/qml/Fenwhirl/Components/Symbols/%1.svg").arg(name));
    if (name.isEmpty() || !file.open(QIODevice::ReadOnly))
        return shapes;
    QXmlStreamReader xml(&file);
    while (!xml.atEnd()) {
        if (xml.readNext() != QXmlStreamReader::StartElement || xml.name() != QLatin1String("path"))
            continue;
        const QXmlStreamAttributes attributes = xml.attributes();
        auto path = painterPath(attributes.value(QLatin1String("d")));
        if (!path)
            return {};
        path->setFillRule(Qt::WindingFill);
        const bool stroked = attributes.hasAttribute(QLatin1String("stroke"));
        shapes.push_back({*path, stroked ? attributes.value(QLatin1String("stroke-width")).toDouble() : 0.0});
    }
    return shapes;
}

} // namespace

const std::vector<SymbolShape>& symbolShapes(const QString& name) {
    static QMutex mutex;
    static QHash<QString, std::shared_ptr<const std::vector<SymbolShape>>> drawings;
    const QMutexLocker lock(&mutex);
    auto& drawing = drawings[name];
    if (!drawing)
        drawing = std::make_shared<const std::vector<SymbolShape>>(readDrawing(name));
    return *drawing;
}

void drawSymbol(QPainter& painter, const QString& name, const QRectF& bounds, const QColor& color) {
    const double scale = std::min(bounds.width(), bounds.height()) / symbolGrid;
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.translate(bounds.center());
    painter.scale(scale, scale);
    painter.translate(-symbolGrid / 2.0, -symbolGrid / 2.0);
    for (const SymbolShape& shape : symbolShapes(name)) {
        if (shape.strokeWidth > 0.0)
            painter.strokePath(shape.path,
                               QPen(color, shape.strokeWidth, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
        else
            painter.fillPath(shape.path, color);
    }
    painter.restore();
}

} // namespace Fenwhirl
