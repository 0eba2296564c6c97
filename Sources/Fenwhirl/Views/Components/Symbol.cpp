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
    if (name == m_name)
        return;
    m_name = name;
    if (!m_name.isEmpty() && symbolShapes(m_name).empty())
        qmlWarning(this) << "no drawing for the symbol \"" << m_name << "\"";
    update();
    Q_EMIT nameChanged();
}

void Symbol::setColor(const QColor& color) {
    if (color == m_color)
        return;
    m_color = color;
    update();
    Q_EMIT colorChanged();
}

void Symbol::setBold(bool bold) {
    if (bold == m_bold)
        return;
    m_bold = bold;
    update();
    Q_EMIT boldChanged();
}

void Symbol::paint(QPainter* painter) {
    const SymbolWeight weight = m_bold ? SymbolWeight::bold : SymbolWeight::regular;
    if (!drawSystemSymbol(*painter, m_name, boundingRect(), m_color, weight))
        drawSymbol(*painter, m_name, boundingRect(), m_color, weight);
}

} // namespace Fenwhirl
