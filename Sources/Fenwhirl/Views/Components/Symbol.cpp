#include "Fenwhirl/Views/Components/Symbol.h"

#include "Fenwhirl/Views/Components/SymbolShapes.h"
#include "Fenwhirl/Views/Components/SystemSymbols.h"

#include <QQmlInfo>

namespace Fenwhirl {

Symbol::Symbol(QQuickItem* parent) : QQuickPaintedItem(parent) {
    setAntialiasing(true);
    setImplicitSize(18.0, 18.0);
}

void Symbol::setName(const QString& name) {
    if (name == name_) {
        return;
    }
    name_ = name;
    if (!name_.isEmpty() && symbolShapes(name_).empty()) {
        qmlWarning(this) << "no drawing for the symbol \"" << name_ << "\"";
    }
    update();
    Q_EMIT nameChanged();
}

void Symbol::setColor(const QColor& color) {
    if (color == color_) {
        return;
    }
    color_ = color;
    update();
    Q_EMIT colorChanged();
}

void Symbol::setBold(bool bold) {
    if (bold == bold_) {
        return;
    }
    bold_ = bold;
    update();
    Q_EMIT boldChanged();
}

void Symbol::paint(QPainter* painter) {
    const SymbolWeight weight = bold_ ? SymbolWeight::bold : SymbolWeight::regular;
    if (!drawSystemSymbol(*painter, name_, boundingRect(), color_, weight)) {
        drawSymbol(*painter, name_, boundingRect(), color_, weight);
    }
}

} // namespace Fenwhirl
