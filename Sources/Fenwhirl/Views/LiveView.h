// Follows the models while something of it can be seen, and rests while nothing can.
//
// A hidden program must cost next to nothing: no texts are made and no bindings run for windows that nobody
// looks at. So every object that prepares something for QML listens to its models only while awake, and is
// brought up to date in one go when it wakes.
//
// Threads: main thread only. Starts asleep.

#pragma once

#include <QObject>

class LiveView : public QObject {
    Q_OBJECT

public:
    using QObject::QObject;

    void setAwake(bool awake);

    [[nodiscard]] bool isAwake() const { return awake_; }

    // Makes every text again, after a change of the interface language. Does nothing while asleep.
    void retranslate();

protected:
    // Connects to the models' signals.
    virtual void connectModels() = 0;
    // Drops what connectModels connected.
    virtual void disconnectModels() = 0;
    // Brings everything up to date; cheap where nothing changed.
    virtual void refresh() = 0;

private:
    bool awake_ = false;
};
