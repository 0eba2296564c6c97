// A /run in which the built program meets no other simulation: a private one of this process, or else the
// computer's own, shared by taking turns.

#pragma once

#include <gtest/gtest.h>

// Where the kernel allows a new mount namespace, /run is a fresh file system in it; an ordinary user becomes
// root of a user namespace first. Most containers do not allow one. There, root takes turns with everything
// else that uses /run/fenwhirl: it holds a lock on the folder /run meanwhile (as
// Packaging/Linux/private-namespace does) and leaves nothing behind. Otherwise the tests are skipped.
class RunFolder : public testing::Environment {
public:
    void SetUp() override;
    void TearDown() override;

private:
    void takeTurn();

    int turn_ = -1; // descriptor of the locked folder
    bool inPlace_ = false;
};
