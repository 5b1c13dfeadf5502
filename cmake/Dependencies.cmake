# The libraries that the project calls, all from the distribution.

find_package(Boost 1.74 REQUIRED COMPONENTS filesystem)
find_package(PkgConfig REQUIRED)
find_package(log4cplus REQUIRED)
pkg_check_modules(XXHASH REQUIRED IMPORTED_TARGET libxxhash)
find_package(pugixml REQUIRED)
