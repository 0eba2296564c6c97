#include "Fenwhirl/Platform/Preferences/FilePreferencesLinux.h"
#include "Support/TemporaryFolder.h"
#include "Support/Volume.h"

#include <QJsonDocument>
#include <QJsonObject>

#include <chrono>
#include <csignal>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <memory>
#include <random>
#include <sys/file.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>
#include <vector>

namespace Fenwhirl {

namespace fs = std::filesystem;

namespace {

const QString theme = QStringLiteral("theme");
const QString alerts = QStringLiteral("alertsEnabled");
const QString threshold = QStringLiteral("warmThreshold");
const QString settings = QStringLiteral("settings");
const QString lastCheck = QStringLiteral("brenor.update.lastCheck");

// Uses a file system in memory where there is one: a kill leaves the same torn files there, and the tests
// need not wait for a disk.
std::string memoryFolder() {
    return fs::is_directory("/dev/shm") ? "/dev/shm" : fs::temp_directory_path().string();
}

class FilePreferencesTest : public testing::Test {
protected:
    [[nodiscard]] std::string path() const { return folder.path("config/app/preferences.json"); }

    [[nodiscard]] std::unique_ptr<PreferencesStore> open() const {
        return std::make_unique<FilePreferences>(path());
    }

    TemporaryFolder folder;
};

} // namespace

TEST_F(FilePreferencesTest, RemembersEveryTypeOverARestart) {
    {
        const auto store = open();
        store->setText(theme, QStringLiteral("light"));
        store->setBoolean(alerts, false);
        store->setNumber(threshold, 77.5);
        store->setData(settings, "{}");
        store->setNumber(lastCheck, 1763700000.25);
    }
    const auto store = open();
    EXPECT_EQ(store->text(theme), QStringLiteral("light"));
    EXPECT_EQ(store->boolean(alerts), false);
    EXPECT_EQ(store->number(threshold), 77.5);
    EXPECT_EQ(store->data(settings), QByteArray("{}"));
    EXPECT_EQ(store->number(lastCheck), 1763700000.25);
}

TEST_F(FilePreferencesTest, TextsAndDataAreReadOnlyAsWhatTheyAre) {
    const auto store = open();
    store->setText(theme, QStringLiteral("1"));
    store->setBoolean(alerts, true);
    store->setNumber(threshold, 1);
    store->setData(settings, "1");
    for (const QString& key : {alerts, threshold, settings}) {
        EXPECT_EQ(store->text(key), std::nullopt);
        EXPECT_TRUE(store->contains(key));
    }
    for (const QString& key : {theme, alerts, threshold}) {
        EXPECT_EQ(store->data(key), std::nullopt);
    }
}

TEST_F(FilePreferencesTest, NumbersAndBooleansAreReadFromWhateverIsStored) {
    const auto store = open();
    store->setText(theme, QStringLiteral("80.5"));
    store->setBoolean(alerts, true);
    store->setNumber(threshold, 0);
    store->setData(settings, "1");
    EXPECT_EQ(store->number(theme), 80.5);
    EXPECT_EQ(store->number(alerts), 1);
    EXPECT_EQ(store->number(settings), 0);
    EXPECT_EQ(store->number(lastCheck), std::nullopt);
    EXPECT_EQ(store->boolean(theme), false);
    EXPECT_EQ(store->boolean(threshold), false);
    EXPECT_EQ(store->boolean(settings), false);
    EXPECT_EQ(store->boolean(lastCheck), std::nullopt);
}

TEST_F(FilePreferencesTest, RemovedKeyIsGoneForGood) {
    {
        const auto store = open();
        store->setText(theme, QStringLiteral("light"));
        store->remove(theme);
        store->remove(alerts); // never existed
        EXPECT_FALSE(store->contains(theme));
    }
    EXPECT_FALSE(open()->contains(theme));
}

TEST_F(FilePreferencesTest, NothingIsWrittenBeforeTheFirstChange) {
    const auto store = open();
    EXPECT_FALSE(store->contains(theme));
    EXPECT_FALSE(fs::exists(folder.path("config")));
}

TEST_F(FilePreferencesTest, ValueThatIsThereAlreadyIsNotWrittenAgain) {
    const auto store = open();
    store->setNumber(threshold, 80);
    const auto before = fs::last_write_time(path());

    struct stat first {};

    ::stat(path().c_str(), &first);
    store->setNumber(threshold, 80);

    struct stat second {};

    ::stat(path().c_str(), &second);
    EXPECT_EQ(first.st_ino, second.st_ino);
    EXPECT_EQ(before, fs::last_write_time(path()));
}

TEST_F(FilePreferencesTest, BrokenFileIsEmptyAndStaysUntilTheNextChange) {
    const std::vector<std::string> brokenTexts = {"",
                                                  "{",
                                                  "null",
                                                  "[1]",
                                                  std::string(1000, '\0'),
                                                  "\xff\xfe{\0}\0",
                                                  "{\"theme\":\"light\"} trailing",
                                                  std::string(200'000, '{'),
                                                  std::string(5 << 20, ' ') + "{}"};
    for (const std::string& broken : brokenTexts) {
        fs::create_directories(folder.path("config/app"));
        folder.write("config/app/preferences.json", broken);
        const auto store = open();
        EXPECT_FALSE(store->contains(theme));
        EXPECT_EQ(folder.read("config/app/preferences.json"), broken);
        store->setText(theme, QStringLiteral("light"));
        EXPECT_EQ(open()->text(theme), QStringLiteral("light"));
    }
}

TEST_F(FilePreferencesTest, ValuesOfUnknownFormSurviveASave) {
    const QByteArray text =
        R"({"newer":[1,{"a":null}],"theme":{"light":"a","dark":"b"},"warmThreshold":null})";
    fs::create_directories(fs::path(path()).parent_path());
    (void)folder.write("config/app/preferences.json", text.toStdString());
    const auto store = open();
    EXPECT_FALSE(store->contains(theme));
    EXPECT_EQ(store->text(theme), std::nullopt);
    EXPECT_EQ(store->number(threshold), std::nullopt);
    EXPECT_EQ(store->boolean(threshold), std::nullopt);
    store->setBoolean(alerts, true);
    const auto written = [this] {
        const std::string now = folder.read("config/app/preferences.json");
        return QJsonDocument::fromJson(QByteArray::fromStdString(now)).object();
    };
    QJsonObject expected = QJsonDocument::fromJson(text).object();
    expected.insert(alerts, true);
    EXPECT_EQ(written(), expected);
    // Only a key that is set or removed loses its unknown value.
    store->setText(theme, QStringLiteral("dark"));
    store->remove(threshold);
    expected.insert(theme, QStringLiteral("dark"));
    expected.remove(threshold);
    EXPECT_EQ(written(), expected);
}

TEST_F(FilePreferencesTest, GiantFileIsNotReadAndGoesWithTheNextChange) {
    open()->setNumber(threshold, 70);
    fs::resize_file(path(), std::uintmax_t{1} << 30U); // sparse, so it takes no disk space
    const auto store = open();
    EXPECT_FALSE(store->contains(threshold));
    EXPECT_EQ(fs::file_size(path()), std::uintmax_t{1} << 30U);
    store->setText(theme, QStringLiteral("light"));
    EXPECT_LT(fs::file_size(path()), 1000U);
    EXPECT_EQ(open()->text(theme), QStringLiteral("light"));
}

TEST_F(FilePreferencesTest, WhatIsNoFileReadsAsEmptyAndDoesNotBlock) {
    fs::create_directories(path());
    const auto overFolder = open();
    overFolder->setText(theme, QStringLiteral("light"));
    EXPECT_EQ(overFolder->text(theme), QStringLiteral("light")); // it keeps the value in memory at least
    EXPECT_TRUE(fs::is_directory(path()));
    fs::remove(path());
    ASSERT_EQ(mkfifo(path().c_str(), 0600), 0);
    EXPECT_FALSE(open()->contains(theme));
}

TEST_F(FilePreferencesTest, ChangeThatCouldNotBeWrittenGoesOutWithTheNext) {
    fs::create_directories(folder.path("config/app"));
    const auto store = open();
    fs::create_directory(path());
    store->setText(theme, QStringLiteral("light"));
    fs::remove(path());
    store->setBoolean(alerts, false);
    const auto reopened = open();
    EXPECT_EQ(reopened->text(theme), QStringLiteral("light"));
    EXPECT_EQ(reopened->boolean(alerts), false);
}

TEST_F(FilePreferencesTest, TwoProcessesKeepEachOthersKeys) {
    const auto first = open();
    const auto second = open();
    first->setText(theme, QStringLiteral("light"));
    second->setNumber(threshold, 70);
    first->setBoolean(alerts, false);
    const auto reopened = open();
    EXPECT_EQ(reopened->text(theme), QStringLiteral("light"));
    EXPECT_EQ(reopened->number(threshold), 70);
    EXPECT_EQ(reopened->boolean(alerts), false);
}

TEST_F(FilePreferencesTest, LockThatIsHeldByAnotherDoesNotHoldUpSaving) {
    const auto store = open();
    store->setNumber(threshold, 70);
    const int lock = ::open((path() + ".lock").c_str(), O_RDWR | O_CLOEXEC);
    ASSERT_EQ(::flock(lock, LOCK_EX), 0);
    store->setNumber(threshold, 71);
    EXPECT_EQ(open()->number(threshold), 71);
    ::close(lock);
}

TEST_F(FilePreferencesTest, LeftoversOfKilledWritersAreRemoved) {
    open()->setNumber(threshold, 70);
    folder.write("config/app/preferences.json.123-0.new", "half");
    EXPECT_EQ(open()->number(threshold), 70);
    EXPECT_FALSE(fs::exists(folder.path("config/app/preferences.json.123-0.new")));
    EXPECT_TRUE(fs::exists(path()));
}

TEST_F(FilePreferencesTest, IsUsableFromAnyThread) {
    const auto store = open();
    std::vector<std::thread> threads;
    for (int thread = 0; thread < 4; ++thread) {
        threads.emplace_back([&store, thread] {
            const QString key = QString::number(thread);
            for (int i = 0; i <= 25; ++i) {
                store->setNumber(key, i);
                EXPECT_EQ(store->number(key), i);
            }
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    const auto reopened = open();
    for (int thread = 0; thread < 4; ++thread) {
        EXPECT_EQ(reopened->number(QString::number(thread)), 25);
    }
}

TEST(FilePreferencesKilled, WritersAtTheSameTimeLeaveAWholeFile) {
    std::string place = memoryFolder() + "/fenwhirl-test-XXXXXX";
    ASSERT_NE(mkdtemp(place.data()), nullptr);
    const std::string path = place + "/preferences.json";
    FilePreferences(path).setText(theme, QStringLiteral("light"));
    std::vector<pid_t> writers;
    for (int writer = 0; writer < 3; ++writer) {
        const pid_t child = fork();
        ASSERT_GE(child, 0);
        if (child == 0) {
            FilePreferences store(path);
            for (double next = 1;; ++next) {
                store.setData(settings, QByteArray(20'000, static_cast<char>('a' + writer)));
                store.setNumber(QString::number(writer), next);
            }
        }
        writers.push_back(child);
    }
    for (int look = 0; look < 500; ++look) {
        const FilePreferences store(path);
        ASSERT_EQ(store.text(theme), QStringLiteral("light")) << look;
        const QByteArray blob = store.data(settings).value_or(QByteArray());
        ASSERT_EQ(blob, QByteArray(blob.size(), blob.isEmpty() ? 'a' : blob.at(0))) << look;
    }
    for (const pid_t writer : writers) {
        kill(writer, SIGKILL);
        ASSERT_EQ(waitpid(writer, nullptr, 0), writer);
    }
    fs::remove_all(place);
}

TEST(FilePreferencesKilled, AtAnyMomentTheFileIsWhole) {
    std::string place = memoryFolder() + "/fenwhirl-test-XXXXXX";
    ASSERT_NE(mkdtemp(place.data()), nullptr);
    const std::string path = place + "/preferences.json";
    std::mt19937 generator(7);
    int longest = 3000; // microseconds
    int advanced = 0;
    double last = 0;
    const int kills = rounds(500, 5000);
    for (int run = 0; run < kills; ++run) {
        const pid_t writer = fork();
        ASSERT_GE(writer, 0);
        if (writer == 0) {
            FilePreferences store(path);
            for (double next = store.number(threshold).value_or(0) + 1;; ++next) {
                // Large, so that writing takes a while, and of a single repeated byte, so that a mixture of
                // two writes shows.
                store.setData(settings, QByteArray(20'000, static_cast<char>('a' + run % 26)));
                store.setNumber(threshold, next);
            }
        }
        // Not a wait for a condition: the test varies the moment of the kill.
        std::uniform_int_distribution<int> microseconds(0, longest);
        std::this_thread::sleep_for(std::chrono::microseconds(microseconds(generator)));
        kill(writer, SIGKILL);
        ASSERT_EQ(waitpid(writer, nullptr, 0), writer);
        if (!fs::exists(path)) {
            longest += longest / 4; // killed before its first change
            continue;
        }
        std::ifstream file(path, std::ios::binary);
        const std::string text((std::istreambuf_iterator<char>(file)), std::istreambuf_iterator<char>());
        ASSERT_TRUE(decodePreferences(QByteArray::fromStdString(text))) << run;
        const FilePreferences store(path);
        const QByteArray blob = store.data(settings).value_or(QByteArray());
        ASSERT_EQ(blob, QByteArray(blob.size(), blob.isEmpty() ? 'a' : blob.at(0)));
        ASSERT_TRUE(blob.size() == 20'000);
        const double now = store.number(threshold).value_or(0);
        ASSERT_GE(now, last);
        advanced += now > last ? 1 : 0;
        // Aims at as many kills before the first change as after it, however slow the computer is.
        longest += now > last ? -longest / 8 : longest / 8;
        last = now;
    }
    EXPECT_GT(advanced, kills / 10); // otherwise the kills came too early to prove anything
    fs::remove_all(place);
}

} // namespace Fenwhirl
