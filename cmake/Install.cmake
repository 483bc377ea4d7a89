# Installed: the two libraries, the headers, the command, a CMake package and a pkg-config file.
include(CMakePackageConfigHelpers)

install(DIRECTORY include/ DESTINATION ${CMAKE_INSTALL_INCLUDEDIR})
install(TARGETS statpower EXPORT statpower)
if(STATPOWER_COMMON_LIBRARY)
  set(STATPOWER_COMMON_FLAGS ${STATPOWER_COMMON_LIBRARY})
else()
  install(TARGETS orvcommon940r EXPORT statpower)
  set(STATPOWER_COMMON_FLAGS "-lorvcommon940r")
endif()
if(STATPOWER_BUILD_CLI)
  install(TARGETS statpower_cli)
endif()

set(package_dir ${CMAKE_INSTALL_LIBDIR}/cmake/statpower)
install(EXPORT statpower NAMESPACE statpower:: DESTINATION ${package_dir} FILE statpowerTargets.cmake)
configure_package_config_file(cmake/statpowerConfig.cmake.in statpowerConfig.cmake
                              INSTALL_DESTINATION ${package_dir})
write_basic_package_version_file(statpowerConfigVersion.cmake COMPATIBILITY SameMinorVersion)
install(FILES ${PROJECT_BINARY_DIR}/statpowerConfig.cmake ${PROJECT_BINARY_DIR}/statpowerConfigVersion.cmake
        DESTINATION ${package_dir})

# The way from the pkg-config file back to the prefix, so that an installed tree can be moved.
file(RELATIVE_PATH RELATIVE_PREFIX ${CMAKE_INSTALL_FULL_LIBDIR}/pkgconfig ${CMAKE_INSTALL_PREFIX})
configure_file(cmake/statpower.pc.in statpower.pc @ONLY)
install(FILES ${PROJECT_BINARY_DIR}/statpower.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
