# Functions that define the project's kinds of target. Each folder is one subsystem and one target, and one call lists
# its sources and the libraries that it links.

option(FENWHIRL_UNITY_BUILD "Compile several sources of a target as one, which is quicker from scratch" ${FENWHIRL_QUICK_BUILD})

# Which sources share a batch depends on how many files Qt's tools generate, and so on Qt's version. Names in unnamed
# namespaces must therefore be unique in a whole target: the macOS check compiles each target as one source (0).
set(FENWHIRL_UNITY_BATCH_SIZE 8 CACHE STRING "How many sources are compiled as one; 0 means all of a target")

# fenwhirl_unity_build(TARGET [FILE…]): compiles eight sources of this target at a time as one (a unity build), which
# saves three minutes of processor time in a clean build. The files named stay apart. The clang build compiles each
# source by itself, and so verifies that every one includes what it uses.
function(fenwhirl_unity_build target)
    if(FENWHIRL_UNITY_BUILD)
        set_target_properties(${target} PROPERTIES UNITY_BUILD ON UNITY_BUILD_BATCH_SIZE "${FENWHIRL_UNITY_BATCH_SIZE}")
        # In a unity build gcc treats an included source as a header, whose types other sources might see.
        target_compile_options(${target} PRIVATE "$<$<CXX_COMPILER_ID:GNU>:-Wno-subobject-linkage>")
        set_source_files_properties(${ARGN} PROPERTIES SKIP_UNITY_BUILD_INCLUSION ON)
    endif()
endfunction()

# Whether what runs too briefly to benefit from optimisation is compiled without it, as in everyday builds.
if(CMAKE_BUILD_TYPE STREQUAL "Debug" AND FENWHIRL_PRECOMPILED_HEADERS AND NOT FENWHIRL_SANITIZE)
    set(FENWHIRL_COMPILES_QUICKLY ON)
else()
    set(FENWHIRL_COMPILES_QUICKLY OFF)
endif()

# fenwhirl_compile_quickly(TARGET): in everyday builds, compiles a target without optimisation: test code, whose compile
# time this halves, and what uses Qt, which then compiles in three quarters of the time and takes hardly longer in the
# tests. What runs as root and the simulated Mac are optimised in every build.
function(fenwhirl_compile_quickly target)
    if(FENWHIRL_COMPILES_QUICKLY)
        target_compile_options(${target} PRIVATE -O0)
    endif()
endfunction()

# fenwhirl_compile_quickly_with_qt(TARGET): the same for a target that uses Qt, with the precompiled headers of Qt.
function(fenwhirl_compile_quickly_with_qt target)
    fenwhirl_compile_quickly(${target})
    fenwhirl_reuse_headers(${target} ${FENWHIRL_QT_HEADERS_FROM})
endfunction()

# fenwhirl_optimise(FILE…): optimises these sources of a target that is compiled quickly. Call it in the target's folder.
function(fenwhirl_optimise)
    if(FENWHIRL_COMPILES_QUICKLY)
        # The precompiled headers were compiled without optimisation and do not fit.
        set_source_files_properties(${ARGN} PROPERTIES
            COMPILE_OPTIONS -O1 SKIP_PRECOMPILE_HEADERS ON SKIP_UNITY_BUILD_INCLUSION ON)
    endif()
endfunction()

# gold links a test program in a third of the time. Not every distribution has it, and it links for Linux only: the
# compiler in use is asked, which may be a cross compiler.
if(FENWHIRL_COMPILES_QUICKLY)
    include(CheckLinkerFlag)
    check_linker_flag(CXX -fuse-ld=gold FENWHIRL_LINKS_WITH_GOLD)
endif()

# fenwhirl_link_quickly(TARGET): in everyday builds, links a program of the tests with the quickest linker.
function(fenwhirl_link_quickly target)
    if(FENWHIRL_LINKS_WITH_GOLD)
        target_link_options(${target} PRIVATE -fuse-ld=gold)
    endif()
endfunction()

# fenwhirl_library(NAME [MOC] SOURCES file… LINK library…): a static library with the project's flags. MOC runs Qt's
# meta-object compiler over the listed headers.
function(fenwhirl_library name)
    cmake_parse_arguments(PARSE_ARGV 1 arg "MOC" "" "SOURCES;LINK")
    add_library(${name} STATIC ${arg_SOURCES})
    target_link_libraries(${name} PUBLIC FenwhirlFlags ${arg_LINK})
    set_target_properties(${name} PROPERTIES LINKER_LANGUAGE CXX)
    fenwhirl_unity_build(${name})
    if(arg_MOC)
        set_target_properties(${name} PROPERTIES AUTOMOC ON)
        target_compile_definitions(${name} PUBLIC QT_NO_KEYWORDS QT_NO_CAST_FROM_ASCII QT_NO_CAST_TO_ASCII)
        if(name STREQUAL "FenwhirlToolkit") # it precompiles them itself
            fenwhirl_compile_quickly(${name})
        else()
            fenwhirl_compile_quickly_with_qt(${name})
        endif()
    endif()
endfunction()

# fenwhirl_runs_as_root(NAME…): compiles parts of the set-user-ID executable with the C library's buffer checks. The
# checks cover buffers whose size the compiler knows, which requires optimisation. Sanitized builds do without them,
# because a sanitizer checks the same itself. Each source has an object of its own, so that the executable contains only
# what it uses, and a test can replace a function.
function(fenwhirl_runs_as_root)
    set_target_properties(${ARGN} PROPERTIES UNITY_BUILD OFF)
    string(TOUPPER "${CMAKE_BUILD_TYPE}" type)
    if(APPLE OR FENWHIRL_SANITIZE OR NOT "${CMAKE_CXX_FLAGS} ${CMAKE_CXX_FLAGS_${type}}" MATCHES "-O[123s]")
        return()
    endif()
    foreach(name IN LISTS ARGN)
        target_compile_options(${name} PRIVATE -U_FORTIFY_SOURCE -D_FORTIFY_SOURCE=2)
    endforeach()
endfunction()

# Timeout and environment of every test. A timeout ends a test that hangs; on a computer that is busy with other work, a
# test that passes may take ten times as long as alone. The long runs take hours: see Documentation/Testing.md.
if(FENWHIRL_LONG_RUNS)
    set(FENWHIRL_TEST_SECONDS 36000)
    set(FENWHIRL_SYSTEM_TEST_SECONDS 36000)
    set(FENWHIRL_TEST_ENVIRONMENT "FENWHIRL_LONG_RUNS=1")
else()
    set(FENWHIRL_TEST_SECONDS 300)
    set(FENWHIRL_SYSTEM_TEST_SECONDS 400)
    set(FENWHIRL_TEST_ENVIRONMENT "")
endif()

if(FENWHIRL_SANITIZE STREQUAL "thread")
    # Qt's libraries are not built with the sanitizer, which therefore sees their memory accesses but not their locks.
    # Accesses by Qt itself are ignored; our code is checked wherever it runs, also when Qt calls it (see ThreadsTest).
    # Qt also forks in a threaded process to start a program, for which the sanitizer would end the test.
    list(APPEND FENWHIRL_TEST_ENVIRONMENT "TSAN_OPTIONS=ignore_noninstrumented_modules=1:die_after_fork=0")
elseif(FENWHIRL_SANITIZE STREQUAL "address")
    # The leak checker of gcc 12 crashes now and then when it follows the storage of a thread that is just ending.
    list(APPEND FENWHIRL_TEST_ENVIRONMENT "ASAN_OPTIONS=intercept_tls_get_addr=0")
endif()

# fenwhirl_test_label(RESULT): the label of the tests in this folder for ctest -L, which is the path below Tests/
# ("Fenwhirl/Views").
function(fenwhirl_test_label result)
    cmake_path(RELATIVE_PATH CMAKE_CURRENT_SOURCE_DIR BASE_DIRECTORY "${CMAKE_SOURCE_DIR}/Tests" OUTPUT_VARIABLE room)
    set(${result} "${room}" PARENT_SCOPE)
endfunction()

# fenwhirl_test(NAME [MOC] [QT_MAIN | OWN_MAIN] SOURCES file… LINK library… [NOT_ON_MACOS test…] [ALONE test…]
# [APART file…]): a GoogleTest program, each of whose tests becomes one test of CTest.
# The main function is a plain one by default, one with a QCoreApplication with QT_MAIN, and the program's own with
# OWN_MAIN.
# NOT_ON_MACOS lists the tests of what only Linux has (/proc, desktop entries).
# ALONE lists the tests (patterns) that measure time or change what others use: nothing else runs meanwhile.
# APART lists the sources whose names would clash if several were compiled as one.
function(fenwhirl_test name)
    cmake_parse_arguments(PARSE_ARGV 1 arg "MOC;QT_MAIN;OWN_MAIN" "" "SOURCES;LINK;NOT_ON_MACOS;ALONE;APART")
    add_executable(${name} ${arg_SOURCES})
    if(arg_QT_MAIN)
        target_link_libraries(${name} PRIVATE FenwhirlTestMain)
    elseif(NOT arg_OWN_MAIN)
        target_link_libraries(${name} PRIVATE FenwhirlPlainTestMain)
    endif()
    target_link_libraries(${name} PRIVATE FenwhirlFlags GTest::gtest GTest::gmock ${arg_LINK})
    if(FENWHIRL_PRECOMPILED_HEADERS)
        # With -fPIC, which they require, gcc 12 reports false string overruns in inlined code of the standard library; the
        # sanitizers look for real ones.
        target_compile_options(${name} PRIVATE "$<$<CXX_COMPILER_ID:GNU>:-Wno-array-bounds;-Wno-stringop-overflow>")
    endif()
    list(FILTER arg_SOURCES INCLUDE REGEX "\\.cpp$")
    list(LENGTH arg_SOURCES count)
    if(count GREATER 1)
        fenwhirl_unity_build(${name} ${arg_APART})
    endif()
    if(arg_QT_MAIN OR arg_OWN_MAIN) # these use Qt
        fenwhirl_reuse_headers(${name} FenwhirlTestMain)
    else()
        fenwhirl_reuse_headers(${name} FenwhirlPlainTestMain)
    endif()
    fenwhirl_compile_quickly(${name})
    fenwhirl_link_quickly(${name})
    # Tests include their support headers by their path from Tests/.
    target_include_directories(${name} PRIVATE "${CMAKE_SOURCE_DIR}/Tests")
    if(arg_MOC)
        set_target_properties(${name} PROPERTIES AUTOMOC ON)
    endif()
    set_target_properties(${name} PROPERTIES RUNTIME_OUTPUT_DIRECTORY "${CMAKE_BINARY_DIR}/tests")
    fenwhirl_test_label(room)
    set(left_out "")
    if(APPLE)
        set(left_out ${arg_NOT_ON_MACOS})
    endif()
    if(NOT CMAKE_CROSSCOMPILING)
        set(elsewhere ${left_out} ${arg_ALONE})
        list(JOIN elsewhere ":" names)
        set(filter "")
        if(elsewhere)
            set(filter TEST_FILTER "-${names}")
        endif()
        # On a busy computer a program may take longer than the usual five seconds to list its tests.
        set(discovery DISCOVERY_MODE PRE_TEST DISCOVERY_TIMEOUT 60 TEST_PREFIX "${name}.")
        gtest_discover_tests(${name} ${filter} ${discovery}
            PROPERTIES LABELS "${room}" TIMEOUT ${FENWHIRL_TEST_SECONDS} ENVIRONMENT "${FENWHIRL_TEST_ENVIRONMENT}"
                ${FENWHIRL_COMPUTING_TEST})
        if(arg_ALONE)
            list(JOIN arg_ALONE ":" names)
            gtest_discover_tests(${name} TEST_FILTER "${names}" TEST_LIST ${name}Alone ${discovery}
                PROPERTIES RUN_SERIAL ON
                    LABELS "${room}" TIMEOUT ${FENWHIRL_TEST_SECONDS} ENVIRONMENT "${FENWHIRL_TEST_ENVIRONMENT}")
        endif()
        if(NOT arg_OWN_MAIN) # tests with a main of their own render, and choose their locale themselves
            fenwhirl_test_under_locales(${name} EXCEPT ${elsewhere})
        endif()
    endif()
endfunction()

option(FENWHIRL_QML_TOGETHER "Compile the C++ made from a module's QML files as a few sources, which is quicker from scratch" ON)

# fenwhirl_qml_sources(NAME): how the sources of a QML module are compiled, ours and, without our warnings, those that
# Qt's tools generate. Call it after qt_add_qml_module in the same folder.
function(fenwhirl_qml_sources name)
    get_target_property(sources ${name} SOURCES)
    list(FILTER sources INCLUDE REGEX "/qmlcache/|_qmltyperegistrations\\.cpp$|/\\.rcc/")
    if(FENWHIRL_QML_TOGETHER)
        set(files ${sources})
        list(FILTER files INCLUDE REGEX "/qmlcache/.*_qml\\.cpp$")
        list(LENGTH files count)
        if(count EQUAL 0)
            message(FATAL_ERROR "${name} has no C++ made from QML where it was looked for")
        endif()
        set_source_files_properties(${files} PROPERTIES HEADER_FILE_ONLY ON) # so they are still generated first
        # Two sources, because a change of one file recompiles all that are compiled with it.
        math(EXPR half "(${count} + 1) / 2")
        math(EXPR last "${count} - 1")
        set(together "")
        foreach(begin RANGE 0 ${last} ${half})
            list(SUBLIST files ${begin} ${half} includes)
            list(TRANSFORM includes REPLACE "(.+)" "#include \"\\1\"\n")
            string(JOIN "" includes ${includes})
            list(APPEND together "${CMAKE_CURRENT_BINARY_DIR}/${name}_qml_${begin}.cpp")
            list(GET together -1 source)
            file(CONFIGURE OUTPUT "${source}" CONTENT "${includes}" @ONLY)
        endforeach()
        set_source_files_properties(${together} PROPERTIES SKIP_AUTOGEN ON)
        target_sources(${name} PRIVATE ${together})
        list(APPEND sources ${together})
    endif()
    set_source_files_properties(${sources} PROPERTIES COMPILE_OPTIONS "-w")
    fenwhirl_unity_build(${name} ${sources})
    fenwhirl_compile_quickly(${name})
endfunction()
