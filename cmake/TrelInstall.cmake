# What `cmake --install` lays down: the program with its manual page, and the library as a CMake
# package (find_package(trakdump)) and a pkg-config module (trakdump), both free to be moved.
include(CMakePackageConfigHelpers)

get_property(libraries GLOBAL PROPERTY TREL_LIBRARIES)
set(package_dir ${CMAKE_INSTALL_LIBDIR}/cmake/trakdump)
set(pkgconfig_dir ${CMAKE_INSTALL_LIBDIR}/pkgconfig)

install(TARGETS trakdump RUNTIME)
install(FILES ${PROJECT_SOURCE_DIR}/docs/trakdump.1 DESTINATION ${CMAKE_INSTALL_MANDIR}/man1)

install(TARGETS ${libraries} EXPORT trakdumpTargets ARCHIVE)
foreach(library IN LISTS libraries)
  get_target_property(folder ${library} SOURCE_DIR)
  install(
    DIRECTORY ${folder}
    DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/trakdump
    FILES_MATCHING
    PATTERN *.h
    PATTERN *.def)
endforeach()

install(
  EXPORT trakdumpTargets
  NAMESPACE trakdump::
  DESTINATION ${package_dir})
configure_package_config_file(
  ${PROJECT_SOURCE_DIR}/cmake/trakdumpConfig.cmake.in ${PROJECT_BINARY_DIR}/trakdumpConfig.cmake
  INSTALL_DESTINATION ${package_dir}
  NO_SET_AND_CHECK_MACRO)
write_basic_package_version_file(
  ${PROJECT_BINARY_DIR}/trakdumpConfigVersion.cmake COMPATIBILITY SameMajorVersion)
install(FILES ${PROJECT_BINARY_DIR}/trakdumpConfig.cmake
              ${PROJECT_BINARY_DIR}/trakdumpConfigVersion.cmake
        DESTINATION ${package_dir})

# The linker reads archives from left to right, so the highest floor comes first. A library without
# an archive has headers only.
set(archives "")
foreach(library IN LISTS libraries)
  get_target_property(type ${library} TYPE)
  if(type STREQUAL "STATIC_LIBRARY")
    string(PREPEND archives " -l${library}")
  endif()
endforeach()
set(full_pkgconfig_dir ${CMAKE_INSTALL_FULL_LIBDIR}/pkgconfig)
file(RELATIVE_PATH libdir_from_here ${full_pkgconfig_dir} ${CMAKE_INSTALL_FULL_LIBDIR})
file(RELATIVE_PATH includedir_from_here ${full_pkgconfig_dir} ${CMAKE_INSTALL_FULL_INCLUDEDIR})
configure_file(${PROJECT_SOURCE_DIR}/cmake/trakdump.pc.in ${PROJECT_BINARY_DIR}/trakdump.pc @ONLY)
install(FILES ${PROJECT_BINARY_DIR}/trakdump.pc DESTINATION ${pkgconfig_dir})
