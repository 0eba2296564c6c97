// What the sidebar and the menus show for a page. Any thread.

#pragma once

#include "Fenwhirl/Monitoring/Page.h"

#include <QString>

#include <string_view>

namespace Fenwhirl {

// In the interface language.
[[nodiscard]] QString title(Page page);
// The name of a symbol, in the system's symbol set and in our own.
[[nodiscard]] std::string_view icon(Page page);

} // namespace Fenwhirl
