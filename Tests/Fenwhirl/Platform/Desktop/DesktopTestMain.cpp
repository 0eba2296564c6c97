#include "PrivateBus.h"
#include "Support/QtWarnings.h"

#include <QGuiApplication>

#include <gmock/gmock.h>

// Draws into memory, and talks to a session bus of its own on which nothing of the real desktop answers.
int main(int argc, char** argv) {
    testing::InitGoogleMock(&argc, argv);
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QGuiApplication application(argc, argv);
    const PrivateBus bus;
    QtWarnings::fail();
    return RUN_ALL_TESTS();
}
