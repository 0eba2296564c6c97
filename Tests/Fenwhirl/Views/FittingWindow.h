// Checks for windows that follow their content. Main thread.

#pragma once

#include <QEvent>
#include <QObject>
#include <QWindow>

#include <gtest/gtest.h>

namespace Fenwhirl {

// During its lifetime the test fails whenever the window gets a size outside its own limits. A window manager
// that knows the limits set before would refuse such a size.
class SizeLimitsCheck : public QObject {
public:
    explicit SizeLimitsCheck(QWindow& window) : window_(window) { window.installEventFilter(this); }

    ~SizeLimitsCheck() override { window_.removeEventFilter(this); }

    SizeLimitsCheck(const SizeLimitsCheck&) = delete;
    SizeLimitsCheck& operator=(const SizeLimitsCheck&) = delete;

    bool eventFilter(QObject* /*watched*/, QEvent* event) override {
        if (event->type() == QEvent::Resize) {
            const QSize size = window_.size();
            EXPECT_EQ(size, size.expandedTo(window_.minimumSize()).boundedTo(window_.maximumSize()))
                << size.width() << " x " << size.height();
        }
        return false;
    }

private:
    QWindow& window_;
};

// Expects the window to have this size and to allow no other.
inline void expectFixedSize(const QWindow& window, QSize size) {
    EXPECT_EQ(window.size(), size) << window.width() << " x " << window.height();
    EXPECT_EQ(window.minimumSize(), size) << window.minimumWidth() << " x " << window.minimumHeight();
    EXPECT_EQ(window.maximumSize(), size) << window.maximumWidth() << " x " << window.maximumHeight();
}

} // namespace Fenwhirl
