#include "FenwhirlCore/Platform/SystemText.h"

#include <cstring>
#include <functional>
#include <gtest/gtest.h>

namespace Fenwhirl {

namespace {

// A system whose answers the test provides.
class FakeSystem final : public SystemText {
public:
    using Answer = std::function<bool(char* buffer, std::size_t& size)>;

    explicit FakeSystem(Answer answer) : answer_(std::move(answer)) {}

    bool value(std::string_view, char* buffer, std::size_t& size) const override {
        return answer_(buffer, size);
    }

    bool isTranslated() const override { return false; }

    std::string version() const override { return {}; }

private:
    Answer answer_;
};

std::string textOf(FakeSystem::Answer answer) {
    return sysctlString("hw.model", FakeSystem(std::move(answer)));
}

// The text of a system that answers both the size request and the read with the same bytes.
std::string textOfBytes(const std::string& bytes) {
    return textOf([&](char* buffer, std::size_t& size) {
        size = bytes.size();
        if (buffer != nullptr) {
            std::memcpy(buffer, bytes.data(), bytes.size());
        }
        return true;
    });
}

TEST(SystemText, EndsAtTheFirstNUL) {
    EXPECT_EQ(textOfBytes(std::string("Mac14,3\0", 8)), "Mac14,3");
    EXPECT_EQ(textOfBytes(std::string("Mac\0xyz", 7)), "Mac");
    EXPECT_EQ(textOfBytes(std::string("\0xyz", 4)), "");
}

TEST(SystemText, NeedsNoNUL) {
    EXPECT_EQ(textOfBytes("Mac14,3"), "Mac14,3");
}

TEST(SystemText, IsUnknownWhenMissingOrEmpty) {
    EXPECT_EQ(textOf([](char*, std::size_t&) { return false; }), "inconnu");
    EXPECT_EQ(textOfBytes(""), "inconnu");
}

TEST(SystemText, IsUnknownWhenItGrowsInBetween) {
    EXPECT_EQ(textOf([](char* buffer, std::size_t& size) {
                  size = buffer == nullptr ? 4 : 8;
                  return buffer == nullptr;
              }),
              "inconnu");
}

TEST(SystemText, MayShrinkInBetween) {
    EXPECT_EQ(textOf([](char* buffer, std::size_t& size) {
                  size = buffer == nullptr ? 8 : 2;
                  if (buffer != nullptr) {
                      std::memcpy(buffer, "Ma", 2);
                  }
                  return true;
              }),
              "Ma");
}

TEST(SystemText, OfThisSystemAnswersInTheSameWay) {
    const SystemText& system = thisSystem();
    EXPECT_FALSE(system.version().empty());
    EXPECT_EQ(system.version().find('\n'), std::string::npos);
    EXPECT_EQ(system.version().find('"'), std::string::npos);
    EXPECT_EQ(sysctlString("no.such.value", system), "inconnu");
    std::size_t size = 0;
    if (system.value("machdep.cpu.brand_string", nullptr, size)) {
        std::string tooSmall(size - 1, '\0');
        std::size_t offered = tooSmall.size();
        EXPECT_FALSE(system.value("machdep.cpu.brand_string", tooSmall.data(), offered));
        EXPECT_EQ(sysctlString("machdep.cpu.brand_string", system).find('\n'), std::string::npos);
    }
}

} // namespace

} // namespace Fenwhirl
