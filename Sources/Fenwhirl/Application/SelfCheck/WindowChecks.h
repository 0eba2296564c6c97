// What is seen of the program: the status item, the menus, and the panel with each of the ways in which it
// closes.
//
// The panel is the real one before models that know no Mac, no helper and no preferences but the language:
// nothing can be changed through it. It opens four times for a moment and is gone with this object.
//
// Threads: main thread; the checks run its event loop for a few seconds. They refer to this object.

#pragma once

#include "Fenwhirl/Application/SelfCheck/SelfCheck.h"
#include "Fenwhirl/Localization/AppLanguage.h"
#include "Fenwhirl/Platform/Desktop/StatusIcon.h"

#include <memory>
#include <vector>

namespace Fenwhirl {

class WindowChecks {
public:
    // From now on the program speaks this language. `symbol` draws the status item where the system does not.
    WindowChecks(AppLanguage language, SymbolPainter symbol);
    ~WindowChecks();
    WindowChecks(const WindowChecks&) = delete;
    WindowChecks& operator=(const WindowChecks&) = delete;

    [[nodiscard]] std::vector<SelfCheck> checks();

private:
    struct Private;

    std::unique_ptr<Private> d_;
};

} // namespace Fenwhirl
