# What `cmake --install` lays down. The package and pokermath.pc find their prefix from where they
# are, so that an installed tree may be moved.

include(CMakePackageConfigHelpers)

set(package_dir ${CMAKE_INSTALL_LIBDIR}/cmake/pokermath)

install(TARGETS pokermath pokermath_static EXPORT pokermath)
if(TARGET pokermath_cli)
  install(TARGETS pokermath_cli)
endif()
install(DIRECTORY include/pokermath TYPE INCLUDE FILES_MATCHING PATTERN "*.h")

install(
  EXPORT pokermath
  FILE pokermath-targets.cmake
  NAMESPACE pokermath::
  DESTINATION ${package_dir})
configure_package_config_file(cmake/pokermath-config.cmake.in pokermath-config.cmake
                              INSTALL_DESTINATION ${package_dir})
write_basic_package_version_file(pokermath-config-version.cmake COMPATIBILITY SameMinorVersion)
install(FILES ${PROJECT_BINARY_DIR}/pokermath-config.cmake
              ${PROJECT_BINARY_DIR}/pokermath-config-version.cmake DESTINATION ${package_dir})

# APPEND leaves an absolute folder, which a packager may have chosen, as it is.
cmake_path(APPEND pc_libdir "\${prefix}" "${CMAKE_INSTALL_LIBDIR}")
cmake_path(APPEND pc_includedir "\${prefix}" "${CMAKE_INSTALL_INCLUDEDIR}")
cmake_path(RELATIVE_PATH CMAKE_INSTALL_PREFIX BASE_DIRECTORY
           "${CMAKE_INSTALL_FULL_LIBDIR}/pkgconfig" OUTPUT_VARIABLE pc_to_prefix)
list(TRANSFORM dependency_names PREPEND "-l" OUTPUT_VARIABLE pc_libs_private)
list(JOIN pc_libs_private " " pc_libs_private)
configure_file(cmake/pokermath.pc.in pokermath.pc @ONLY)
install(FILES ${PROJECT_BINARY_DIR}/pokermath.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig)

# The README links to docs/ beside it.
install(FILES LICENSE README.md CHANGELOG.md HACKING.md TYPE DOC)
install(DIRECTORY docs TYPE DOC FILES_MATCHING PATTERN "*.md" PATTERN "*.svg")
