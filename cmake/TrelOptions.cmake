# How everything of the project is compiled. Consumers of the installed library see none of it.
add_library(trel_options INTERFACE)

target_compile_features(trel_options INTERFACE cxx_std_20)

# Products and sums of decoded values are rounded one after the other on every machine.
target_compile_options(trel_options INTERFACE -ffp-contract=off)

# Whoever links the library into a shared object does not replace single functions of it, so that
# calls within a source can be inlined. Clang takes that for granted.
target_compile_options(
  trel_options INTERFACE $<$<CXX_COMPILER_ID:GNU>:-fno-semantic-interposition>)

target_compile_options(
  trel_options INTERFACE -Wall -Wextra -Wpedantic -Wshadow -Wnon-virtual-dtor -Woverloaded-virtual)
# gcc 12 sees overlapping copies in optimised sums of strings, where there are none.
if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU" AND CMAKE_CXX_COMPILER_VERSION VERSION_LESS 13
   AND NOT CMAKE_BUILD_TYPE STREQUAL "Debug")
  target_compile_options(trel_options INTERFACE -Wno-restrict)
endif()
if(TRAKDUMP_WERROR)
  target_compile_options(trel_options INTERFACE -Werror)
endif()

if(TRAKDUMP_SANITIZE)
  target_compile_options(
    trel_options INTERFACE -fsanitize=${TRAKDUMP_SANITIZE} -fno-sanitize-recover=all
                           -fno-omit-frame-pointer)
  target_compile_definitions(trel_options INTERFACE _GLIBCXX_ASSERTIONS)
  # The checks that gcc weaves in hide from it where the standard library sets its own members.
  target_compile_options(
    trel_options INTERFACE $<$<CXX_COMPILER_ID:GNU>:-Wno-maybe-uninitialized>)
  target_link_options(trel_options INTERFACE -fsanitize=${TRAKDUMP_SANITIZE})
  # What the sanitizers add makes programs of many megabytes: clang's own linker is quick with them.
  find_program(TREL_LLD ld.lld)
  if(TREL_LLD AND CMAKE_CXX_COMPILER_ID STREQUAL "Clang")
    target_link_options(trel_options INTERFACE -fuse-ld=lld)
  endif()
endif()

# The system's own code answers for each narrowing; tests and tools need not.
add_library(trel_strict INTERFACE)
target_link_libraries(trel_strict INTERFACE trel_options)
target_compile_options(trel_strict INTERFACE -Wconversion -Wno-sign-conversion)

if(PROJECT_IS_TOP_LEVEL AND NOT CMAKE_BUILD_TYPE AND NOT CMAKE_CONFIGURATION_TYPES)
  set(CMAKE_BUILD_TYPE Release CACHE STRING "Build type" FORCE)
endif()
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)
