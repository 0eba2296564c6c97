#include "Fenwhirl/Processes/ProcessListing.h"

#include <algorithm>
#include <cmath>
#include <ctime>
#include <gtest/gtest.h>
#include <limits>

namespace Fenwhirl {

using namespace Qt::StringLiterals;

namespace {

FoldContext contextOf(int processors) {
    FoldContext context;
    context.activeProcessors = processors;
    context.ownPid = 4242;
    context.ownBundlePath = u"/Applications/Mine.app"_s;
    context.localize = [](const QString& label) { return label; };
    return context;
}

ProcessSample fold(const QByteArray& listing, int processors = 1) {
    return groupProcesses(listing, contextOf(processors));
}

// The application of a listing that has only one.
AppLoad only(const QByteArray& listing, int processors = 1) {
    const ProcessSample sample = fold(listing, processors);
    EXPECT_EQ(sample.apps.size(), 1) << listing.constData();
    return sample.apps.value(0);
}

// Processor time of this thread, which excludes other tests that run meanwhile.
double threadSeconds() {
    timespec time = {};
    EXPECT_EQ(clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time), 0);
    return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_nsec) * 1e-9;
}

} // namespace

TEST(ProcessListing, ReadsALineWithSpacesInThePathAndADecimalComma) {
    const QString line = u"  123  12,5  2048 /Applications/Foo Bar.app/Contents/MacOS/Foo Bar"_s;
    const auto process = parseProcessLine(line);
    ASSERT_TRUE(process);
    EXPECT_EQ(process->pid, 123);
    EXPECT_EQ(process->percentOfCore, 12.5);
    EXPECT_EQ(process->residentKiB, 2048);
    EXPECT_EQ(process->path, u"/Applications/Foo Bar.app/Contents/MacOS/Foo Bar");

    const AppLoad app = only(line.toUtf8());
    EXPECT_EQ(app.id, u"/Applications/Foo Bar.app"_s);
    EXPECT_EQ(app.name, u"Foo Bar"_s);
    EXPECT_EQ(app.appPath, u"/Applications/Foo Bar.app"_s);
    EXPECT_EQ(app.cpu, 12.5);
    EXPECT_EQ(app.memoryMB, 2);
    EXPECT_EQ(app.pids, QList<qint32>{123});
    EXPECT_TRUE(app.canQuit);
}

TEST(ProcessListing, ChargesProcessesToTheApplicationThatIsFoundForThem) {
    FoldContext context = contextOf(1);
    context.applicationOf = [](qint32 pid, QStringView path) -> std::optional<FoundApplication> {
        if (pid < 10) {
            return FoundApplication{u"Browser"_s, u"/share/browser.desktop"_s, true};
        }
        if (pid < 20) {
            return FoundApplication{u"job.py"_s, QString(), true};
        }
        if (pid < 30) {
            return FoundApplication{u"Fans"_s, u"/share/com.Fenwhirl.app.desktop"_s, true};
        }
        EXPECT_FALSE(path.contains(u".app/"));
        return std::nullopt;
    };
    const ProcessSample sample = groupProcesses("1 5 1024 /usr/lib/browser/browser\n"
                                                "2 4 1024 /usr/lib/browser/tab\n"
                                                "11 3 0 /usr/bin/python3\n"
                                                "21 2 0 /usr/bin/Fenwhirl\n"
                                                "31 1.5 0 /usr/bin/tool\n"
                                                "3 1 0 /Applications/Mail.app/Mail\n",
                                                context);
    ASSERT_EQ(sample.apps.size(), 5);
    EXPECT_EQ(sample.apps[0].id, u"app:/share/browser.desktop"_s);
    EXPECT_EQ(sample.apps[0].name, u"Browser"_s);
    EXPECT_EQ(sample.apps[0].appPath, u"/share/browser.desktop"_s);
    EXPECT_EQ(sample.apps[0].cpu, 9);
    EXPECT_EQ(sample.apps[0].pids, (QList<qint32>{1, 2}));
    EXPECT_TRUE(sample.apps[0].canQuit);
    EXPECT_EQ(sample.apps[1].id, u"proc:job.py"_s);
    EXPECT_EQ(sample.apps[1].appPath, std::nullopt);
    EXPECT_FALSE(sample.apps[1].canQuit) << "no application";
    EXPECT_FALSE(sample.apps[2].canQuit) << "this program";
    EXPECT_EQ(sample.apps[3].id, u"proc:tool"_s);
    EXPECT_EQ(sample.apps[4].id, u"/Applications/Mail.app"_s) << "a bundle is a bundle";
}

TEST(ProcessListing, SkipsLinesThatAreNone) {
    for (const char* line : {
             "",
             " ",
             "12",
             "12 1.0",
             "12 1.0 100",
             "12 1.0 100 ",
             "12 1.0 100     ",
             "a 1.0 100 /x",
             "12 b 100 /x",
             "12 1.0 c /x",
             "- 1.0 100 /x",
             "1.5 1.0 100 /x",
             "0x10 1.0 100 /x",
             "2147483648 1.0 100 /x",
             "-2147483649 1.0 100 /x",
             "99999999999999999999 1.0 100 /x",
             "12 1.2.3 100 /x",
             "12 1,2,3 100 /x",
             "12\t1.0\t100\t/x",
             "12 \t1.0 100 /x",
             "12 1.0\t 100 /x",
             "\xd9\xa1\xd9\xa2 1.0 100 /x",
             "12 \xe2\x88\x92"
             "1.0 100 /x",
             "12 1e999 100 /x",
             "PID %CPU RSS COMM",
         }) {
        const ProcessSample sample = fold(line);
        EXPECT_TRUE(sample.apps.isEmpty()) << line;
        EXPECT_EQ(sample.totalCPU, 0) << line;
    }
}

TEST(ProcessListing, KeepsTheGoodLinesAroundABadOne) {
    const ProcessSample sample = fold("1 5.0 1024 /bin/a\ngarbage\n\n3 7.0 1024 /bin/b\n");
    ASSERT_EQ(sample.apps.size(), 2);
    EXPECT_EQ(sample.apps[0].name, u"b"_s);
    EXPECT_EQ(sample.apps[1].name, u"a"_s);
    EXPECT_EQ(sample.totalCPU, 12);
}

TEST(ProcessListing, AcceptsNumbersInAnyDecimalForm) {
    EXPECT_EQ(only("12 1e1 1.024e3 /x").cpu, 10);
    EXPECT_EQ(only("12 1e1 1.024e3 /x").memoryMB, 1);
    EXPECT_EQ(only("+12 +10 1024 /x").pids, QList<qint32>{12});
    EXPECT_EQ(only("2147483647 10 1024 /x").pids, QList<qint32>{2147483647});
}

TEST(ProcessListing, ChargesNestedBundlesToTheOutermost) {
    const AppLoad app =
        only("7 50 2048 /Applications/Foo.app/Contents/MacOS/Foo\n"
             "8 25 1024 /Applications/Foo.app/Contents/Frameworks/Bar.app/Contents/MacOS/Bar\n");
    EXPECT_EQ(app.id, u"/Applications/Foo.app"_s);
    EXPECT_EQ(app.name, u"Foo"_s);
    EXPECT_EQ(app.cpu, 75);
    EXPECT_EQ(app.memoryMB, 3);
    EXPECT_EQ(app.pids, (QList<qint32>{7, 8}));
}

TEST(ProcessListing, FindsBundlesByTheExactSuffixOnly) {
    EXPECT_FALSE(only("7 50 1 /Applications/Foo.APP/Contents/Foo").appPath);
    EXPECT_FALSE(only("7 50 1 /Applications/Foo.app").appPath);
    EXPECT_FALSE(only("7 50 1 /Applications/Foo.apple/Foo").appPath);
    EXPECT_EQ(only("7 50 1 Foo.app/Contents/Foo").id, u"Foo.app"_s);
    EXPECT_EQ(only("7 50 1 /.app/x").name, QString());
}

TEST(ProcessListing, CountsAgainstTheWholeMachine) {
    const AppLoad app = only("7 80.0 1024 /bin/busy", 8);
    EXPECT_EQ(app.cpu, 10);
}

TEST(ProcessListing, TakesAtLeastOneProcessor) {
    EXPECT_EQ(only("7 80.0 1024 /bin/busy", 0).cpu, 80);
    EXPECT_EQ(only("7 80.0 1024 /bin/busy", -3).cpu, 80);
}

TEST(ProcessListing, GroupsDaemonsOfOneLabel) {
    const AppLoad app = only("11 5 1024 /usr/libexec/mdworker_shared\n"
                             "12 5 1024 /usr/libexec/mds_stores\n"
                             "13 5 1024 mdworker_shared\n");
    EXPECT_EQ(app.id, u"proc:Recherche Spotlight"_s);
    EXPECT_EQ(app.name, u"Recherche Spotlight"_s);
    EXPECT_FALSE(app.appPath);
    EXPECT_FALSE(app.canQuit);
    EXPECT_EQ(app.pids, (QList<qint32>{11, 12, 13}));
}

TEST(ProcessListing, LocalizesTheLabelsOfSystemProcessesOnly) {
    FoldContext context = contextOf(1);
    context.localize = [](const QString& label) { return QStringLiteral("<") + label + QStringLiteral(">"); };
    const ProcessSample sample = groupProcesses("1 5 1 /sbin/WindowServer\n2 4 1 /bin/tool\n", context);
    ASSERT_EQ(sample.apps.size(), 2);
    EXPECT_EQ(sample.apps[0].name, u"<Affichage de l'écran>"_s);
    EXPECT_EQ(sample.apps[1].name, u"tool"_s);
}

TEST(ProcessListing, NamesOtherProcessesByTheLastComponentOfTheirPath) {
    EXPECT_EQ(only("7 5 1 /usr/bin/some tool").name, u"some tool"_s);
    EXPECT_EQ(only("7 5 1 (login)").name, u"(login)"_s);
    EXPECT_EQ(only("7 5 1 /usr/bin/").name, u"bin"_s);
    EXPECT_EQ(only("7 5 1 //").name, u"/"_s);
}

TEST(ProcessListing, DropsWhatLoadsTooLittleButCountsIt) {
    const ProcessSample sample = fold("1 0.19 1 /bin/a\n2 0.2 1 /bin/b\n");
    ASSERT_EQ(sample.apps.size(), 1);
    EXPECT_EQ(sample.apps[0].name, u"b"_s);
    EXPECT_DOUBLE_EQ(sample.totalCPU, 0.39);
}

TEST(ProcessListing, AppliesTheThresholdToTheWholeEntry) {
    EXPECT_DOUBLE_EQ(only("1 0.1 1 /bin/a\n2 0.15 1 /bin/a\n").cpu, 0.25);
}

TEST(ProcessListing, PublishesTheFourteenHeaviest) {
    QByteArray listing;
    for (int i = 1; i <= 20; ++i) {
        listing += QByteArray::number(i) + ' ' + QByteArray::number(i) + " 1024 /bin/tool" +
                   QByteArray::number(i) + '\n';
    }
    const ProcessSample sample = fold(listing);
    ASSERT_EQ(sample.apps.size(), 14);
    for (int i = 0; i < 14; ++i) {
        EXPECT_EQ(sample.apps[i].cpu, 20 - i);
    }
    EXPECT_EQ(sample.totalCPU, 210);
}

TEST(ProcessListing, KeepsTheOrderOfEqualLoads) {
    const ProcessSample sample = fold("1 5 1 /bin/c\n2 5 1 /bin/a\n3 6 1 /bin/z\n4 5 1 /bin/b\n");
    ASSERT_EQ(sample.apps.size(), 4);
    EXPECT_EQ(sample.apps[0].name, u"z"_s);
    EXPECT_EQ(sample.apps[1].name, u"c"_s);
    EXPECT_EQ(sample.apps[2].name, u"a"_s);
    EXPECT_EQ(sample.apps[3].name, u"b"_s);
}

TEST(ProcessListing, ProtectsTheSystemAndItself) {
    EXPECT_FALSE(only("7 5 1 /System/Applications/Music.app/Contents/MacOS/Music").canQuit);
    EXPECT_TRUE(only("7 5 1 /Systems/Music.app/Contents/MacOS/Music").canQuit);
    EXPECT_TRUE(only("7 5 1 /Users/a/System/Music.app/Contents/MacOS/Music").canQuit);
    EXPECT_FALSE(only("7 5 1 /opt/FENWHIRL copy.app/Contents/MacOS/x").canQuit);
    EXPECT_FALSE(only("7 5 1 /fenwhirl/Other.app/Contents/MacOS/x").canQuit);
    EXPECT_FALSE(only("7 5 1 /Applications/Mine.app/Contents/MacOS/x").canQuit);
    EXPECT_FALSE(only("4242 5 1 /Applications/Foo.app/Contents/MacOS/x").canQuit);
}

TEST(ProcessListing, ProtectsAnEntryWhoseLaterProcessIsItself) {
    const AppLoad app = only("7 5 1 /opt/Foo.app/x\n4242 5 1 /opt/Foo.app/y\n8 5 1 /opt/Foo.app/z\n");
    EXPECT_FALSE(app.canQuit);
    EXPECT_EQ(app.pids, (QList<qint32>{7, 4242, 8}));
}

TEST(ProcessListing, TakesAnEmptyOwnBundlePathForNone) {
    FoldContext context = contextOf(1);
    context.ownBundlePath.clear();
    EXPECT_TRUE(groupProcesses("7 5 1 /opt/Foo.app/x", context).apps.value(0).canQuit);
}

TEST(ProcessListing, LeavesOutSharesThatAreNoNumbers) {
    const ProcessSample sample = fold("1 5 1 /bin/a\n2 nan 1 /bin/b\n3 inf 1 /bin/c\n4 -inf 1 /bin/d\n"
                                      "5 9 1 /bin/e\n6 nan 1 /bin/f\n7 7 1 /bin/g\n");
    ASSERT_EQ(sample.apps.size(), 3);
    EXPECT_EQ(sample.apps[0].name, u"e"_s);
    EXPECT_EQ(sample.apps[1].name, u"g"_s);
    EXPECT_EQ(sample.apps[2].name, u"a"_s);
    EXPECT_TRUE(std::isnan(sample.totalCPU));
}

TEST(ProcessListing, ReplacesBytesThatAreNoText) {
    const AppLoad app = only("7 5 1 /bin/\xff\xfe");
    EXPECT_EQ(app.name, u"\ufffd\ufffd"_s);
}

TEST(ProcessListing, TakesForgedLinesForWhatTheySay) {
    // A line break in a file name: nothing distinguishes the forged line from a real one. The code that quits
    // applications must be careful instead.
    const ProcessSample sample =
        fold("7 5 1 /opt/Evil.app/x\n-1 90 1 /opt/Evil.app/y\n0 1 1 /opt/Evil.app/z\n");
    ASSERT_EQ(sample.apps.size(), 1);
    EXPECT_EQ(sample.apps[0].pids, (QList<qint32>{7, -1, 0}));
}

TEST(ProcessListing, KeepsNamesUnchanged) {
    const QByteArray name(100'000, 'x');
    EXPECT_EQ(only("7 5 1 /bin/" + name).name.size(), name.size());
    EXPECT_EQ(only("7 5 1 /bin/a\x01<b>\xe2\x80\xae").name, u"a\u0001<b>\u202e"_s);
}

TEST(ProcessListing, ReadsTwoHundredThousandLinesInASecond) {
    QByteArray listing;
    for (int i = 0; i < 200'000; ++i) {
        listing += QByteArray::number(i) + "  1,5 2048 /Applications/App " + QByteArray::number(i) +
                   ".app/Contents/MacOS/App\n";
    }
    [[maybe_unused]] double quickest = std::numeric_limits<double>::infinity();
    for (int round = 0; round < 3; ++round) {
        const double before = threadSeconds();
        const ProcessSample sample = fold(listing);
        quickest = std::min(quickest, threadSeconds() - before);
        EXPECT_EQ(sample.apps.size(), 14);
        EXPECT_DOUBLE_EQ(sample.totalCPU, 300'000);
    }
#if !defined(FENWHIRL_SANITIZED)
    EXPECT_LT(quickest, 1.0);
#endif
}

} // namespace Fenwhirl
