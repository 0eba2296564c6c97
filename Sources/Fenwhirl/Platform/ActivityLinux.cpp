#include "Fenwhirl/Platform/Activity.h"

namespace Fenwhirl {

// Linux does not throttle the timers of hidden programs, so there is nothing to request.
struct Activity::Token {};

Activity::Activity(const QString& /*reason*/) {}

Activity::~Activity() = default;

} // namespace Fenwhirl
