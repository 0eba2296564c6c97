#pragma once

#include "Fenwhirl/Views/Components/CurveShape.h"

#include <QColor>
#include <QQuickPaintedItem>
#include <QVariantList>
#include <QtQml/qqmlregistration.h>

// The drawing of a fan's temperature curve, without numbers and handles: QML type `FanCurve`, used by
// CurveEditor.qml.
//
// The x axis runs from 20 to 105 °C, the y axis from the fan's minimum to its maximum. Lines and the dot of
// the current temperature reach beyond the plot, so the item keeps `inset` points free on every side and its
// owner gives it negative margins of the same size. Changes are not animated.

namespace Fenwhirl {

class FanCurve : public QQuickPaintedItem {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(double startTemp READ startTemp WRITE setStartTemp NOTIFY shapeChanged FINAL)
    Q_PROPERTY(double maxTemp READ maxTemp WRITE setMaxTemp NOTIFY shapeChanged FINAL)
    Q_PROPERTY(bool limited READ isLimited WRITE setLimited NOTIFY shapeChanged FINAL)
    // NaN if heat protection is off.
    Q_PROPERTY(double alertAt READ alertAt WRITE setAlertAt NOTIFY shapeChanged FINAL)
    // NaN if the temperature is unknown.
    Q_PROPERTY(double now MEMBER m_now NOTIFY nowChanged FINAL)
    // Whether heat protection drives the fan.
    Q_PROPERTY(bool protecting MEMBER m_protecting NOTIFY nowChanged FINAL)
    Q_PROPERTY(bool maximumWithoutEffect READ maximumIsWithoutEffect NOTIFY shapeChanged FINAL)
    Q_PROPERTY(double inset MEMBER m_inset NOTIFY styleChanged FINAL)
    Q_PROPERTY(QColor plotColor MEMBER m_plotColor NOTIFY styleChanged FINAL)
    Q_PROPERTY(QColor gridColor MEMBER m_gridColor NOTIFY styleChanged FINAL)
    Q_PROPERTY(QColor lineColor MEMBER m_lineColor NOTIFY styleChanged FINAL)
    Q_PROPERTY(QColor fillColor MEMBER m_fillColor NOTIFY styleChanged FINAL)
    Q_PROPERTY(QColor alertColor MEMBER m_alertColor NOTIFY styleChanged FINAL)
    Q_PROPERTY(QColor mutedColor MEMBER m_mutedColor NOTIFY styleChanged FINAL)
    // The colour of hairlines and hatching, which are drawn with a part of its opacity.
    Q_PROPERTY(QColor inkColor MEMBER m_inkColor NOTIFY styleChanged FINAL)

public:
    explicit FanCurve(QQuickItem* parent = nullptr);

    [[nodiscard]] double startTemp() const { return m_shape.startTemp; }

    [[nodiscard]] double maxTemp() const { return m_shape.maxTemp; }

    [[nodiscard]] bool isLimited() const { return m_shape.isLimited; }

    [[nodiscard]] double alertAt() const { return m_shape.alertAt; }

    [[nodiscard]] bool maximumIsWithoutEffect() const { return isMaximumWithoutEffect(m_shape); }

    void setStartTemp(double celsius) { set(m_shape.startTemp, celsius); }

    void setMaxTemp(double celsius) { set(m_shape.maxTemp, celsius); }

    void setLimited(bool limited) { set(m_shape.isLimited, limited); }

    void setAlertAt(double celsius) { set(m_shape.alertAt, celsius); }

    // Converts a temperature to an x coordinate in a plot of that width, and back.
    Q_INVOKABLE [[nodiscard]] double placeOf(double celsius, double plotWidth) const;
    Q_INVOKABLE [[nodiscard]] double celsiusAt(double place, double plotWidth) const;
    // The numbers below a plot of that width, as from axisNumbers.
    Q_INVOKABLE [[nodiscard]] QVariantList numbers(bool limited, double alertAt, double plotWidth,
                                                   double least) const;

    void paint(QPainter* painter) override;

Q_SIGNALS:
    void shapeChanged();
    void nowChanged();
    void styleChanged();

private:
    template <typename Value>
    void set(Value& field, Value value) {
        if (field == value)
            return;
        field = value;
        Q_EMIT shapeChanged();
    }

    struct Plot;
    void drawBackground(QPainter& painter, const Plot& plot) const;
    void drawLines(QPainter& painter, const Plot& plot) const;
    void drawNow(QPainter& painter, const Plot& plot) const;

    CurveShape m_shape;
    double m_now = 0.0;
    bool m_protecting = false;
    double m_inset = 0.0;
    QColor m_plotColor;
    QColor m_gridColor;
    QColor m_lineColor;
    QColor m_fillColor;
    QColor m_alertColor;
    QColor m_mutedColor;
    QColor m_inkColor;
};

} // namespace Fenwhirl
