# Locales under which every test program runs once more: one with decimal commas, one with its own rules for letter
# case, and one with other digits. They are compiled into the build folder, so that the computer need not have them.
set(FENWHIRL_TEST_LOCALES fr_FR.UTF-8)
if(FENWHIRL_LONG_RUNS)
    list(APPEND FENWHIRL_TEST_LOCALES tr_TR.UTF-8 ar_EG.UTF-8)
endif()
set(FENWHIRL_LOCALE_FOLDER "${CMAKE_BINARY_DIR}/locales")

find_program(FENWHIRL_LOCALEDEF localedef PATHS /usr/bin /usr/sbin)
# Tests of the built program use these as well, for the numbers in what is heard.
set(FENWHIRL_SPEECH_LOCALES de_DE.UTF-8 ru_RU.UTF-8)
foreach(locale IN LISTS FENWHIRL_TEST_LOCALES FENWHIRL_SPEECH_LOCALES)
    if(APPLE OR NOT FENWHIRL_LOCALEDEF OR EXISTS "${FENWHIRL_LOCALE_FOLDER}/${locale}")
        continue() # macOS has its own; without localedef the tests report that there is none
    endif()
    # Under another name until it is complete, so that an interruption leaves no half of it.
    set(unfinished "${FENWHIRL_LOCALE_FOLDER}/unfinished")
    file(REMOVE_RECURSE "${unfinished}")
    file(MAKE_DIRECTORY "${FENWHIRL_LOCALE_FOLDER}")
    string(REGEX REPLACE "\\..*" "" language "${locale}")
    execute_process(COMMAND "${FENWHIRL_LOCALEDEF}" --no-archive -i "${language}" -f UTF-8 "${unfinished}"
        RESULT_VARIABLE failure ERROR_VARIABLE reason OUTPUT_QUIET)
    if(NOT failure)
        file(RENAME "${unfinished}" "${FENWHIRL_LOCALE_FOLDER}/${locale}")
    else()
        message(WARNING "The locale ${locale} could not be made (package locales): ${reason}")
    endif()
endforeach()

# Tests that do the same very often: one run per change is enough.
set(FENWHIRL_ENDURANCE_TESTS "Promises.*;MonitorSoak.*;MonitorQuit.AtAnyMoment*;PollModel.*;FilePreferencesKilled.*;*PreferencesFaults.*"
    CACHE INTERNAL "")

# fenwhirl_test_under_locales(NAME [EXCEPT TEST…]): adds one test per locale that runs the whole program without the
# tests listed and without those above, which print the same numbers again and again. It runs at the usual volume, also in
# long runs.
function(fenwhirl_test_under_locales name)
    cmake_parse_arguments(PARSE_ARGV 1 arg "" "" "EXCEPT")
    list(APPEND arg_EXCEPT ${FENWHIRL_ENDURANCE_TESTS})
    list(JOIN arg_EXCEPT ":" except)
    foreach(locale IN LISTS FENWHIRL_TEST_LOCALES)
        set(environment "LC_ALL=${locale}" ${FENWHIRL_TEST_ENVIRONMENT})
        list(REMOVE_ITEM environment "FENWHIRL_LONG_RUNS=1")
        if(EXISTS "${FENWHIRL_LOCALE_FOLDER}/${locale}")
            list(APPEND environment "LOCPATH=${FENWHIRL_LOCALE_FOLDER}")
        endif()
        string(REGEX REPLACE "\\..*" "" language "${locale}")
        add_test(NAME "${name}.Under.${language}" COMMAND ${name} --gtest_brief=1 "--gtest_filter=-${except}")
        set_tests_properties("${name}.Under.${language}" PROPERTIES
            LABELS "${room}" ENVIRONMENT "${environment}" TIMEOUT ${FENWHIRL_TEST_SECONDS}
            ${FENWHIRL_COMPUTING_TEST})
    endforeach()
endfunction()
