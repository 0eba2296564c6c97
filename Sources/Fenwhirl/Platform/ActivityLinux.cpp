#include "Fenwhirl/Platform/Activity.h"

// Linux leaves the timers of hidden programs alone.
Activity::Activity(const QString& /*reason*/) {}

Activity::~Activity() = default;
