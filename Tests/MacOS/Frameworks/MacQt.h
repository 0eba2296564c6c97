// Force-included before everything else in the macOS sources. Declares what Qt's headers offer on macOS only
// (the functions are in MacQt.mm), and replaces @available.

#pragma once

#ifdef __cplusplus

// Q_OS_DARWIN makes these two headers declare the conversions to and from Apple's types.
#    include <QtCore/qglobal.h>

#    define Q_OS_DARWIN
#    include <QtCore/qbytearray.h>
#    include <QtCore/qstring.h>
#    undef Q_OS_DARWIN

// Qt declares the Metal functions of this class for the system up to version 6.8, and for the feature since then.
#    include <QtQuick/qsgrendererinterface.h>
#    include <QtQuick/qtquickglobal.h>
#    undef QT_FEATURE_metal
#    define QT_FEATURE_metal 1
#    define Q_OS_MACOS
#    include <QtQuick/qquickgraphicsdevice.h>
#    undef Q_OS_MACOS

// These headers have functions called available(): include them before the macro below takes that name.
#    include <QtCore/qcontiguouscache.h>
#    include <QtCore/qsemaphore.h>

#endif

#ifdef __OBJC__
// When it does not build for an Apple system, the compiler evaluates every @available as true. The macro
// turns @available(macOS 14.0, *) into @(macOSIsAtLeast("macOS 14.0, *")) instead, an object that is nil when
// the function returns null.
extern "C" const char* macOSIsAtLeast(const char* platformAndVersion);
#    define available(...) (macOSIsAtLeast(#    __VA_ARGS__))
#endif
