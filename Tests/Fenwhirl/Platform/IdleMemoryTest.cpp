// Which memory an idle program gives back, and that the program keeps working afterwards.

#include "Fenwhirl/Platform/IdleMemory.h"

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <gtest/gtest.h>
#include <map>
#include <memory>
#include <string>
#include <sys/mman.h>
#include <thread>
#include <unistd.h>
#include <vector>

namespace Fenwhirl {

namespace {

// A field of /proc/self/status in kilobytes, such as "RssFile".
long kilobytes(const std::string& kind) {
    std::ifstream status("/proc/self/status");
    for (std::string line; std::getline(status, line);) {
        if (line.rfind(kind + ":", 0) == 0) {
            return std::strtol(line.c_str() + kind.size() + 1, nullptr, 10);
        }
    }
    return -1;
}

// Written once, by the program or by the dynamic linker: these pages exist only in memory.
int written = 1;
int (*const relocated)(const char*, const char*) = std::strcmp;
const std::map<std::string, int> table = {{"fan", 2}, {"sensor", 62}};

struct Shape {
    virtual ~Shape() = default;

    [[nodiscard]] virtual int corners() const { return 0; }
};

struct Square : Shape {
    [[nodiscard]] int corners() const override { return 4; }
};

TEST(IdleMemory, ReadFromFilesIsGivenBack) {
    const long before = kilobytes("RssFile");
    ASSERT_GT(before, 0);
    releaseIdleMemory();
    EXPECT_LT(kilobytes("RssFile"), before * 3 / 4);
}

TEST(IdleMemory, OfTheHeapIsGivenBackWhereItIsFree) {
#ifdef FENWHIRL_SANITIZED
    GTEST_SKIP() << "sanitizers have a heap of their own";
#endif
    std::vector<std::unique_ptr<char[]>> blocks;
    constexpr std::size_t size = 4096;
    for (int i = 0; i < 4000; ++i) {
        blocks.push_back(std::make_unique<char[]>(size));
        blocks.back()[size / 2] = 1;
    }
    auto last = std::make_unique<char[]>(size); // keeps the heap from shrinking on its own
    blocks.clear();
    const long before = kilobytes("RssAnon");
    releaseIdleMemory();
    EXPECT_LT(kilobytes("RssAnon"), before - 8000);
    EXPECT_EQ(last[0], 0);
}

TEST(IdleMemory, WhatWasWrittenStays) {
    written = 42;
    const std::unique_ptr<Shape> shape = std::make_unique<Square>();
    releaseIdleMemory();
    EXPECT_EQ(written, 42);
    EXPECT_EQ(relocated("a", "a"), 0);
    EXPECT_EQ(table.at("sensor"), 62);
    EXPECT_EQ(shape->corners(), 4);
}

// In a read-only segment, as code is, and large enough to contain a whole page.
constexpr std::size_t roomForAPage = 65536;
alignas(4096) const char constant[roomForAPage] = {1};

TEST(IdleMemory, CodeThatWasWrittenIntoAtRunTimeStays) {
    const auto page = static_cast<std::size_t>(sysconf(_SC_PAGESIZE));
    ASSERT_LE(2 * page, roomForAPage);
    const auto offset = (page - reinterpret_cast<std::uintptr_t>(constant) % page) % page;
    volatile char* const place = const_cast<char*>(constant + offset);
    ASSERT_EQ(mprotect(const_cast<char*>(place), page, PROT_READ | PROT_WRITE), 0);
    place[10] = 7;
    ASSERT_EQ(mprotect(const_cast<char*>(place), page, PROT_READ), 0);
    releaseIdleMemory();
    EXPECT_EQ(place[10], 7);
}

TEST(IdleMemory, CanBeGivenBackWhileOthersWork) {
    std::atomic<bool> ends = false;
    std::atomic<long> rounds = 0;
    std::thread worker([&] {
        std::map<int, std::string> numbers;
        while (!ends) {
            for (int i = 0; i < 100; ++i) {
                numbers[i] = std::to_string(i * rounds);
            }
            ++rounds;
        }
    });
    for (int i = 0; i < 50; ++i) {
        const long seen = rounds;
        releaseIdleMemory();
        while (rounds == seen) {
            std::this_thread::yield();
        }
    }
    ends = true;
    worker.join();
    EXPECT_GE(rounds, 50);
}

} // namespace

} // namespace Fenwhirl
