#include "Fenwhirl/Platform/Desktop/GraphicsDevice.h"

void chooseGraphicsDevice(QQuickWindow& /*window*/) {}
