// The base class of the tests on the fake Mac. It opens an autorelease pool, and fails the test at the end
// when objects, observers or the like were left behind, or when a rule of FakeMac was violated.

#pragma once

#import "Frameworks/FakeMac.h"
#include "ObjectiveC/Runtime.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace Fenwhirl {

class MacTest : public testing::Test {
protected:
    void SetUp() override;
    void TearDown() override;

private:
    void* pool_ = nullptr;
    std::map<std::string, std::size_t> before_;
};

// Calls `action` as the program would before its event loop runs. No autorelease pool is open at that time,
// so an object that is autoreleased fails the test: on a Mac it would never be released.
template <typename Action>
auto beforeTheEventLoop(Action action) {
    const Runtime::WithoutPools none;
    return action();
}

} // namespace Fenwhirl
