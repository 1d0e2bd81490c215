# What the project is built on. Each is found by its own CMake package or pkg-config file.
find_package(nlohmann_json 3.11 REQUIRED)

find_package(PkgConfig REQUIRED)
pkg_check_modules(ogg REQUIRED IMPORTED_TARGET ogg)

if(TRAKDUMP_TESTS)
  include(GoogleTest)
  find_package(GTest REQUIRED)
endif()
if(TRAKDUMP_BENCH)
  find_package(benchmark REQUIRED)
endif()
