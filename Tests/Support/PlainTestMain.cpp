#include "Support/TestLocale.h"

#include <gmock/gmock.h>

// Like every program that uses Qt, the tests adopt the locale of their environment: nothing that a machine
// reads or writes may depend on it.
int main(int argc, char** argv) {
    testing::InitGoogleMock(&argc, argv);
    return Fenwhirl::adoptLocale() ? RUN_ALL_TESTS() : 1;
}
