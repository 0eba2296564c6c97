// Turns warnings of Qt and of the QML engine into test failures.

#pragma once

#include <QString>
#include <QtGlobal>

#include <atomic>
#include <gtest/gtest.h>

namespace Fenwhirl::QtWarnings {

// Whether the warning is about the platform plugin that the tests draw with, not about the program.
inline bool isAllowed(const QString& text) {
    // The platform that draws into memory has no window manager to pass size limits to, and can neither raise
    // a window nor grab the mouse.
    return text.startsWith(QStringLiteral("This plugin does not support "));
}

inline std::atomic<bool> areWarningsExpected = false;
inline std::atomic<int> provoked = 0;

// From now on every other warning fails the running test; it is still printed. Call this once the application
// object exists.
inline void fail() {
    static QtMessageHandler usual = nullptr;
    usual =
        qInstallMessageHandler([](QtMsgType type, const QMessageLogContext& context, const QString& text) {
            if (type != QtDebugMsg && type != QtInfoMsg && !isAllowed(text)) {
                if (areWarningsExpected) {
                    ++provoked;
                } else {
                    ADD_FAILURE() << "Qt warns: " << text.toStdString();
                }
            }
            if (usual != nullptr) {
                usual(type, context, text);
            }
        });
}

// During its lifetime the test provokes warnings; it fails when none came.
class ExpectedWarnings {
public:
    ExpectedWarnings() {
        provoked = 0;
        areWarningsExpected = true;
    }

    ~ExpectedWarnings() {
        areWarningsExpected = false;
        EXPECT_GT(provoked, 0) << "Qt did not warn";
    }

    ExpectedWarnings(const ExpectedWarnings&) = delete;
    ExpectedWarnings& operator=(const ExpectedWarnings&) = delete;
};

} // namespace Fenwhirl::QtWarnings
