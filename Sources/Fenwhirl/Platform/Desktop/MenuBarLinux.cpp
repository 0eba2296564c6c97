#include "Fenwhirl/Platform/Desktop/MenuBar.h"

namespace Fenwhirl {

namespace {

class NoMenuBar final : public MenuBar {
public:
    void show(const QList<Menu>& /*menus*/) override {}
};

} // namespace

std::unique_ptr<MenuBar> MenuBar::create() {
    return std::make_unique<NoMenuBar>();
}

} // namespace Fenwhirl
