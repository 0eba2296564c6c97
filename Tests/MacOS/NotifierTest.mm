#include "Fenwhirl/Platform/Notifier.h"

#include "Frameworks/SystemCalls.h"
#import "MacTest.h"
#include "Support/TemporaryFolder.h"

#include <cerrno>
#include <fcntl.h>
#include <poll.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

namespace Fenwhirl {

namespace {

// Reads what is written into a named pipe until the writer closes it. Empty when nobody writes.
std::string readPipe(const std::string& path) {
    const int pipe = open(path.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC);
    std::string text;
    pollfd look = {pipe, POLLIN, 0};
    constexpr int patience = 30'000; // milliseconds
    while (poll(&look, 1, patience) > 0) {
        char buffer[512];
        const ssize_t got = read(pipe, buffer, sizeof buffer);
        if (got <= 0) {
            break;
        }
        text.append(buffer, static_cast<std::size_t>(got));
    }
    close(pipe);
    return text;
}

class NotifierTest : public MacTest {
protected:
    void TearDown() override {
        FakeMac::system() = {};
        MacTest::TearDown();
    }

    const TemporaryFolder folder;
};

} // namespace

TEST_F(NotifierTest, StartsTheSystemsScriptToolAndLeavesItToItself) {
    const std::string pipe = folder.path("pipe");
    ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0);
    FakeMac::system().tools["/usr/bin/osascript"] =
        folder.writeScript("osascript", "output=$(readlink /proc/$$/fd/1 /proc/$$/fd/2)\n"
                                        "printf '%s\\n' \"$#\" \"$@\" $output >'" +
                                            pipe + "'");
    beforeTheEventLoop([] {
        Notifier::send(QStringLiteral("Fenwhirl"), QStringLiteral("Ton Mac chauffe : \"93\" degrés."));
    });
    EXPECT_EQ(waitpid(-1, nullptr, WNOHANG), -1);
    EXPECT_EQ(errno, ECHILD) << "the tool must not be a child of the program";
    EXPECT_EQ(readPipe(pipe), "2\n-e\ndisplay notification \"Ton Mac chauffe : '93' degrés.\" with title "
                              "\"Fenwhirl\"\n/dev/null\n/dev/null\n");
}

} // namespace Fenwhirl
