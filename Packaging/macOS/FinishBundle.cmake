# Makes an installed Fenwhirl.app complete: puts Qt and its QML modules into it, sees that executable and guard link what
# they may, and signs everything, last of all and from the inside out. Part of `cmake --install`; also by hand:
#
#   cmake -D BUNDLE=…/Fenwhirl.app -D QML_FOLDER=… [-D IDENTITY=…] [-D MACDEPLOYQT=…] [-D CODESIGN=…] [-D OTOOL=…] -P …
#
# IDENTITY "-" (the usual) signs for this computer only; any other is the name of a certificate, and then the hardened
# runtime is on and the time of signing is certified, as notarisation asks. Any step that fails ends it all: a bundle
# that is half signed is worse than none.

cmake_policy(VERSION 3.25)

foreach(setting IN ITEMS BUNDLE QML_FOLDER)
    if(NOT ${setting})
        message(FATAL_ERROR "FinishBundle: ${setting} is not set")
    endif()
endforeach()
if(NOT IDENTITY)
    set(IDENTITY "-")
endif()
foreach(tool IN ITEMS MACDEPLOYQT CODESIGN OTOOL)
    if(NOT ${tool})
        string(TOLOWER "${tool}" ${tool})
    endif()
endforeach()
set(executable "${BUNDLE}/Contents/MacOS/Fenwhirl")
set(guard "${BUNDLE}/Contents/Helpers/fenwhirl-guard")
foreach(program IN ITEMS "${executable}" "${guard}")
    if(NOT EXISTS "${program}")
        message(FATAL_ERROR "FinishBundle: there is no ${program}")
    endif()
endforeach()

# finish_step(TITLE result COMMAND…): runs one tool; `result` receives what it printed.
function(finish_step title result)
    execute_process(COMMAND ${ARGN} RESULT_VARIABLE status OUTPUT_VARIABLE output ERROR_VARIABLE errors)
    if(NOT status EQUAL 0)
        message(FATAL_ERROR "FinishBundle: ${title} failed (${status})\n${output}${errors}")
    endif()
    set(${result} "${output}" PARENT_SCOPE)
endfunction()

# 1. The application's library in Contents/Frameworks is scanned too: the executable itself links no Qt.
finish_step("putting Qt into the bundle" ignored "${MACDEPLOYQT}" "${BUNDLE}" "-qmldir=${QML_FOLDER}" -always-overwrite)

# finish_look(TITLE PROGRAM ALLOWED): the program has no run path, and each library that it links begins as ALLOWED says.
function(finish_look title program allowed)
    finish_step("looking at ${title}" commands "${OTOOL}" -l "${program}")
    if(commands MATCHES "LC_RPATH")
        message(FATAL_ERROR "FinishBundle: ${title} has a run path; it must not, least of all as a set-user-ID copy")
    endif()
    finish_step("looking at the libraries of ${title}" libraries "${OTOOL}" -L "${program}")
    string(REGEX MATCHALL "\n[ \t]+[^\n]+ \\(compatibility" libraries "${libraries}")
    if(NOT libraries)
        message(FATAL_ERROR "FinishBundle: the libraries of ${title} could not be read")
    endif()
    foreach(library IN LISTS libraries)
        if(NOT library MATCHES "^\n[ \t]+(${allowed})")
            string(STRIP "${library}" library)
            message(FATAL_ERROR "FinishBundle: ${title} links more than the system: ${library}")
        endif()
    endforeach()
endfunction()

# 2. The installed helper is a copy of the executable far from the bundle: the system's libraries only, and no run path. The
# guard must work when everything else is broken: the C library only.
finish_look("the executable" "${executable}" "/usr/lib/|/System/Library/")
finish_look("the guard" "${guard}" "/usr/lib/libSystem\\.")

# 3. What lies deeper is signed before what holds it; the bundle's own signature covers them all.
set(signing --force --sign "${IDENTITY}")
if(NOT IDENTITY STREQUAL "-")
    list(APPEND signing --options runtime --timestamp)
endif()
file(GLOB_RECURSE inside LIST_DIRECTORIES true RELATIVE "${BUNDLE}" "${BUNDLE}/Contents/*")
set(code "")
foreach(path IN LISTS inside)
    if(IS_SYMLINK "${BUNDLE}/${path}" OR path MATCHES "\\.framework/")
        continue()
    endif()
    if(path MATCHES "\\.(dylib|so)$" OR path MATCHES "\\.framework$" OR path MATCHES "^Contents/Helpers/")
        string(REGEX REPLACE "[^/]" "" depth "${path}")
        string(LENGTH "${depth}" depth)
        math(EXPR depth "1000 - ${depth}") # fewer than a thousand folders: the sorted text begins with the deepest
        list(APPEND code "${depth}:${path}")
    endif()
endforeach()
list(SORT code COMPARE NATURAL)
foreach(entry IN LISTS code)
    string(REGEX REPLACE "^[0-9]+:" "" path "${entry}")
    finish_step("signing ${path}" ignored "${CODESIGN}" ${signing} "${BUNDLE}/${path}")
endforeach()
finish_step("signing the bundle" ignored "${CODESIGN}" ${signing} "${BUNDLE}")
finish_step("verifying the signature" ignored "${CODESIGN}" --verify --deep --strict "${BUNDLE}")
message(STATUS "Fenwhirl.app is complete and signed (${IDENTITY})")
