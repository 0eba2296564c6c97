// Warnings of Qt and of the QML engine are failures.

#pragma once

#include <QString>
#include <QtGlobal>

#include <atomic>
#include <gtest/gtest.h>

namespace QtWarnings {

// What Qt says of the platform that the tests draw with, and not of the program.
inline bool isAllowed(const QString& text) {
    // The platform that draws into memory has no window manager to tell limits to, nothing to bring to the
    // front, and no mouse to keep.
    return text.startsWith(QStringLiteral("This plugin does not support "));
}

inline std::atomic<bool> isProvoked = false;
inline std::atomic<int> provoked = 0;

// From now on every other warning fails the test that is running, and is written as before. Call it when the
// application object is there.
inline void fail() {
    static QtMessageHandler usual = nullptr;
    usual =
        qInstallMessageHandler([](QtMsgType type, const QMessageLogContext& context, const QString& text) {
            if (type != QtDebugMsg && type != QtInfoMsg && !isAllowed(text)) {
                if (isProvoked)
                    ++provoked;
                else
                    ADD_FAILURE() << "Qt warns: " << text.toStdString();
            }
            if (usual != nullptr)
                usual(type, context, text);
        });
}

// While it lives the test provokes warnings, and fails when none came.
class Provoked {
public:
    Provoked() {
        provoked = 0;
        isProvoked = true;
    }

    ~Provoked() {
        isProvoked = false;
        EXPECT_GT(provoked, 0) << "Qt did not warn";
    }

    Provoked(const Provoked&) = delete;
    Provoked& operator=(const Provoked&) = delete;
};

} // namespace QtWarnings
