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
    Q_PROPERTY(double now MEMBER now_ NOTIFY nowChanged FINAL)
    // Whether heat protection drives the fan.
    Q_PROPERTY(bool protecting MEMBER protecting_ NOTIFY nowChanged FINAL)
    Q_PROPERTY(bool maximumWithoutEffect READ maximumIsWithoutEffect NOTIFY shapeChanged FINAL)
    Q_PROPERTY(double inset MEMBER inset_ NOTIFY styleChanged FINAL)
    Q_PROPERTY(QColor plotColor MEMBER plotColor_ NOTIFY styleChanged FINAL)
    Q_PROPERTY(QColor gridColor MEMBER gridColor_ NOTIFY styleChanged FINAL)
    Q_PROPERTY(QColor lineColor MEMBER lineColor_ NOTIFY styleChanged FINAL)
    Q_PROPERTY(QColor fillColor MEMBER fillColor_ NOTIFY styleChanged FINAL)
    Q_PROPERTY(QColor alertColor MEMBER alertColor_ NOTIFY styleChanged FINAL)
    Q_PROPERTY(QColor mutedColor MEMBER mutedColor_ NOTIFY styleChanged FINAL)
    // The colour of hairlines and hatching, which are drawn with a part of its opacity.
    Q_PROPERTY(QColor inkColor MEMBER inkColor_ NOTIFY styleChanged FINAL)

public:
    explicit FanCurve(QQuickItem* parent = nullptr);

    [[nodiscard]] double startTemp() const { return shape_.startTemp; }

    [[nodiscard]] double maxTemp() const { return shape_.maxTemp; }

    [[nodiscard]] bool isLimited() const { return shape_.isLimited; }

    [[nodiscard]] double alertAt() const { return shape_.alertAt; }

    [[nodiscard]] bool maximumIsWithoutEffect() const { return isMaximumWithoutEffect(shape_); }

    void setStartTemp(double celsius) { set(shape_.startTemp, celsius); }

    void setMaxTemp(double celsius) { set(shape_.maxTemp, celsius); }

    void setLimited(bool limited) { set(shape_.isLimited, limited); }

    void setAlertAt(double celsius) { set(shape_.alertAt, celsius); }

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
        if (field == value) {
            return;
        }
        field = value;
        Q_EMIT shapeChanged();
    }

    struct Plot;
    void drawBackground(QPainter& painter, const Plot& plot) const;
    void drawLines(QPainter& painter, const Plot& plot) const;
    void drawNow(QPainter& painter, const Plot& plot) const;

    CurveShape shape_;
    double now_ = 0.0;
    bool protecting_ = false;
    double inset_ = 0.0;
    QColor plotColor_;
    QColor gridColor_;
    QColor lineColor_;
    QColor fillColor_;
    QColor alertColor_;
    QColor mutedColor_;
    QColor inkColor_;
};

} // namespace Fenwhirl
