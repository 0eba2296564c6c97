#include "Fenwhirl/Helper.h"

int HelperMode::run(std::span<char* const> arguments) {
    return arguments.empty() ? usageError : smcUnavailable;
}
