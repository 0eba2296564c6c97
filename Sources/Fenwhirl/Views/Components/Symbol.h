#pragma once

#include <QColor>
#include <QQuickPaintedItem>
#include <QtQml/qqmlregistration.h>

// A symbol as an item: the system's symbol of that name, or our own drawing. QML type `Symbol`.
//
//   Symbol { name: "fan"; color: Theme.accent; width: 20; height: 20 }
//
// It is drawn with QPainter at the resolution of the screen, so it looks the same with every scene graph
// backend. A name without a drawing of ours logs a warning with the position in the QML file, and shows
// nothing unless the system has a symbol of that name; an empty name is allowed. It is 18 x 18 by default.
// `bold` draws it in the weight of bold text. It is decoration and not part of the accessibility tree; its
// control has the name.

namespace Fenwhirl {

class Symbol : public QQuickPaintedItem {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(QString name READ name WRITE setName NOTIFY nameChanged FINAL)
    Q_PROPERTY(QColor color READ color WRITE setColor NOTIFY colorChanged FINAL)
    Q_PROPERTY(bool bold READ isBold WRITE setBold NOTIFY boldChanged FINAL)

public:
    explicit Symbol(QQuickItem* parent = nullptr);

    [[nodiscard]] QString name() const { return name_; }

    void setName(const QString& name);

    [[nodiscard]] QColor color() const { return color_; }

    void setColor(const QColor& color);

    [[nodiscard]] bool isBold() const { return bold_; }

    void setBold(bool bold);

    void paint(QPainter* painter) override;

Q_SIGNALS:
    void nameChanged();
    void colorChanged();
    void boldChanged();

private:
    QString name_;
    QColor color_;
    bool bold_ = false;
};

} // namespace Fenwhirl
