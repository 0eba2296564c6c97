// Included before everything else in the sources for macOS: what Qt's headers offer there and not here (the
// functions are in MacQt.mm), and the question for the version of the system.

#pragma once

#ifdef __cplusplus

// What Qt declares on a Mac in these two headers.
#    include <QtCore/qglobal.h>

#    define Q_OS_DARWIN
#    include <QtCore/qbytearray.h>
#    include <QtCore/qstring.h>
#    undef Q_OS_DARWIN

// They have functions of the name that is taken below.
#    include <QtCore/qcontiguouscache.h>
#    include <QtCore/qsemaphore.h>

#endif

#ifdef __OBJC__
// Where this is no system of Apple's the compiler answers each such question with yes. Boxed, a null text is
// nil.
extern "C" const char* macOSIsAtLeast(const char* platformAndVersion);
#    define available(...) (macOSIsAtLeast(#    __VA_ARGS__))
#endif
