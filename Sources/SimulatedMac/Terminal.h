// Standard input and output of the simulation: commands in, answers out, and for a person at a terminal one
// quiet line that keeps itself up to date above the place where commands are typed.
//
// Without a terminal nothing is printed but answers. A simulation in the background of a shell neither paints
// nor reads until it comes to the foreground.

#pragma once

#include <string>
#include <string_view>

namespace simulated {

class Terminal {
public:
    // Stands between the parts of the live line.
    static constexpr std::string_view gap = "   ";

    Terminal();
    Terminal(const Terminal&) = delete;
    Terminal& operator=(const Terminal&) = delete;
    Terminal(Terminal&&) = delete;
    Terminal& operator=(Terminal&&) = delete;
    // Leaves the cursor on a line of its own.
    ~Terminal();

    // True when a person watches: the live line should be painted about once a second.
    [[nodiscard]] bool isLive() const { return live_; }

    // True when standard input may be read: it is no terminal, or this is the foreground job there.
    [[nodiscard]] static bool mayRead();

    // Prints a text of one or more lines; a missing line end is added.
    void print(std::string_view text);

    // Shows `line` in place of the last one; parts at its end that the terminal has no room for are left out.
    // Does nothing unless isLive().
    void paint(std::string_view line);

private:
    void write(std::string_view text);

    bool live_;
    bool painted_ = false; // the cursor stands on the prompt below a live line
};

} // namespace simulated
