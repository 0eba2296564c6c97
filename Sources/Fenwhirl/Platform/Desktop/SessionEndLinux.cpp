#include "Fenwhirl/Platform/Desktop/SessionEnd.h"

#include <utility>

namespace Fenwhirl {

SessionEnd::SessionEnd(std::function<void()> handler) : handler_(std::move(handler)) {}

SessionEnd::~SessionEnd() = default;

} // namespace Fenwhirl
