#include "Fenwhirl/Processes/ApplicationLookup.h"

std::unique_ptr<ApplicationLookup> ApplicationLookup::create() {
    return nullptr;
}
