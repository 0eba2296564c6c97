// What Qt for Linux says of itself, but for what every Qt for a Mac has.
#pragma once

#include_next <QtGui/qtgui-config.h>

#undef QT_FEATURE_metal
#define QT_FEATURE_metal 1
