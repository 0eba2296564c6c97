#include "SimulatedMac/Terminal.h"

#include <cerrno>
#include <cstddef>
#include <fcntl.h>
#include <sys/ioctl.h>
#include <unistd.h>

namespace simulated {

namespace {

constexpr std::string_view prompt = "> ";

// Reading from the terminal fails with EIO in a background job that ignores SIGTTIN, even for zero bytes. The
// terminal is opened with O_NONBLOCK, because another process that is reading from it would block this one.
bool isRefusedReading() {
    const int terminal = ::open("/dev/tty", O_RDONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC);
    char nothing = 0;
    const bool refused = terminal >= 0 && ::read(terminal, &nothing, 0) < 0 && errno == EIO;
    if (terminal >= 0) {
        ::close(terminal);
    }
    return refused;
}

// Whether this process belongs to the terminal's foreground job. Comparing process groups is not enough: in a
// PID namespace every group from outside has the number 0, so equal numbers prove nothing.
bool inForeground(int terminal) {
    return ::tcgetpgrp(terminal) == ::getpgrp() && !isRefusedReading();
}

std::size_t columns() {
    winsize size{};
    return ::ioctl(STDOUT_FILENO, TIOCGWINSZ, &size) == 0 && size.ws_col > 0 ? size.ws_col : 80;
}

// At most `width` characters of UTF-8 text, cut at the last gap between parts that fits.
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
        // The live line is painted again below the answer. Typing a command has already moved the cursor past
        // the prompt; clearing the present line is right whether or not one was typed.
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
        // Goes up to the live line and back, so that a half-typed command stays as it is.
        // The literals are split because the escape \x1b would otherwise include the digit after it.
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
            return; // the reader is gone; the simulation goes on for its clients
        }
        text.remove_prefix(static_cast<std::size_t>(written));
    }
}

} // namespace simulated
