# One library target per folder below source/code, and one test program per folder below tests.

# trel_library(NAME SOURCES file... [PUBLIC target...] [PRIVATE target...])
#
# Makes the static library trel_NAME (a header-only folder becomes an interface library), known as
# trakdump::NAME, whose headers are included from the root source/code.
function(trel_library name)
  cmake_parse_arguments(ARG "" "" "SOURCES;PUBLIC;PRIVATE" ${ARGN})
  set(target trel_${name})
  if(ARG_SOURCES)
    add_library(${target} STATIC ${ARG_SOURCES})
    set(scope PUBLIC)
    target_link_libraries(${target} PRIVATE $<BUILD_INTERFACE:trel_strict> ${ARG_PRIVATE})
  else()
    add_library(${target} INTERFACE)
    set(scope INTERFACE)
  endif()
  add_library(trakdump::${name} ALIAS ${target})
  set_target_properties(${target} PROPERTIES EXPORT_NAME ${name})
  target_include_directories(
    ${target} ${scope} $<BUILD_INTERFACE:${PROJECT_SOURCE_DIR}/source/code>
                       $<INSTALL_INTERFACE:${CMAKE_INSTALL_INCLUDEDIR}/trakdump>)
  target_compile_features(${target} ${scope} cxx_std_20)
  target_link_libraries(${target} ${scope} ${ARG_PUBLIC})
  set_property(GLOBAL APPEND PROPERTY TREL_LIBRARIES ${target})
endfunction()

# trel_test(NAME [PREFIX text] SOURCES file... LINK target...)
#
# Makes the test program test_NAME and registers each of its tests with CTest, behind the prefix and
# under the label NAME.
function(trel_test name)
  cmake_parse_arguments(ARG "" "PREFIX" "SOURCES;LINK" ${ARGN})
  set(target test_${name})
  add_executable(${target} ${ARG_SOURCES})
  target_include_directories(${target} PRIVATE ${PROJECT_SOURCE_DIR}/tests)
  target_link_libraries(${target} PRIVATE trel_options ${ARG_LINK} GTest::gmock GTest::gtest_main)
  # Tests are many and run for an instant: what they are built with is chosen for a quick build.
  target_compile_options(${target} PRIVATE -O1 -g1)
  if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
    # What gcc 12 follows through inlined strings, maps and counting allocators ends in false alarms.
    target_compile_options(
      ${target} PRIVATE -Wno-mismatched-new-delete -Wno-array-bounds -Wno-stringop-overflow
                        -Wno-stringop-overread -Wno-maybe-uninitialized)
  endif()
  target_precompile_headers(${target} PRIVATE <gtest/gtest.h> <gmock/gmock.h>)
  gtest_discover_tests(
    ${target}
    TEST_PREFIX "${ARG_PREFIX}"
    PROPERTIES TIMEOUT 120 LABELS ${name}
    DISCOVERY_TIMEOUT 60)
endfunction()
