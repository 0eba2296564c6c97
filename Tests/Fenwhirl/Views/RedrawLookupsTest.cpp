// What translation costs per redraw: how many texts are looked up, and how long that takes compared with the
// time of a frame. It measures processor time, which hardly depends on the machine's other work.

#include "Fenwhirl/Localization/Localizer.h"
#include "Stage.h"

#include <cstdio>
#include <ctime>
#include <gtest/gtest.h>
#include <string>

namespace Fenwhirl {

namespace {

QStringList asked; // since the last query

void count(QStringView key) {
    asked.append(key.toString());
}

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
            static_cast<void>(Localizer::lookup(key));
        }
    }
    return (processorMicroseconds() - begin) / rounds;
}

// Draws the window, prints and checks the lookups since `asked` was cleared, and returns their number.
qsizetype tell(Stage& stage, const char* what) {
    Localizer::setLookupObserver(count);
    static_cast<void>(stage.window().grabWindow());
    Localizer::setLookupObserver(nullptr); // the measurement makes lookups of its own
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
        stage.windowSize = {1040, 680}; // a larger window takes longer to draw and looks up the same texts
        fill(stage);
        stage.monitor().setLanguage(language);
        stage.show();
        for (const Page page : allPages) {
            stage.monitor().setSelectedPage(page == Page::dashboard ? Page::settings : Page::dashboard);
            Localizer::setLookupObserver(count);
            stage.monitor().setSelectedPage(page);
            const std::string title(rawValue(page));
            EXPECT_GT(tell(stage, (title + ", opened").c_str()), 0);

            // Change everything that can change.
            Localizer::setLookupObserver(count);
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

} // namespace Fenwhirl
