# Which tests run at the same time.
#
# Most tests of the built program spend their time waiting, and the others compute. Both kinds share the run from its
# first to its last second, so that the computer always has something to do. ./test runs seven tests at a time for each
# processor; which ones, depends on two properties:
#  - RESOURCE_GROUPS limits a kind of test. The file below tells CTest how many slots there are, for
#    ctest --resource-spec-file; without that option CTest does not count slots. A test that computes requires one of two
#    slots for each processor, as more of them at once would not be quicker. So does, with slots of another name, a test
#    that goes wrong when its processes get a processor too late.
#  - COST orders the tests, the highest first. Those with few slots come first, beside others that use what they leave.
#    The costs of all other tests of the built program are spread, so that those that wait and those that compute mix.
#    Everything else is quick and comes last, which keeps the processors busy to the end.
set(FENWHIRL_COMPUTING_TEST COST 100 RESOURCE_GROUPS "processors:1")
set(FENWHIRL_PROMPT_TEST COST 40 RESOURCE_GROUPS "prompt:1")

cmake_host_system_information(RESULT count QUERY NUMBER_OF_LOGICAL_CORES)
set(slots "")
foreach(id RANGE 1 ${count})
    list(APPEND slots "{\"id\": \"${id}\", \"slots\": 2}")
endforeach()
list(JOIN slots ", " slots)
file(WRITE "${CMAKE_BINARY_DIR}/processors.json"
    "{\"version\": {\"major\": 1, \"minor\": 0}, \"local\": [{\"processors\": [${slots}], \"prompt\": [${slots}]}]}\n")
