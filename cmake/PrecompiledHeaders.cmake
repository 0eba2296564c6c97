# Precompiles the headers that nearly every source of a kind includes, which halves the time of a clean build. Every
# source must still include what it uses; the clang build, which precompiles nothing, verifies that.

option(FENWHIRL_PRECOMPILED_HEADERS "Parse the headers of Qt and of the test library once" ${FENWHIRL_QUICK_BUILD})
if(FENWHIRL_PRECOMPILED_HEADERS AND CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
    add_compile_options($<$<COMPILE_LANGUAGE:CXX>:-fpch-preprocess>) # shows ccache which precompiled header was used
    # Each time gcc collects its garbage it visits the whole precompiled header, which takes a tenth of the time of a
    # compilation. Without any collection a compilation needs a fifth more memory: 730 megabytes at most.
    add_compile_options($<$<COMPILE_LANGUAGE:CXX>:--param=ggc-min-heapsize=1048576>) # kilobytes
endif()

set(FENWHIRL_STANDARD_HEADERS
    <algorithm> <chrono> <functional> <map> <memory> <optional> <string> <string_view> <vector>)
set(FENWHIRL_QT_HEADERS ${FENWHIRL_STANDARD_HEADERS} <QList> <QObject> <QString> <QVariant>)
set(FENWHIRL_QML_HEADERS ${FENWHIRL_QT_HEADERS}
    <QDateTime> <QTimeZone> <QUrl> <QtQml/qjsengine.h> <QtQml/qqmlengine.h> <QtQml/qqmlprivate.h>)
set(FENWHIRL_TEST_HEADERS ${FENWHIRL_STANDARD_HEADERS} <gmock/gmock.h> <gtest/gtest.h>)
set(FENWHIRL_QT_TEST_HEADERS ${FENWHIRL_TEST_HEADERS} ${FENWHIRL_QT_HEADERS} <QCoreApplication>)

# The library whose precompiled headers of Qt the others use. It must have the same macros, so on Linux it cannot be one
# that uses Qt's bus; on a Mac it must have Objective-C++ sources, whose headers are precompiled separately.
if(APPLE)
    set(FENWHIRL_QT_HEADERS_FROM FenwhirlPlatform)
else()
    set(FENWHIRL_QT_HEADERS_FROM FenwhirlToolkit)
endif()

# fenwhirl_precompile(TARGET KIND): precompiles the headers of this kind (QT, QML, TEST or QT_TEST) for the target and
# for every target that calls fenwhirl_reuse_headers with it. The target must not define a macro that one of those does
# not define.
function(fenwhirl_precompile target kind)
    if(FENWHIRL_PRECOMPILED_HEADERS)
        target_precompile_headers(${target} PRIVATE ${FENWHIRL_${kind}_HEADERS})
    endif()
endfunction()

# fenwhirl_reuse_headers(TARGET FROM): lets TARGET use the headers that were precompiled for FROM, a library. These were
# compiled with -fPIC, so a program that uses them needs the same option.
function(fenwhirl_reuse_headers target from)
    if(FENWHIRL_PRECOMPILED_HEADERS AND NOT target STREQUAL from)
        target_precompile_headers(${target} REUSE_FROM ${from})
        target_compile_options(${target} PRIVATE -fPIC)
    endif()
endfunction()
