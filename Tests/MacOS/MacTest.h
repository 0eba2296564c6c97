// What every test on the fake Mac has: a pool, and at the end a look at what was left behind.

#pragma once

#import "Frameworks/FakeMac.h"
#include "ObjectiveC/Runtime.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

class MacTest : public testing::Test {
protected:
    void SetUp() override;
    void TearDown() override;

private:
    void* pool_ = nullptr;
    std::map<std::string, std::size_t> before_;
};

// What the program does before its event loop runs: there is no pool then, and what would never be let go is
// a failure.
template <typename Action>
auto beforeTheEventLoop(Action action) {
    const Runtime::WithoutPools none;
    return action();
}
