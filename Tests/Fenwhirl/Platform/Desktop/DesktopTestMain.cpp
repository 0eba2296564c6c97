#include "PrivateBus.h"

#include <QGuiApplication>

#include <gmock/gmock.h>

// Draws into memory, and talks to a session bus of its own on which nothing of the real desktop answers.
int main(int argc, char** argv) {
    testing::InitGoogleMock(&argc, argv);
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QGuiApplication application(argc, argv);
    const PrivateBus bus;
    return RUN_ALL_TESTS();
}
