#include "Fenwhirl/Platform/Desktop/SingleInstance.h"

#include <QDeadlineTimer>
#include <QThread>

namespace Fenwhirl {

SingleInstance::Start SingleInstance::start(const std::function<bool()>& tellFirst,
                                            std::chrono::milliseconds limit) {
    const QDeadlineTimer deadline(limit);
    for (;;) {
        if (becomeFirst()) {
            return Start::first;
        }
        if (tellFirst()) {
            return Start::handedOver;
        }
        if (deadline.hasExpired()) {
            return Start::unanswered;
        }
        QThread::msleep(static_cast<unsigned long>(pause.count()));
    }
}

} // namespace Fenwhirl
