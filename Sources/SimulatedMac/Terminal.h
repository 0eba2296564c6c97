// Standard input and output of the simulation. Commands come in and answers go out; on a terminal, a live
// line above the prompt shows the present state.
//
// Without a terminal, only answers are printed. A simulation in the background of a shell neither paints nor
// reads until it comes to the foreground.

#pragma once

#include <string>
#include <string_view>

namespace simulated {

class Terminal {
public:
    // Separates the parts of the live line.
    static constexpr std::string_view gap = "   ";

    Terminal();
    Terminal(const Terminal&) = delete;
    Terminal& operator=(const Terminal&) = delete;
    Terminal(Terminal&&) = delete;
    Terminal& operator=(Terminal&&) = delete;
    // Leaves the cursor on a line of its own.
    ~Terminal();

    // True when output goes to a terminal: the live line should be painted about once a second.
    [[nodiscard]] bool isLive() const { return live_; }

    // True when standard input may be read: it is not a terminal, or this process is in its foreground job.
    [[nodiscard]] static bool mayRead();

    // Prints a text of one or more lines; a missing line end is added.
    void print(std::string_view text);

    // Shows `line` in place of the last one. Parts at its end that do not fit the terminal's width are left
    // out. Does nothing unless isLive().
    void paint(std::string_view line);

private:
    void write(std::string_view text);

    bool live_;
    bool painted_ = false; // the cursor is on the prompt below a live line
};

} // namespace simulated
