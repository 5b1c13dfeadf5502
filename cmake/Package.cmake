# `cmake --install`: libraries, public headers, a CMake package and one pkg-config file per library.
#
# Nothing of what is installed names the prefix, so that the tree can be moved afterwards.
include(CMakePackageConfigHelpers)

if(IS_ABSOLUTE "${CMAKE_INSTALL_LIBDIR}" OR IS_ABSOLUTE "${CMAKE_INSTALL_INCLUDEDIR}")
  message(FATAL_ERROR "CMAKE_INSTALL_LIBDIR and CMAKE_INSTALL_INCLUDEDIR must be relative to the prefix")
endif()

install(TARGETS ORVELUtil ORVELMath ORVELSerialization ORVELBaseData
  EXPORT ORVELBaseDataTargets
  LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR})

# Every header below a library's folder is public, unless it lies in a folder named Private.
install(DIRECTORY
    Companions/ORVELUtil Companions/ORVELMath Companions/ORVELSerialization ORVELBaseData
  DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}
  FILES_MATCHING PATTERN "*.h"
  PATTERN Private EXCLUDE)

# The CMake package.
set(package_dir ${CMAKE_INSTALL_LIBDIR}/cmake/ORVELBaseData)
configure_package_config_file(cmake/ORVELBaseDataConfig.cmake.in package/ORVELBaseDataConfig.cmake
  INSTALL_DESTINATION ${package_dir}
  NO_SET_AND_CHECK_MACRO)
write_basic_package_version_file(package/ORVELBaseDataConfigVersion.cmake COMPATIBILITY SameMajorVersion)
install(FILES
    ${PROJECT_BINARY_DIR}/package/ORVELBaseDataConfig.cmake
    ${PROJECT_BINARY_DIR}/package/ORVELBaseDataConfigVersion.cmake
  DESTINATION ${package_dir})
install(EXPORT ORVELBaseDataTargets NAMESPACE ORVEL:: DESTINATION ${package_dir})

# orvel_install_pc(NAME DESCRIPTION [REQUIRES packages...] [LIBS flags...]): the pkg-config file of a library.
function(orvel_install_pc name description)
  cmake_parse_arguments(PARSE_ARGV 2 arg "" "" "REQUIRES;LIBS")
  set(pc_dir ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
  cmake_path(RELATIVE_PATH CMAKE_INSTALL_PREFIX BASE_DIRECTORY ${CMAKE_INSTALL_PREFIX}/${pc_dir}
    OUTPUT_VARIABLE path_to_prefix)
  list(JOIN arg_REQUIRES " " requires)
  list(JOIN arg_LIBS " " libs)
  configure_file(${PROJECT_SOURCE_DIR}/cmake/library.pc.in ${PROJECT_BINARY_DIR}/package/${name}.pc @ONLY)
  install(FILES ${PROJECT_BINARY_DIR}/package/${name}.pc DESTINATION ${pc_dir})
endfunction()

orvel_install_pc(ORVELUtil "ORVEL kit: object root, factory, errors, messages and logging"
  REQUIRES log4cplus)
orvel_install_pc(ORVELMath "ORVEL kit: numeric limits, distributions, rounding and comparison")
# Boost comes without pkg-config files.
orvel_install_pc(ORVELSerialization "ORVEL kit: serialisable objects and their archives"
  REQUIRES ORVELUtil
  LIBS -lboost_filesystem)
orvel_install_pc(ORVELBaseData "${PROJECT_DESCRIPTION}"
  REQUIRES ORVELSerialization ORVELMath)

# `cpack`: the same tree as one archive, to be unpacked anywhere.
set(CPACK_GENERATOR TGZ)
set(CPACK_PACKAGE_FILE_NAME "${PROJECT_NAME}-${PROJECT_VERSION}-${CMAKE_SYSTEM_NAME}-${CMAKE_SYSTEM_PROCESSOR}")
set(CPACK_PACKAGE_CHECKSUM SHA256)
set(CPACK_VERBATIM_VARIABLES ON)
include(CPack)
