#pragma once

#include "Fenwhirl/Views/Components/AccessibleNode.h"

#include <QQuickItem>
#include <QtQml/qqmlregistration.h>

// The node through which assistive technology reads and sets a slider or a stepper: QML type
// `AccessibleRange`.
//
// Put it inside the control, give it the range, `current` and the text of that value with its unit, and set the
// accessible role on it. AccessibleNode reads the properties named `value`, `minimumValue`, `maximumValue`,
// `stepSize` and `accessibleText`, and sets a value by writing `value`. The controls of this module never change their own value but request it from their owner.
// Writing `value` therefore changes nothing here: it emits `requested`, and `value` follows when `current`
// does.

namespace Fenwhirl {

class AccessibleRange : public QQuickItem {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(double current READ current WRITE setCurrent NOTIFY valueChanged FINAL)
    Q_PROPERTY(double value READ current WRITE request NOTIFY valueChanged FINAL)
    Q_PROPERTY(double minimumValue MEMBER minimum_ NOTIFY rangeChanged FINAL)
    Q_PROPERTY(double maximumValue MEMBER maximum_ NOTIFY rangeChanged FINAL)
    Q_PROPERTY(double stepSize MEMBER stepSize_ NOTIFY rangeChanged FINAL)
    Q_PROPERTY(QString accessibleText MEMBER text_ NOTIFY textChanged FINAL)
    // Whether a screen reader hears the text of a slider. If not, its unit belongs into the description.
    Q_PROPERTY(bool sliderTextHeard READ sliderTextHeard CONSTANT FINAL)

public:
    using QQuickItem::QQuickItem;

    [[nodiscard]] double current() const { return current_; }

    void setCurrent(double current) {
        if (current == current_) {
            return;
        }
        current_ = current;
        Q_EMIT valueChanged();
    }

    [[nodiscard]] static bool sliderTextHeard() { return isSliderTextHeard(); }

    void request(double value) { Q_EMIT requested(value); }

Q_SIGNALS:
    void valueChanged();
    void rangeChanged();
    void textChanged();
    void requested(double value);

private:
    double current_ = 0.0;
    double minimum_ = 0.0;
    double maximum_ = 0.0;
    double stepSize_ = 0.0;
    QString text_;
};

} // namespace Fenwhirl
