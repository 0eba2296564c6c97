// A /run for the built program that it meets no other simulation in: of this process alone, or else the
// computer's, in turn.

#pragma once

#include <gtest/gtest.h>

// Where the kernel makes a mount namespace, /run is a new one in it; an ordinary user becomes root of a user
// namespace for that. In most containers it makes none: there root takes turns with whatever else uses
// /run/fenwhirl, which holds a lock of the folder /run meanwhile (as Packaging/Linux/private-namespace does),
// and leaves nothing behind. Elsewhere the tests are skipped.
class RunFolder : public testing::Environment {
public:
    void SetUp() override;
    void TearDown() override;

private:
    void takeTurn();

    int turn_ = -1; // the locked folder
    bool inPlace_ = false;
};
