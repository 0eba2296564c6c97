# Tests written in Python: of the scripts around the program, and of the built program itself.

find_program(FENWHIRL_PYTHON NAMES python3 PATHS /usr/bin NO_DEFAULT_PATH REQUIRED)

# fenwhirl_python_test_methods(FILE RESULT): every test method of a file beside the calling CMakeLists.txt, as the name
# "module.Class.test_method" that unittest accepts. New methods are found automatically.
function(fenwhirl_python_test_methods file result)
    cmake_path(GET file STEM module)
    set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS "${CMAKE_CURRENT_SOURCE_DIR}/${file}")
    file(STRINGS "${file}" lines REGEX "^class |^    def test_")
    set(methods "")
    foreach(line IN LISTS lines)
        if(line MATCHES "^class ([A-Za-z0-9_]+)")
            set(class "${CMAKE_MATCH_1}")
        elseif(line MATCHES "def (test_[A-Za-z0-9_]+)")
            list(APPEND methods "${module}.${class}.${CMAKE_MATCH_1}")
        endif()
    endforeach()
    set(${result} "${methods}" PARENT_SCOPE)
endfunction()

# fenwhirl_python_tests(AREA FILE): makes every test method of a Python file one test, "AREA.module.Class.test_method".
function(fenwhirl_python_tests area file)
    fenwhirl_python_test_methods("${file}" methods)
    fenwhirl_test_label(room)
    foreach(method IN LISTS methods)
        set(name "${area}.${method}")
        add_test(NAME "${name}" COMMAND "${FENWHIRL_PYTHON}" -B -m unittest --verbose "${method}"
            WORKING_DIRECTORY "${CMAKE_CURRENT_SOURCE_DIR}")
        set_tests_properties("${name}" PROPERTIES LABELS "${room}" TIMEOUT 120 SKIP_REGULAR_EXPRESSION "OK \\(skipped="
            ${FENWHIRL_COMPUTING_TEST})
    endforeach()
endfunction()
