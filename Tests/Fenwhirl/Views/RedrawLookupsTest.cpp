// What translation costs per redraw: how many texts are looked up, and how long that takes compared with the
// time of a frame.
//
// The linker redirects every call from outside the localisation to the functions below (see CMakeLists.txt),
// so the program's real lookups are counted. The test measures processor time, which hardly depends on the
// machine's other work.

#include "Fenwhirl/Localization/Localizer.h"
#include "Stage.h"

#include <cstdio>
#include <ctime>
#include <gtest/gtest.h>
#include <string>

namespace {

QStringList asked; // since the last query

} // namespace

// The linker's names: __wrap_ functions replace the callers' targets, __real_ ones are the program's own.
QString realText(TextKey key) __asm__("__real__Z9localized7TextKey");
QString countedText(TextKey key) __asm__("__wrap__Z9localized7TextKey");
QString realTextOf(const QString& key) __asm__("__real__Z9localizedRK7QString");
QString countedTextOf(const QString& key) __asm__("__wrap__Z9localizedRK7QString");
std::optional<QString> realLookup(QStringView key) __asm__("__real__ZN9Localizer6lookupE11QStringView");
std::optional<QString> countedLookup(QStringView key) __asm__("__wrap__ZN9Localizer6lookupE11QStringView");

QString countedText(TextKey key) {
    asked.append(QStringView(key.french()).toString());
    return realText(key);
}

QString countedTextOf(const QString& key) {
    asked.append(key);
    return realTextOf(key);
}

std::optional<QString> countedLookup(QStringView key) {
    asked.append(key.toString());
    return realLookup(key);
}

namespace {

constexpr double frameMicroseconds = 1e6 / 60;

double processorMicroseconds() {
    timespec now = {};
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &now);
    return static_cast<double>(now.tv_sec) * 1e6 + static_cast<double>(now.tv_nsec) * 1e-3;
}

// Repeats these lookups and returns their average duration.
double microsecondsOf(const QStringList& keys) {
    constexpr int rounds = 20;
    const double begin = processorMicroseconds();
    for (int round = 0; round < rounds; ++round) {
        for (const QString& key : keys) {
            static_cast<void>(realLookup(key));
        }
    }
    return (processorMicroseconds() - begin) / rounds;
}

// Prints and checks the lookups since `asked` was cleared, and returns their number.
qsizetype tell(Stage& stage, const char* what) {
    static_cast<void>(stage.window().grabWindow());
    const QStringList keys = std::exchange(asked, {});
    const double microseconds = microsecondsOf(keys);
    std::printf("%-8s %-28s %4d lookups %8.1f us %6.2f %% of a frame\n",
                std::string(rawValue(stage.monitor().language())).c_str(), what,
                static_cast<int>(keys.size()), microseconds, 100 * microseconds / frameMicroseconds);
    EXPECT_LT(microseconds, frameMicroseconds) << what;
    return keys.size();
}

void fill(Stage& stage) {
    for (const char* const key :
         {"TCXC", "TCGC", "TG0P", "TM0P", "TH0A", "TB0T", "Ts0P", "Th0H", "TaLP", "Tp01"}) {
        stage.world.smc.setNumber(key, "sp78", 40);
    }
    stage.start();
    FanSetting setting;
    setting.mode = FanModeKind::sensor;
    stage.monitor().setSetting(0, setting);
    setting.mode = FanModeKind::constant;
    stage.monitor().setSetting(1, setting);
}

TEST(RedrawLookups, TakeNoVisibleTime) {
    for (const AppLanguage language : {AppLanguage::de, AppLanguage::srCyrl}) {
        Stage stage;
        fill(stage);
        stage.monitor().setLanguage(language);
        stage.show();
        for (const Page page : allPages) {
            stage.monitor().setSelectedPage(page == Page::dashboard ? Page::settings : Page::dashboard);
            asked.clear();
            stage.monitor().setSelectedPage(page);
            const std::string title(rawValue(page));
            EXPECT_GT(tell(stage, (title + ", opened").c_str()), 0);

            // Change everything that can change.
            const double celsius = 50 + static_cast<double>(page);
            stage.world.setCelsius(celsius);
            for (const char* const key : {"TCXC", "TG0P", "TM0P", "TH0A"}) {
                stage.world.smc.setNumber(key, "sp78", celsius - 3);
            }
            stage.world.setFan(0, 2000 + celsius);
            stage.world.setFan(1, 3000 + celsius);
            stage.poll();
            EXPECT_LT(tell(stage, (title + ", after a poll").c_str()), 100);

            stage.window().update();
            EXPECT_EQ(tell(stage, (title + ", drawn again").c_str()), 0);
        }
        stage.monitor().setLanguage(AppLanguage::fr);
    }
}

} // namespace
