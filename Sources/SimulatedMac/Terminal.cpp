#include "SimulatedMac/Terminal.h"

#include <cerrno>
#include <cstddef>
#include <fcntl.h>
#include <sys/ioctl.h>
#include <unistd.h>

namespace simulated {

namespace {

constexpr std::string_view prompt = "> ";

// A job in the background that ignores SIGTTIN is refused reading, even of nothing. Asked without waiting,
// because whoever else reads from the terminal would be waited for.
bool isRefusedReading() {
    const int terminal = ::open("/dev/tty", O_RDONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC);
    char nothing = 0;
    const bool refused = terminal >= 0 && ::read(terminal, &nothing, 0) < 0 && errno == EIO;
    if (terminal >= 0) {
        ::close(terminal);
    }
    return refused;
}

// Whether this process belongs to the terminal's foreground job. In a namespace of process numbers every
// group from outside has the number 0, so that equal numbers prove nothing.
bool inForeground(int terminal) {
    return ::tcgetpgrp(terminal) == ::getpgrp() && !isRefusedReading();
}

std::size_t columns() {
    winsize size{};
    return ::ioctl(STDOUT_FILENO, TIOCGWINSZ, &size) == 0 && size.ws_col > 0 ? size.ws_col : 80;
}

// At most `width` characters of UTF-8 text: as many of its parts, which have wide gaps between them, as fit
// whole.
std::string_view cut(std::string_view text, std::size_t width) {
    std::size_t characters = 0;
    for (std::size_t i = 0; i < text.size(); ++i) {
        const bool begins = (static_cast<unsigned char>(text[i]) & 0xC0) != 0x80;
        if (begins && characters++ == width) {
            const std::size_t gap = text.rfind(Terminal::gap, i);
            return text.substr(0, gap == std::string_view::npos ? i : gap);
        }
    }
    return text;
}

} // namespace

Terminal::Terminal() : live_(::isatty(STDOUT_FILENO) == 1) {}

Terminal::~Terminal() {
    if (painted_) {
        write("\r\x1b[K");
    }
}

bool Terminal::mayRead() {
    return ::isatty(STDIN_FILENO) != 1 || inForeground(STDIN_FILENO);
}

void Terminal::print(std::string_view text) {
    std::string whole;
    if (painted_) {
        // The live line is painted anew below the answer. A command that was typed has moved the cursor past
        // the prompt already; clearing the present line suits both cases.
        whole = "\r\x1b[K";
        painted_ = false;
    }
    whole += text;
    if (!whole.ends_with('\n')) {
        whole += '\n';
    }
    write(whole);
}

void Terminal::paint(std::string_view line) {
    if (!live_ || !inForeground(STDOUT_FILENO)) {
        return;
    }
    const std::string_view shown = cut(line, columns() - 1);
    std::string text;
    if (painted_) {
        // Up to the live line and back, so that half-typed commands stay as they are.
        text = "\x1b"
               "7\x1b[A\r" +
               std::string(shown) +
               "\x1b[K\x1b"
               "8";
    } else {
        text = std::string(shown) + "\x1b[K\n" + std::string(prompt);
        painted_ = true;
    }
    write(text);
}

void Terminal::write(std::string_view text) {
    while (!text.empty()) {
        const ssize_t written = ::write(STDOUT_FILENO, text.data(), text.size());
        if (written < 0) {
            if (errno == EINTR) {
                continue;
            }
            return; // nobody listens any more; the simulation goes on for its clients
        }
        text.remove_prefix(static_cast<std::size_t>(written));
    }
}

} // namespace simulated
