# Language level, warnings, hardening and sanitizers, common to every target of the project.

set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)
set(CMAKE_CXX_VISIBILITY_PRESET hidden)
set(CMAKE_VISIBILITY_INLINES_HIDDEN ON)
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)
if(APPLE)
    foreach(setting STANDARD STANDARD_REQUIRED EXTENSIONS VISIBILITY_PRESET)
        set(CMAKE_OBJCXX_${setting} ${CMAKE_CXX_${setting}})
    endforeach()
endif()

# Builds with gcc are quick by default: with precompiled headers, and several sources compiled as one. Other compilers
# compile every source by itself.
if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
    set(FENWHIRL_QUICK_BUILD ON)
else()
    set(FENWHIRL_QUICK_BUILD OFF)
endif()

find_program(FENWHIRL_CCACHE ccache)
if(FENWHIRL_CCACHE AND NOT CMAKE_CXX_COMPILER_LAUNCHER)
    # ccache stores objects that were compiled with a precompiled header only with these two sloppiness settings, and
    # with the compiler option that PrecompiledHeaders.cmake adds. It takes what a source includes from the compiler's
    # list of dependencies (CCACHE_DEPEND) instead of preprocessing the source itself before each compilation, and it
    # remembers the checksums of these files (CCACHE_INODECACHE), as a precompiled header has more than 100 megabytes.
    set(CMAKE_CXX_COMPILER_LAUNCHER "${CMAKE_COMMAND}" -E env
        CCACHE_SLOPPINESS=pch_defines,time_macros CCACHE_DEPEND=1 CCACHE_INODECACHE=1 "${FENWHIRL_CCACHE}")
    set(CMAKE_OBJCXX_COMPILER_LAUNCHER ${CMAKE_CXX_COMPILER_LAUNCHER})
endif()

add_library(FenwhirlFlags INTERFACE)
target_include_directories(FenwhirlFlags INTERFACE "${CMAKE_SOURCE_DIR}/Sources")
target_compile_options(FenwhirlFlags INTERFACE
    -Wall -Wextra -Wpedantic -Wshadow -Wnon-virtual-dtor -Woverloaded-virtual -Wcast-align -Wunused
    -Wconversion -Wsign-conversion -Wdouble-promotion -Wformat=2 -Wimplicit-fallthrough -Wnull-dereference
    -fno-fast-math)
if(NOT CMAKE_CXX_COMPILER_ID STREQUAL "AppleClang")
    # Only with the compilers that are used in development: a new warning of another compiler must not stop the first
    # person who builds with it.
    target_compile_options(FenwhirlFlags INTERFACE -Werror)
endif()
if(CMAKE_CXX_COMPILER_ID MATCHES "Clang")
    target_compile_options(FenwhirlFlags INTERFACE -Wthread-safety)
    if(CMAKE_CXX_COMPILER_VERSION VERSION_GREATER_EQUAL 19)
        # The models' accessors return references to data that belongs to the main thread, and their headers say that
        # they are called on it. Newer versions want an annotation of this at every accessor.
        target_compile_options(FenwhirlFlags INTERFACE -Wno-thread-safety-reference-return)
    endif()
endif()
if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
    # gcc 12 reports false null dereferences, overlapping copies and uninitialised optionals in inlined code of the
    # standard library once optimisation is on. valgrind and the sanitizers look for real ones.
    target_compile_options(FenwhirlFlags INTERFACE
        -Wno-null-dereference -Wno-restrict -Wno-maybe-uninitialized -Wduplicated-cond -Wlogical-op)
endif()

if(APPLE)
    target_compile_options(FenwhirlFlags INTERFACE
        -Werror=unguarded-availability-new $<$<COMPILE_LANGUAGE:OBJCXX>:-fobjc-arc>)
    target_link_options(FenwhirlFlags INTERFACE -Wl,-dead_strip)
else()
    target_compile_options(FenwhirlFlags INTERFACE -fstack-protector-strong)
    target_link_options(FenwhirlFlags INTERFACE -Wl,-z,relro -Wl,-z,now -Wl,-z,noexecstack -Wl,--as-needed)
endif()

if(CMAKE_BUILD_TYPE STREQUAL "Debug")
    target_compile_definitions(FenwhirlFlags INTERFACE _GLIBCXX_ASSERTIONS)
endif()

if(FENWHIRL_SANITIZE STREQUAL "address")
    set(sanitizers -fsanitize=address,undefined,float-cast-overflow -fno-sanitize-recover=all -fno-omit-frame-pointer)
elseif(FENWHIRL_SANITIZE STREQUAL "thread")
    set(sanitizers -fsanitize=thread -fno-omit-frame-pointer)
elseif(FENWHIRL_SANITIZE)
    message(FATAL_ERROR "FENWHIRL_SANITIZE is \"${FENWHIRL_SANITIZE}\"; it can be empty, \"address\" or \"thread\"")
endif()
if(FENWHIRL_SANITIZE)
    target_compile_options(FenwhirlFlags INTERFACE ${sanitizers})
    target_link_options(FenwhirlFlags INTERFACE ${sanitizers})
    # Makes the installation of the set-uid helper refuse such a build, because a sanitizer writes files where its
    # environment says.
    target_compile_definitions(FenwhirlFlags INTERFACE FENWHIRL_SANITIZED=1)
endif()
