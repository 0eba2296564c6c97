#include "Support/TestLocale.h"

#include <gmock/gmock.h>

// As every program around Qt does, these adopt the locale of their environment: nothing that a machine reads
// or writes may follow it.
int main(int argc, char** argv) {
    testing::InitGoogleMock(&argc, argv);
    return adoptLocale() ? RUN_ALL_TESTS() : 1;
}
