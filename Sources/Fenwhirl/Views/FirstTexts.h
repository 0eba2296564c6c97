#pragma once

#include <QFont>

#include <array>

// The fonts of the first picture of the main window, prepared while the window is still being loaded.
//
// Opening a font in one size and reading the rules by which it joins letters takes nearly a millisecond, and the first
// picture needs eight. When the program starts with the window, the engine's thread loads the files of the window, and
// the main thread would only wait for it. Main thread.

namespace Fenwhirl {

struct FirstTextStyle {
    int pixelSize; // as designed
    QFont::Weight weight;

    bool operator==(const FirstTextStyle&) const = default;
};

inline constexpr std::array firstTextStyles = {
    FirstTextStyle{.pixelSize = 11, .weight = QFont::Normal},
    FirstTextStyle{.pixelSize = 12, .weight = QFont::Normal},
    FirstTextStyle{.pixelSize = 13, .weight = QFont::Normal},
    FirstTextStyle{.pixelSize = 14, .weight = QFont::Normal},
    FirstTextStyle{.pixelSize = 14, .weight = QFont::DemiBold},
    FirstTextStyle{.pixelSize = 15, .weight = QFont::DemiBold},
    FirstTextStyle{.pixelSize = 22, .weight = QFont::Bold},
    FirstTextStyle{.pixelSize = 26, .weight = QFont::Bold},
};

// Opens these fonts as the application's font, larger by `textScale` (as in Theme), for the letters of the current
// language. Qt keeps them for the texts that follow.
void prepareFirstTexts(double textScale);

} // namespace Fenwhirl
