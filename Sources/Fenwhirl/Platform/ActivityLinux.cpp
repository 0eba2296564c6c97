#include "Fenwhirl/Platform/Activity.h"

// Linux leaves the timers of hidden programs alone: there is nothing to hold.
struct Activity::Token {};

Activity::Activity(const QString& /*reason*/) {}

Activity::~Activity() = default;
