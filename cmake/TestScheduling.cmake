# Which tests run at the same time.
#
# Most tests of the built program spend their time waiting, and the others compute. Both kinds share the run from its
# first to its last second, so that the computer always has something to do:
#  - A test that computes requires a slot of a processor. The file below tells CTest how many there are, for
#    ctest --resource-spec-file; without that option CTest does not count slots. With COST 100 they are the first in
#    CTest's order, and as slots are few, the rest of the run is for the others.
#  - A test of the built program has PROCESSORS 1 if it hardly does anything but wait, 3 if it goes wrong on a very busy
#    computer, and 2 otherwise; ./test lets ten count for each processor.
set(FENWHIRL_COMPUTING_TEST COST 100 RESOURCE_GROUPS "processors:1")

cmake_host_system_information(RESULT count QUERY NUMBER_OF_LOGICAL_CORES)
set(processors "")
foreach(id RANGE 1 ${count})
    list(APPEND processors "{\"id\": \"${id}\", \"slots\": 2}")
endforeach()
list(JOIN processors ", " processors)
file(WRITE "${CMAKE_BINARY_DIR}/processors.json"
    "{\"version\": {\"major\": 1, \"minor\": 0}, \"local\": [{\"processors\": [${processors}]}]}\n")
