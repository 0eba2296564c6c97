// The name that the user gave to this computer, as the system shows it. Main thread.

#pragma once

#include <QString>

// Empty when the system has none.
[[nodiscard]] QString computerName();
