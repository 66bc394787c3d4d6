# What goes where with "cmake --install": the library, its headers, a pkg-config file, a
# CMake package, and the tool. The stand-in for the base library stays here: an appliance
# has its own. The node and the lab are for development machines.
include(GNUInstallDirs)
include(CMakePackageConfigHelpers)

set(public_headers kevacore zor_conf zor_constraint zor_core zor_encinfo zor_filelock
  zor_hwinfo_core zor_status zor_webapi_core)
list(TRANSFORM public_headers PREPEND ${PROJECT_SOURCE_DIR}/include/)
list(TRANSFORM public_headers APPEND .h)
install(FILES ${public_headers} DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/kevazor
  COMPONENT development)

install(TARGETS kevazorcore LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR}
  COMPONENT runtime NAMELINK_COMPONENT development)

configure_package_config_file(${CMAKE_CURRENT_LIST_DIR}/kevazorcore-config.cmake.in
  ${PROJECT_BINARY_DIR}/kevazorcore-config.cmake
  INSTALL_DESTINATION ${CMAKE_INSTALL_LIBDIR}/cmake/kevazorcore
  PATH_VARS CMAKE_INSTALL_LIBDIR CMAKE_INSTALL_INCLUDEDIR)
write_basic_package_version_file(${PROJECT_BINARY_DIR}/kevazorcore-config-version.cmake
  COMPATIBILITY SameMajorVersion)
# From the place of the pkg-config file itself, so that the folder can be moved.
file(RELATIVE_PATH prefix_from_pkgconfig /prefix/${CMAKE_INSTALL_LIBDIR}/pkgconfig /prefix)
configure_file(${CMAKE_CURRENT_LIST_DIR}/kevazorcore.pc.in ${PROJECT_BINARY_DIR}/kevazorcore.pc
  @ONLY)
install(FILES
  ${PROJECT_BINARY_DIR}/kevazorcore-config.cmake
  ${PROJECT_BINARY_DIR}/kevazorcore-config-version.cmake
  DESTINATION ${CMAKE_INSTALL_LIBDIR}/cmake/kevazorcore COMPONENT development)
install(FILES ${PROJECT_BINARY_DIR}/kevazorcore.pc
  DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig COMPONENT development)

install(TARGETS zorctl RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR} COMPONENT tools)
if(KEVAZOR_PLATFORM STREQUAL "stand-in")
  set(lab_folder ${CMAKE_INSTALL_LIBDIR}/kevazor-lab)
  install(TARGETS kevacore LIBRARY DESTINATION ${lab_folder} COMPONENT lab NAMELINK_SKIP
    EXCLUDE_FROM_ALL)
  install(TARGETS zorlab zornode RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR} COMPONENT lab
    EXCLUDE_FROM_ALL)
  install(FILES ${PROJECT_SOURCE_DIR}/lab/chassis.yaml
    DESTINATION ${CMAKE_INSTALL_DATADIR}/kevazor-lab COMPONENT lab EXCLUDE_FROM_ALL)
endif()
