// The process listing as macOS makes it, tried with this system's tool, which accepts the same columns.

#include "Fenwhirl/Platform/Processes/ProcessListingTable.h"

#include "Support/TemporaryFolder.h"

#include <QList>

#include <chrono>
#include <gtest/gtest.h>
#include <thread>
#include <unistd.h>

namespace Fenwhirl {

using namespace std::chrono_literals;

TEST(ProcessListingTable, AsksForFourColumnsWithoutHeads) {
    const TemporaryFolder folder;
    const std::string seen = folder.path("seen");
    const std::string tool =
        folder.writeScript("ps", "printf '%s\\n' \"$@\" >" + seen + "; printf '%s' \"$LC_ALL $LANG\" >>" +
                                     seen + "; echo '  1  0,5  2048 /sbin/first one'");
    ProcessListingTable table({.tool = tool});
    EXPECT_EQ(table.listing(), QByteArray("  1  0,5  2048 /sbin/first one\n"));
    EXPECT_EQ(folder.read("seen"), "-A\n-o\npid=,pcpu=,rss=,comm=\nC C");
}

TEST(ProcessListingTable, ListsThisProcess) {
    ProcessListingTable table({});
    const auto listing = table.listing();
    ASSERT_TRUE(listing);
    const QByteArray pid = QByteArray::number(getpid());
    bool found = false;
    for (const QByteArray& line : listing->split('\n')) {
        const QList<QByteArray> fields = line.simplified().split(' ');
        if (fields.first() != pid) {
            continue;
        }
        found = true;
        ASSERT_GE(fields.size(), 4);
        bool isNumber = false;
        (void)fields[1].toDouble(&isNumber);
        EXPECT_TRUE(isNumber) << line.constData();
        EXPECT_GT(fields[2].toDouble(), 0.0);
    }
    EXPECT_TRUE(found);
}

TEST(ProcessListingTable, HasNoneWithoutTheToolNorOnceCancelled) {
    EXPECT_FALSE(ProcessListingTable({.tool = "/nonexistent/ps"}).listing());
    ProcessListingTable table({});
    table.cancel();
    EXPECT_FALSE(table.listing());
}

TEST(ProcessListingTable, AStuckToolIsKilled) {
    const TemporaryFolder folder;
    ProcessListingTable table({.tool = folder.writeScript("ps", "exec sleep 600"), .limit = 50ms});
    EXPECT_FALSE(table.listing());
}

TEST(ProcessListingTable, StartsOfProcessesDifferByTheMicrosecond) {
    EXPECT_EQ(startInMicroseconds(1'700'000'000, 999'999), 1'700'000'000'999'999U);
    EXPECT_EQ(startInMicroseconds(1'700'000'001, 0) - startInMicroseconds(1'700'000'000, 999'999), 1U);
}

} // namespace Fenwhirl
