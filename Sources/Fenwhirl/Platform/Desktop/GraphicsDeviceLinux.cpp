#include "Fenwhirl/Platform/Desktop/GraphicsDevice.h"

namespace Fenwhirl {

void chooseGraphicsDevice(QQuickWindow& /*window*/) {}

} // namespace Fenwhirl
