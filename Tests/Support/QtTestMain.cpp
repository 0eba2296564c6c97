// The main function of tests that need an event loop: any warning of Qt fails them.

#include "Support/QtWarnings.h"
#include "Support/TestLocale.h"

#include <QCoreApplication>

#include <gmock/gmock.h>

int main(int argc, char** argv) {
    testing::InitGoogleMock(&argc, argv);
    const QCoreApplication application(argc, argv);
    Fenwhirl::QtWarnings::fail();
    return Fenwhirl::adoptLocale() ? RUN_ALL_TESTS() : 1;
}
