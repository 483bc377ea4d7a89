# Settings that every target of the project shares, and how a shared library of it is made.

# The same numbers on every compiler: no contraction of a * b + c, no -ffast-math.
add_library(statpower_settings INTERFACE)
target_compile_options(statpower_settings INTERFACE -ffp-contract=off -Wall -Wextra -Wpedantic -Wshadow
                       -Wconversion -Wno-sign-conversion)
if(STATPOWER_WARNINGS_AS_ERRORS)
  target_compile_options(statpower_settings INTERFACE -Werror)
endif()
if(STATPOWER_SANITIZE)
  target_compile_options(statpower_settings INTERFACE -fsanitize=${STATPOWER_SANITIZE}
                         -fno-sanitize-recover=all -fno-omit-frame-pointer)
  target_link_options(statpower_settings INTERFACE -fsanitize=${STATPOWER_SANITIZE})
endif()

# Turns `target` into an installable shared library that exports only what is marked for export.
function(statpower_shared_library target)
  target_link_libraries(${target} PRIVATE $<BUILD_INTERFACE:statpower_settings>)
  target_include_directories(${target} PUBLIC
    $<BUILD_INTERFACE:${PROJECT_SOURCE_DIR}/include> $<INSTALL_INTERFACE:${CMAKE_INSTALL_INCLUDEDIR}>)
  target_compile_features(${target} PUBLIC cxx_std_17)
  target_link_options(${target} PRIVATE
    -Wl,--version-script=${PROJECT_SOURCE_DIR}/cmake/hide-standard-library.map)
  if(NOT STATPOWER_SANITIZE)
    target_link_options(${target} PRIVATE -Wl,--no-undefined)
  endif()
  set_target_properties(${target} PROPERTIES
    LINK_DEPENDS ${PROJECT_SOURCE_DIR}/cmake/hide-standard-library.map
    INSTALL_RPATH "$ORIGIN" INSTALL_RPATH_USE_LINK_PATH ON)
endfunction()
