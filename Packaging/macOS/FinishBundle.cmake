# Completes an installed Fenwhirl.app: puts Qt and its QML modules into it, checks which libraries the executable and
# the guard link, and finally signs everything from the inside out. Runs as part of `cmake --install`, or by hand:
#
#   cmake -D BUNDLE=…/Fenwhirl.app -D QML_FOLDER=… [-D IDENTITY=…] [-D MACDEPLOYQT=…] [-D CODESIGN=…] [-D OTOOL=…]
#       [-D QT_STAYS_OUTSIDE=ON] -P …
#
# QT_STAYS_OUTSIDE skips the check for missing libraries, for runs in which MACDEPLOYQT puts nothing into the bundle.
# IDENTITY "-" (the default) signs for this computer only. Any other value is the name of a certificate; the hardened
# runtime is then enabled and the signature has a trusted timestamp, as notarisation requires. Any failing step aborts
# the whole, because a half-signed bundle is worse than none.

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

# finish_step(TITLE result COMMAND…): runs one tool; `result` receives its output.
function(finish_step title result)
    execute_process(COMMAND ${ARGN} RESULT_VARIABLE status OUTPUT_VARIABLE output ERROR_VARIABLE errors)
    if(NOT status EQUAL 0)
        message(FATAL_ERROR "FinishBundle: ${title} failed (${status})\n${output}${errors}")
    endif()
    set(${result} "${output}" PARENT_SCOPE)
endfunction()

# 1. macdeployqt also scans the application's library in Contents/Frameworks, because the executable itself links no Qt.
finish_step("putting Qt into the bundle" ignored "${MACDEPLOYQT}" "${BUNDLE}" "-qmldir=${QML_FOLDER}" -always-overwrite)

# finish_check_libraries(TITLE PROGRAM ALLOWED): checks that the program has no run path, and that the path of each library that it
# links begins with one of ALLOWED.
function(finish_check_libraries title program allowed)
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

# 2. The installed helper is a copy of the executable outside the bundle, so it may link system libraries only and must
#    have no run path. The guard must work when everything else is broken, so it may link the C library only.
finish_check_libraries("the executable" "${executable}" "/usr/lib/|/System/Library/")
finish_check_libraries("the guard" "${guard}" "/usr/lib/libSystem\\.")

# 3. Qt's tool reports success even if it could not find a library. Therefore check that each library that a file of the
#    bundle names is the system's or in the bundle, and raise the system version that the bundle requires to that of its
#    most demanding file.

# finish_place(PLACE FILE result): resolves a path that begins with @loader_path or @executable_path.
function(finish_place place file result)
    cmake_path(GET file PARENT_PATH folder)
    string(REGEX REPLACE "^@loader_path" "${folder}" place "${place}")
    string(REGEX REPLACE "^@executable_path" "${BUNDLE}/Contents/MacOS" place "${place}")
    set(${result} "${place}" PARENT_SCOPE)
endfunction()

# finish_resolve(FILE newest): checks that every library that the file loads exists; `newest` receives the system
# version that the file requires.
function(finish_resolve file newest)
    finish_step("looking at ${file}" text "${OTOOL}" -l "${file}")
    string(REPLACE ";" "," text "${text}")
    string(REPLACE "Load command " ";" commands "${text}")
    # The application's library adds this run path for everything that it loads.
    set(run_paths "${BUNDLE}/Contents/Frameworks")
    set(names "")
    set(needed "")
    foreach(command IN LISTS commands)
        if(command MATCHES "cmd LC_RPATH.*[ \t]path ([^\n]+) \\(offset")
            finish_place("${CMAKE_MATCH_1}" "${file}" place)
            list(APPEND run_paths "${place}")
        elseif(command MATCHES "cmd LC_(LOAD|REEXPORT|LOAD_UPWARD)_DYLIB\n.*[ \t]name ([^\n]+) \\(offset")
            list(APPEND names "${CMAKE_MATCH_2}")
        elseif(command MATCHES "cmd LC_BUILD_VERSION.*[ \t]minos ([0-9.]+)" AND CMAKE_MATCH_1 VERSION_GREATER needed)
            set(needed "${CMAKE_MATCH_1}")
        endif()
    endforeach()
    set(${newest} "${needed}" PARENT_SCOPE)
    foreach(name IN LISTS names)
        if(name MATCHES "^(/usr/lib|/System/Library)/")
            continue()
        endif()
        set(found OFF)
        if(name MATCHES "^@rpath/(.*)")
            set(rest "${CMAKE_MATCH_1}")
            foreach(run_path IN LISTS run_paths)
                string(FIND "${run_path}" "${BUNDLE}/" inside)
                if(inside EQUAL 0 AND EXISTS "${run_path}/${rest}")
                    set(found ON)
                endif()
            endforeach()
        elseif(name MATCHES "^@")
            finish_place("${name}" "${file}" place)
            if(EXISTS "${place}")
                set(found ON)
            endif()
        endif()
        if(NOT found)
            cmake_path(RELATIVE_PATH file BASE_DIRECTORY "${BUNDLE}" OUTPUT_VARIABLE shown)
            message(FATAL_ERROR "FinishBundle: ${shown} loads ${name}, which is not in the bundle: it would start on this computer only")
        endif()
    endforeach()
endfunction()

if(NOT QT_STAYS_OUTSIDE)
    set(information "${BUNDLE}/Contents/Info.plist")
    set(promised "")
    if(EXISTS "${information}")
        file(READ "${information}" text)
        if(text MATCHES "<key>LSMinimumSystemVersion</key>[ \t\r\n]*<string>([^<]+)</string>")
            set(promised "${CMAKE_MATCH_1}")
        endif()
    endif()
    set(needed "${promised}")
    file(GLOB_RECURSE files "${BUNDLE}/Contents/*")
    foreach(file IN LISTS files)
        if(IS_SYMLINK "${file}")
            continue()
        endif()
        file(READ "${file}" magic LIMIT 4 HEX)
        if(NOT magic MATCHES "^(cffaedfe|cafebabe)$") # Mach-O: for one processor, for several
            continue()
        endif()
        finish_resolve("${file}" newest)
        if(newest VERSION_GREATER needed)
            set(needed "${newest}")
        endif()
    endforeach()
    if(promised AND needed VERSION_GREATER promised)
        message(STATUS "Fenwhirl.app needs macOS ${needed}, because what lies in it does (it was to be ${promised})")
        string(REGEX REPLACE "(<key>LSMinimumSystemVersion</key>[ \t\r\n]*<string>)[^<]+" "\\1${needed}" text "${text}")
        file(WRITE "${information}" "${text}")
    endif()
endif()

# 4. Nested code is signed before the code that contains it; the bundle's own signature covers everything.
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
        math(EXPR depth "1000 - ${depth}") # sorts deeper paths first; assumes fewer than a thousand levels
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
