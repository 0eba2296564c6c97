#include "Fenwhirl/Platform/Desktop/SystemSymbol.h"

namespace Fenwhirl {

QImage systemSymbol(const QString& /*name*/, double /*fontPixels*/, bool /*bold*/) {
    return {};
}

} // namespace Fenwhirl
