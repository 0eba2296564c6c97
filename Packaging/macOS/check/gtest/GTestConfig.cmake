# Stands in for GoogleTest on a Mac: Debian's copy of its sources (package googletest), built with the rest. Used only
# when the check includes the tests.
if(NOT EXISTS /usr/src/googletest/CMakeLists.txt)
  set(GTest_FOUND FALSE)
  set(GTest_NOT_FOUND_MESSAGE "apt-get install googletest")
  return()
endif()
if(NOT TARGET GTest::gtest)
  add_subdirectory(/usr/src/googletest "${CMAKE_BINARY_DIR}/googletest" EXCLUDE_FROM_ALL SYSTEM)
endif()
set(GTest_FOUND TRUE)
