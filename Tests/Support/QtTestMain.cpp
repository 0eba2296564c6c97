#include <gmock/gmock.h>

#include <QCoreApplication>

int main(int argc, char** argv)
{
    testing::InitGoogleMock(&argc, argv);
    const QCoreApplication application(argc, argv);
    return RUN_ALL_TESTS();
}
