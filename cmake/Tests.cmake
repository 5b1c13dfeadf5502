# orvel_add_test(NAME SOURCES... [LIBRARIES ...]): a test program that ctest runs case by case.
find_package(GTest REQUIRED)
include(GoogleTest)

function(orvel_add_test name)
  cmake_parse_arguments(PARSE_ARGV 1 arg "" "" "SOURCES;LIBRARIES")
  add_executable(${name} ${arg_SOURCES})
  target_link_libraries(${name} PRIVATE orvel_test_support ${arg_LIBRARIES})
  gtest_discover_tests(${name} DISCOVERY_MODE PRE_TEST PROPERTIES TIMEOUT 300)
endfunction()
