#include "PrivateBus.h"
#include "Support/QtWarnings.h"

#include <QDBusConnection>
#include <QGuiApplication>

#include <cstdlib>
#include <gmock/gmock.h>
#include <iostream>
#include <string_view>

namespace Fenwhirl {

namespace {

// Acts as another program on a test's bus: owns Fenwhirl's name there until its standard input ends.
int holdName(int argc, char** argv) {
    const QCoreApplication application(argc, argv);
    QDBusConnection bus =
        QDBusConnection::connectToBus(QString::fromLocal8Bit(argv[2]), QStringLiteral("holder"));
    if (!bus.registerService(QStringLiteral("com.fenwhirl.app"))) {
        return EXIT_FAILURE;
    }
    std::cout << "holding" << std::endl;
    std::cin.get();
    return EXIT_SUCCESS;
}

} // namespace

} // namespace Fenwhirl

// Draws into memory, and uses a private session bus on which nothing of the real desktop answers.
int main(int argc, char** argv) {
    if (argc == 3 && std::string_view(argv[1]) == "--hold-name") {
        return Fenwhirl::holdName(argc, argv);
    }
    testing::InitGoogleMock(&argc, argv);
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QGuiApplication application(argc, argv);
    const Fenwhirl::PrivateBus bus;
    Fenwhirl::QtWarnings::fail();
    return RUN_ALL_TESTS();
}
