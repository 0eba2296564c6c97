// The name that the user gave this computer, as the system shows it. Main thread.

#pragma once

#include <QString>

namespace Fenwhirl {

// Empty when the computer has none.
[[nodiscard]] QString computerName();

} // namespace Fenwhirl
