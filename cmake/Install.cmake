# Installed: the libraries, the headers, the command, and for the power library and the planner each a CMake package
# and a pkg-config file.
include(CMakePackageConfigHelpers)

install(DIRECTORY include/ DESTINATION ${CMAKE_INSTALL_INCLUDEDIR})
install(TARGETS statpower EXPORT statpower)
if(STATPOWER_COMMON_LIBRARY)
  # By name, as its path would be what is looked for when loading, should it have no soname.
  cmake_path(GET STATPOWER_COMMON_LIBRARY PARENT_PATH common_directory)
  cmake_path(GET STATPOWER_COMMON_LIBRARY FILENAME common_file)
  set(STATPOWER_COMMON_FLAGS "-L${common_directory} -l:${common_file}")
else()
  install(TARGETS orvcommon940r EXPORT statpower)
  set(STATPOWER_COMMON_FLAGS "-lorvcommon940r")
endif()
install(TARGETS statplan EXPORT statplan)
if(STATPOWER_BUILD_CLI)
  install(TARGETS statpower_cli)
  add_custom_command(OUTPUT statpower.1 COMMAND statpower_cli man > statpower.1 DEPENDS statpower_cli VERBATIM)
  add_custom_target(manual ALL DEPENDS statpower.1)
  install(FILES ${PROJECT_BINARY_DIR}/statpower.1 DESTINATION ${CMAKE_INSTALL_MANDIR}/man1)
  install(FILES completions/statpower.bash DESTINATION ${CMAKE_INSTALL_DATADIR}/bash-completion/completions
          RENAME statpower)
  install(FILES completions/_statpower DESTINATION ${CMAKE_INSTALL_DATADIR}/zsh/site-functions)
  install(FILES completions/statpower.fish DESTINATION ${CMAKE_INSTALL_DATADIR}/fish/vendor_completions.d)
endif()

# The way from a pkg-config file back to the prefix, so that an installed tree can be moved.
file(RELATIVE_PATH RELATIVE_PREFIX ${CMAKE_INSTALL_FULL_LIBDIR}/pkgconfig ${CMAKE_INSTALL_PREFIX})

# find_package(NAME) and pkg-config NAME, for the targets of the export set NAME.
function(statpower_install_package name)
  set(package_dir ${CMAKE_INSTALL_LIBDIR}/cmake/${name})
  install(EXPORT ${name} NAMESPACE ${name}:: DESTINATION ${package_dir} FILE ${name}Targets.cmake)
  configure_package_config_file(cmake/${name}Config.cmake.in ${name}Config.cmake INSTALL_DESTINATION ${package_dir})
  write_basic_package_version_file(${name}ConfigVersion.cmake COMPATIBILITY SameMinorVersion)
  install(FILES ${PROJECT_BINARY_DIR}/${name}Config.cmake ${PROJECT_BINARY_DIR}/${name}ConfigVersion.cmake
          DESTINATION ${package_dir})
  configure_file(cmake/${name}.pc.in ${name}.pc @ONLY)
  install(FILES ${PROJECT_BINARY_DIR}/${name}.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
endfunction()

statpower_install_package(statpower)
statpower_install_package(statplan)

# The page, where scripts/page has built it.
install(FILES ${PROJECT_SOURCE_DIR}/build/page/statpower.html DESTINATION ${CMAKE_INSTALL_DATADIR}/statpower OPTIONAL)
