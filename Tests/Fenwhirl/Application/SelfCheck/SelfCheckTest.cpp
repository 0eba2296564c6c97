#include "Fenwhirl/Application/SelfCheck/SelfCheck.h"

#include <QStringList>

#include <gmock/gmock.h>

namespace Fenwhirl {

using testing::ElementsAre;

namespace {

struct Table {
    QStringList lines;
    int linesThatFit = 1000;
    int checksBeforeTheEnd = 1000;

    SelfCheckCounts run(const std::vector<SelfCheck>& checks) {
        return runSelfChecks(
            checks,
            [this](const QString& line) {
                lines.append(line);
                return lines.size() <= linesThatFit;
            },
            [this] { return checksBeforeTheEnd-- == 0; });
    }
};

SelfCheck check(const char* name, const CheckResult& result) {
    return {QString::fromLatin1(name), [result] { return result; }};
}

const CheckResult good = CheckResult::pass(QStringLiteral("yes"));
const CheckResult bad = CheckResult::fail(QStringLiteral("no"));
const CheckResult unknown = CheckResult::skip(QStringLiteral("who knows"));

} // namespace

TEST(SelfCheck, EachCheckIsALineInTheirOrder) {
    Table table;
    const SelfCheckCounts counts =
        table.run({check("one", good), check("two", bad), check("three", unknown)});
    EXPECT_THAT(table.lines, ElementsAre(QStringLiteral("pass  one                     yes"),
                                         QStringLiteral("FAIL  two                     no"),
                                         QStringLiteral("skip  three                   who knows")));
    EXPECT_EQ(selfCheckSummary(counts), QStringLiteral("1 passed, 1 failed, 1 skipped"));
}

TEST(SelfCheck, OnlyAFailureIsBad) {
    EXPECT_TRUE(Table().run({}).isGood());
    EXPECT_TRUE(Table().run({check("one", good), check("two", unknown)}).isGood());
    EXPECT_FALSE(Table().run({check("one", good), check("two", bad), check("three", good)}).isGood());
}

TEST(SelfCheck, ALineIsPrintedBeforeTheNextCheckRuns) {
    Table table;
    qsizetype printedBefore = -1;
    static_cast<void>(table.run({check("one", good), {QStringLiteral("two"), [&] {
                                                          printedBefore = table.lines.size();
                                                          return good;
                                                      }}}));
    EXPECT_EQ(printedBefore, 1);
}

TEST(SelfCheck, EndsBetweenTwoChecksWhenAsked) {
    Table table;
    table.checksBeforeTheEnd = 1;
    const SelfCheckCounts counts = table.run({check("one", good), check("two", good)});
    EXPECT_EQ(table.lines.size(), 1);
    EXPECT_FALSE(counts.isGood());
    EXPECT_TRUE(selfCheckSummary(counts).contains(QStringLiteral("interrupted")));
}

TEST(SelfCheck, EndsWhenNobodyReads) {
    Table table;
    table.linesThatFit = 1;
    const SelfCheckCounts counts = table.run({check("one", good), check("two", good), check("three", good)});
    EXPECT_EQ(table.lines.size(), 2);
    EXPECT_FALSE(counts.isGood());
}

TEST(SelfCheck, NothingInADetailLeavesItsLineOrSteersTheTerminal) {
    const QString line = selfCheckLine(QStringLiteral("path"),
                                       CheckResult::pass(QStringLiteral("a\nb\x1b[2J\u202ec\u2028d é")));
    EXPECT_EQ(line, QStringLiteral("pass  path                    a?b?[2J?c?d é"));
}

TEST(SelfCheck, TimesAreOfOneFormUnderEveryLocale) {
    EXPECT_EQ(millisecondsText(std::chrono::microseconds(1'234'567)), QStringLiteral("1234.57 ms"));
}

} // namespace Fenwhirl
