#include "Fenwhirl/Platform/Activity.h"

// Linux does not throttle the timers of hidden programs, so there is nothing to request.
struct Activity::Token {};

Activity::Activity(const QString& /*reason*/) {}

Activity::~Activity() = default;
