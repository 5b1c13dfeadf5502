# Options of the build and the compiler flags that every target of the project shares.

option(ORVEL_BUILD_TESTS "Build the tests" ON)
option(ORVEL_BUILD_EXAMPLES "Build the examples" ON)
option(ORVEL_BUILD_BENCHMARKS "Build the benchmarks" OFF)
option(ORVEL_BUILD_FUZZERS "Build the fuzzers (clang only)" OFF)
option(ORVEL_WARNINGS_AS_ERRORS "Stop at the first compiler warning" OFF)
option(ORVEL_COVERAGE "Count the executed lines" OFF)
set(ORVEL_SANITIZE "" CACHE STRING "Sanitizers to build with, as for -fsanitize= (address,undefined or thread)")

if(NOT CMAKE_BUILD_TYPE AND NOT CMAKE_CONFIGURATION_TYPES)
  set(CMAKE_BUILD_TYPE Release CACHE STRING "Kind of build" FORCE)
endif()

# The public headers are C++17 and stay valid in C++20 and C++23; the build itself takes the oldest.
set(CMAKE_CXX_STANDARD 17)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_CXX_VISIBILITY_PRESET hidden)
set(CMAKE_VISIBILITY_INLINES_HIDDEN ON)
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)

include(GNUInstallDirs)
include(CheckCXXCompilerFlag)

add_library(orvel_options INTERFACE)
target_compile_options(orvel_options INTERFACE
  -Wall -Wextra -Wpedantic -Wconversion -Wshadow
  # Results must not depend on whether the compiler fuses a multiplication and an addition.
  -ffp-contract=off
  # Failures name their file by its path below the source tree, wherever the tree is.
  "-fmacro-prefix-map=${PROJECT_SOURCE_DIR}/=")

if(CMAKE_CXX_COMPILER_ID STREQUAL "Clang")
  # Comments name parameters that exist.
  target_compile_options(orvel_options INTERFACE -Wdocumentation)
endif()

# Nobody replaces a function of the libraries by one of the same name: calls within them may be direct.
check_cxx_compiler_flag(-fno-semantic-interposition ORVEL_HAS_NO_SEMANTIC_INTERPOSITION)
if(ORVEL_HAS_NO_SEMANTIC_INTERPOSITION)
  target_compile_options(orvel_options INTERFACE -fno-semantic-interposition)
endif()

# A symbol that is unique in the process keeps its library from being unloaded.
check_cxx_compiler_flag(-fno-gnu-unique ORVEL_HAS_NO_GNU_UNIQUE)
if(ORVEL_HAS_NO_GNU_UNIQUE)
  target_compile_options(orvel_options INTERFACE -fno-gnu-unique)
endif()
if(ORVEL_WARNINGS_AS_ERRORS)
  target_compile_options(orvel_options INTERFACE -Werror)
endif()
if(ORVEL_SANITIZE)
  target_compile_options(orvel_options INTERFACE
    -fsanitize=${ORVEL_SANITIZE} -fno-sanitize-recover=all -fno-omit-frame-pointer)
  target_link_options(orvel_options INTERFACE -fsanitize=${ORVEL_SANITIZE})
endif()
if(ORVEL_COVERAGE)
  target_compile_options(orvel_options INTERFACE --coverage)
  target_link_options(orvel_options INTERFACE --coverage)
endif()
