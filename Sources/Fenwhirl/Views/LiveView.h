// The base of view models that follow the models only while some window is visible.
//
// A hidden program must cost next to nothing: it must not build texts or evaluate bindings for windows that
// nobody sees. A LiveView therefore listens to its models only while awake, and catches up in one step when
// it wakes.
//
// Threads: main thread only. Starts asleep.

#pragma once

#include <QObject>

namespace Fenwhirl {

class LiveView : public QObject {
    Q_OBJECT

public:
    using QObject::QObject;

    void setAwake(bool awake);

    [[nodiscard]] bool isAwake() const { return awake_; }

    // Rebuilds every text after a change of the interface language. Does nothing while asleep.
    void retranslate();

protected:
    // Connects to the models' signals.
    virtual void connectModels() = 0;
    // Disconnects what connectModels connected.
    virtual void disconnectModels() = 0;
    // Brings everything up to date. Cheap when nothing has changed.
    virtual void refresh() = 0;

private:
    bool awake_ = false;
};

} // namespace Fenwhirl
