# One library target per folder below source/code, and one test program per folder below tests.

# trel_compile_together(TARGET COUNT file...): compiles the target's files COUNT at a time (0: all of
# them), but for those named.
function(trel_compile_together target count)
  set_target_properties(${target} PROPERTIES UNITY_BUILD ON UNITY_BUILD_BATCH_SIZE ${count})
  set_source_files_properties(${ARGN} PROPERTIES SKIP_UNITY_BUILD_INCLUSION ON)
endfunction()

# trel_library(NAME SOURCES file... [ALONE file...] [PUBLIC target...] [PRIVATE target...])
#
# Makes the static library trel_NAME (a header-only folder becomes an interface library), known as
# trakdump::NAME, whose headers are included from the root source/code. With
# TRAKDUMP_UNITY_LIBRARIES its SOURCES are compiled ten at a time, since they share most of what they
# instantiate: so they must not give one name to two things. The files ALONE may.
function(trel_library name)
  cmake_parse_arguments(ARG "" "" "SOURCES;ALONE;PUBLIC;PRIVATE" ${ARGN})
  set(target trel_${name})
  if(ARG_SOURCES)
    add_library(${target} STATIC ${ARG_SOURCES} ${ARG_ALONE})
    set(scope PUBLIC)
    target_link_libraries(${target} PRIVATE $<BUILD_INTERFACE:trel_strict> ${ARG_PRIVATE})
    trel_use_precompiled(${target} library)
    if(TRAKDUMP_UNITY_LIBRARIES)
      trel_compile_together(${target} 10 ${ARG_ALONE})
    endif()
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

# All test programs share one precompiled header too, in every build: what they are built with is
# chosen for a quick build, as tests are many and run for an instant.
if(TRAKDUMP_TESTS)
  add_library(trel_test_options INTERFACE)
  target_link_libraries(trel_test_options INTERFACE trel_options GTest::gmock GTest::gtest_main)
  # As libraries are, so that both can share the header.
  target_compile_options(trel_test_options INTERFACE ${TRAKDUMP_TEST_FLAGS} -fPIC)
  # What gcc 12 follows through inlined strings, maps and counting allocators ends in false alarms.
  target_compile_options(
    trel_test_options
    INTERFACE
      $<$<CXX_COMPILER_ID:GNU>:-Wno-mismatched-new-delete;-Wno-array-bounds;-Wno-stringop-overflow;-Wno-stringop-overread;-Wno-maybe-uninitialized>
  )
  file(CONFIGURE OUTPUT ${PROJECT_BINARY_DIR}/precompiled/test.cpp CONTENT "// nothing\n")
  add_library(test_precompiled OBJECT ${PROJECT_BINARY_DIR}/precompiled/test.cpp)
  target_link_libraries(test_precompiled PRIVATE trel_test_options nlohmann_json::nlohmann_json)
  target_precompile_headers(
    test_precompiled PRIVATE <gtest/gtest.h> <gmock/gmock.h> <fstream> <nlohmann/json.hpp>)
endif()

# Clang's builds under the sanitizers compile the headers of others once for all libraries and fuzz
# targets, too, and let the tools share those of the tests. Those of gcc, which are shipped, show that
# each source includes what it uses.
if(TRAKDUMP_SANITIZE AND CMAKE_CXX_COMPILER_ID STREQUAL "Clang")
  file(CONFIGURE OUTPUT ${PROJECT_BINARY_DIR}/precompiled/library.cpp CONTENT "// nothing\n")
  add_library(library_precompiled OBJECT ${PROJECT_BINARY_DIR}/precompiled/library.cpp)
  target_link_libraries(library_precompiled PRIVATE trel_strict nlohmann_json::nlohmann_json)
  target_precompile_headers(
    library_precompiled
    PRIVATE
    <algorithm>
    <array>
    <map>
    <memory>
    <string>
    <tuple>
    <valarray>
    <variant>
    <vector>
    <nlohmann/json.hpp>)
endif()

# trel_use_precompiled(TARGET library|test): lets a target take part in that; what shares the header
# of the tests is built as they are.
function(trel_use_precompiled target kind)
  if(TARGET library_precompiled AND TARGET ${kind}_precompiled)
    target_precompile_headers(${target} REUSE_FROM ${kind}_precompiled)
    if(kind STREQUAL "test")
      target_compile_options(${target} PRIVATE ${TRAKDUMP_TEST_FLAGS} -fPIC)
    endif()
  endif()
endfunction()

# trel_test(NAME [SHIPPED] [PREFIX text] SOURCES file... [ALONE file...] LINK target...)
#
# Makes the test program test_NAME and registers each of its tests with CTest, behind the prefix and
# under the label NAME; under the sanitizers it is registered as a whole, since starting a program is
# dear there. With TRAKDUMP_UNITY_TESTS its SOURCES are compiled as one, since what their headers
# bring costs more than they do: so they must not give one name to two things. The files ALONE may.
# SHIPPED makes the label shipped-NAME: what the optimised build could break by itself.
function(trel_test name)
  cmake_parse_arguments(ARG "SHIPPED" "PREFIX" "SOURCES;ALONE;LINK" ${ARGN})
  set(target test_${name})
  set(label ${name})
  if(ARG_SHIPPED)
    set(label shipped-${name})
    set_property(GLOBAL APPEND PROPERTY TREL_SHIPPED_TESTS ${target})
  endif()
  set_property(GLOBAL APPEND PROPERTY TREL_TESTS ${target})
  add_executable(${target} ${ARG_SOURCES} ${ARG_ALONE})
  target_include_directories(${target} PRIVATE ${PROJECT_SOURCE_DIR}/tests)
  target_link_libraries(${target} PRIVATE trel_test_options ${ARG_LINK})
  target_precompile_headers(${target} REUSE_FROM test_precompiled)
  if(TRAKDUMP_UNITY_TESTS)
    trel_compile_together(${target} 0 ${ARG_ALONE})
  endif()
  if(TRAKDUMP_SANITIZE)
    add_test(NAME ${target} COMMAND ${target})
    set_tests_properties(${target} PROPERTIES TIMEOUT 600 LABELS ${label})
  else()
    gtest_discover_tests(
      ${target}
      TEST_PREFIX "${ARG_PREFIX}"
      PROPERTIES TIMEOUT 120 LABELS ${label}
      DISCOVERY_TIMEOUT 60)
  endif()
endfunction()
