# orvel_add_library(NAME INCLUDE_ROOT DIR): one of the shared libraries of the kit.
#
# Makes the target NAME with its alias ORVEL::<NAME without the leading ORVEL>. Sources are listed in the
# folders with target_sources. INCLUDE_ROOT is the folder that #include <NAME/...> starts from.
function(orvel_add_library name)
  cmake_parse_arguments(PARSE_ARGV 1 arg "" "INCLUDE_ROOT" "")
  string(REGEX REPLACE "^ORVEL" "" short_name ${name})

  add_library(${name} SHARED)
  add_library(ORVEL::${short_name} ALIAS ${name})
  set_target_properties(${name} PROPERTIES
    EXPORT_NAME ${short_name}
    VERSION ${PROJECT_VERSION}
    SOVERSION ${PROJECT_VERSION_MAJOR}
    LIBRARY_OUTPUT_DIRECTORY ${PROJECT_BINARY_DIR}/lib
    # A library finds its companions beside itself, so that an installed tree can be moved.
    INSTALL_RPATH "$ORIGIN")
  target_link_libraries(${name} PRIVATE $<BUILD_INTERFACE:orvel_options>)
  if(ORVEL_COVERAGE)
    # Threads of the tests count in the libraries at once; plain counters would come out negative.
    target_compile_options(${name} PRIVATE -fprofile-update=atomic)
  endif()
  target_compile_features(${name} PUBLIC cxx_std_17)
  target_include_directories(${name} PUBLIC
    $<BUILD_INTERFACE:${arg_INCLUDE_ROOT}>
    $<INSTALL_INTERFACE:${CMAKE_INSTALL_INCLUDEDIR}>)
  target_link_options(${name} PRIVATE "LINKER:--version-script=${PROJECT_SOURCE_DIR}/cmake/exports.map")
  set_property(TARGET ${name} APPEND PROPERTY LINK_DEPENDS ${PROJECT_SOURCE_DIR}/cmake/exports.map)
  if(NOT ORVEL_SANITIZE)
    # An operation that is declared but not written is named here, not when a program is linked. (The functions
    # of the sanitizers come with the program.)
    target_link_options(${name} PRIVATE LINKER:-z,defs)
  endif()
  string(TOUPPER ${name} upper_name)
  target_compile_definitions(${name} PRIVATE ${upper_name}_BUILD)
  # Linkers drop a library that no symbol is taken from. A program that only creates objects by class name
  # takes no symbol, yet needs the classes that the library registers at load.
  target_link_options(${name} INTERFACE
    "LINKER:--push-state,--no-as-needed,$<TARGET_FILE:ORVEL::${short_name}>,--pop-state")
endfunction()
