#include "Fenwhirl/Platform/Toolkit/AtomicFile.h"

#include "Support/TemporaryFolder.h"

#include <csignal>
#include <filesystem>
#include <sys/resource.h>
#include <thread>
#include <vector>

namespace Fenwhirl {

namespace fs = std::filesystem;

namespace {

std::size_t entries(const TemporaryFolder& folder) {
    return static_cast<std::size_t>(std::distance(fs::directory_iterator(folder.path()), {}));
}

// A limit on file sizes stands in for a full disk.
bool replaceWithoutRoom(const std::string& path) {
    // Without this, the signal would end the process instead of making the write fail.
    std::signal(SIGXFSZ, SIG_IGN);
    rlimit small{};
    small.rlim_cur = 1000;
    small.rlim_max = 1000;
    setrlimit(RLIMIT_FSIZE, &small);
    return replaceFile(path, std::string(100'000, 'x'));
}

} // namespace

TEST(AtomicFile, WritesANewFileForTheUserAlone) {
    const TemporaryFolder folder;
    EXPECT_TRUE(replaceFile(folder.path("a"), std::string_view("x\0y", 3)));
    EXPECT_EQ(folder.read("a"), std::string("x\0y", 3));
    EXPECT_EQ(fs::status(folder.path("a")).permissions(), fs::perms(0600));
    EXPECT_EQ(entries(folder), 1U);
}

TEST(AtomicFile, ReplacesTheWholeFile) {
    const TemporaryFolder folder;
    folder.write("a", "something longer");
    EXPECT_TRUE(replaceFile(folder.path("a"), "new"));
    EXPECT_EQ(folder.read("a"), "new");
    EXPECT_TRUE(replaceFile(folder.path("a"), ""));
    EXPECT_EQ(folder.read("a"), "");
    EXPECT_EQ(entries(folder), 1U);
}

TEST(AtomicFile, FollowsALinkToTheFile) {
    const TemporaryFolder folder;
    folder.write("real", "old");
    fs::create_symlink("real", folder.path("link"));
    EXPECT_TRUE(replaceFile(folder.path("link"), "new"));
    EXPECT_TRUE(fs::is_symlink(folder.path("link")));
    EXPECT_EQ(folder.read("real"), "new");
}

TEST(AtomicFile, FailsWithoutAFolder) {
    const TemporaryFolder folder;
    EXPECT_FALSE(replaceFile(folder.path("missing/a"), "new"));
    folder.write("file", "");
    EXPECT_FALSE(replaceFile(folder.path("file/a"), "new"));
}

TEST(AtomicFile, FailsAndLeavesNothingWhereAFolderIsInTheWay) {
    const TemporaryFolder folder;
    fs::create_directory(folder.path("a"));
    EXPECT_FALSE(replaceFile(folder.path("a"), "new"));
    EXPECT_TRUE(fs::is_directory(folder.path("a")));
    EXPECT_EQ(entries(folder), 1U);
}

TEST(AtomicFile, KeepsTheOldFileWhenThereIsNoRoom) {
    const TemporaryFolder folder;
    folder.write("a", "old");
    EXPECT_EXIT(std::_Exit(replaceWithoutRoom(folder.path("a")) ? 1 : 0), testing::ExitedWithCode(0), "");
    EXPECT_EQ(folder.read("a"), "old");
    EXPECT_EQ(entries(folder), 1U);
}

TEST(AtomicFile, WritersOfOnePathLeaveTheContentsOfOneOfThem) {
    const TemporaryFolder folder;
    std::vector<std::thread> writers;
    for (const char letter : {'a', 'b', 'c', 'd'}) {
        writers.emplace_back([&, letter] {
            for (int i = 0; i < 50; ++i) {
                EXPECT_TRUE(replaceFile(folder.path("a"), std::string(5000, letter)));
            }
        });
    }
    for (std::thread& writer : writers) {
        writer.join();
    }
    const std::string text = folder.read("a");
    EXPECT_EQ(text, std::string(5000, text.at(0)));
    EXPECT_EQ(entries(folder), 1U);
}

} // namespace Fenwhirl
