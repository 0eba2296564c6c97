#include "Fenwhirl/Platform/Desktop/SessionEnd.h"

SessionEnd::SessionEnd(std::function<void()> /*handler*/) {}

SessionEnd::~SessionEnd() = default;
