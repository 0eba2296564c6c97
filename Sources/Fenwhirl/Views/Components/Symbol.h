#pragma once

#include <QColor>
#include <QQuickPaintedItem>
#include <QtQml/qqmlregistration.h>

// A symbol as an item: the system's of that name, or our drawing. QML type `Symbol`.
//
//   Symbol { name: "fan"; color: Theme.accent; width: 20; height: 20 }
//
// Drawn with QPainter at the resolution of the screen, so it looks the same with every scene graph backend. A
// name without a drawing shows nothing and leaves a warning with the place in the QML; an empty name is
// allowed. 18 x 18 unless sized; `bold` for a place where a text would be. Decoration: it is no node of the
// accessibility tree; its control carries the name.

namespace Fenwhirl {

class Symbol : public QQuickPaintedItem {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(QString name READ name WRITE setName NOTIFY nameChanged FINAL)
    Q_PROPERTY(QColor color READ color WRITE setColor NOTIFY colorChanged FINAL)
    Q_PROPERTY(bool bold READ isBold WRITE setBold NOTIFY boldChanged FINAL)

public:
    explicit Symbol(QQuickItem* parent = nullptr);

    [[nodiscard]] QString name() const { return m_name; }

    void setName(const QString& name);

    [[nodiscard]] QColor color() const { return m_color; }

    void setColor(const QColor& color);

    [[nodiscard]] bool isBold() const { return m_bold; }

    void setBold(bool bold);

    void paint(QPainter* painter) override;

Q_SIGNALS:
    void nameChanged();
    void colorChanged();
    void boldChanged();

private:
    QString m_name;
    QColor m_color;
    bool m_bold = false;
};

} // namespace Fenwhirl
