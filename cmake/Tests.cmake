# Helpers of the tests.
find_package(GTest REQUIRED)

# A locale with a comma as its decimal mark, for the tests that show that no archive depends on one.
# It is compiled here, so that the machine's own list of locales does not matter: the C library
# looks for locales in LOCPATH first.
set(ORVEL_TEST_LOCPATH ${PROJECT_BINARY_DIR}/locales)
set(ORVEL_TEST_COMMA_LOCALE de_DE.UTF-8)
if(NOT EXISTS ${ORVEL_TEST_LOCPATH}/${ORVEL_TEST_COMMA_LOCALE})
  find_program(ORVEL_LOCALEDEF localedef REQUIRED)
  file(MAKE_DIRECTORY ${ORVEL_TEST_LOCPATH})
  execute_process(
    COMMAND ${ORVEL_LOCALEDEF} --no-archive -i de_DE -f UTF-8 ${ORVEL_TEST_LOCPATH}/${ORVEL_TEST_COMMA_LOCALE}
    RESULT_VARIABLE result
    ERROR_VARIABLE output)
  if(NOT result EQUAL 0)
    message(FATAL_ERROR "Cannot make the locale ${ORVEL_TEST_COMMA_LOCALE} (Debian: package locales): ${output}")
  endif()
endif()

set(ORVEL_TEST_FLAGS "" CACHE STRING "Compiler flags of the test programs alone")

# orvel_add_test(NAME SOURCES... [LIBRARIES ...]): a test program that ctest runs as one process; what fails in it
# prints its name.
#
# It runs with LOCPATH set to ORVEL_TEST_LOCPATH, so setlocale(LC_ALL, "de_DE.UTF-8") succeeds.
function(orvel_add_test name)
  cmake_parse_arguments(PARSE_ARGV 1 arg "" "" "SOURCES;LIBRARIES")
  add_executable(${name} ${arg_SOURCES})
  target_link_libraries(${name} PRIVATE orvel_test_support ${arg_LIBRARIES})
  target_precompile_headers(${name} REUSE_FROM orvel_test_support)
  add_test(NAME ${name} COMMAND ${name} --gtest_brief=1)
  set_tests_properties(${name} PROPERTIES TIMEOUT 1800 ENVIRONMENT LOCPATH=${ORVEL_TEST_LOCPATH})
endfunction()
