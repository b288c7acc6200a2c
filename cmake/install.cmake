# What `cmake --install` lays down. The package and pokermath.pc find their prefix from where they
# are, so that an installed tree may be moved.
#
# cmake/packages lays the same down in Debian's folders and in parts, each of which is a package: it
# sets pokermath_part_PART for each PART, the last words of rules for its files.

include(CMakePackageConfigHelpers)

# Libraries, headers, and what finds them; `folder` is for files that are made on the way.
function(pokermath_install_library folder)
  set(package_dir ${CMAKE_INSTALL_LIBDIR}/cmake/pokermath)
  install(
    TARGETS pokermath pokermath_static
    EXPORT pokermath${pokermath_export}
    LIBRARY ${pokermath_part_library}
    ARCHIVE ${pokermath_part_development})
  install(DIRECTORY ${PROJECT_SOURCE_DIR}/include/pokermath TYPE INCLUDE ${pokermath_part_development}
          FILES_MATCHING PATTERN "*.h")

  install(
    EXPORT pokermath${pokermath_export}
    FILE pokermath-targets.cmake
    NAMESPACE pokermath::
    DESTINATION ${package_dir} ${pokermath_part_development})
  configure_package_config_file(${PROJECT_SOURCE_DIR}/cmake/pokermath-config.cmake.in
                                ${folder}/pokermath-config.cmake INSTALL_DESTINATION ${package_dir})
  write_basic_package_version_file(${folder}/pokermath-config-version.cmake
                                   COMPATIBILITY SameMajorVersion)
  install(FILES ${folder}/pokermath-config.cmake ${folder}/pokermath-config-version.cmake
          DESTINATION ${package_dir} ${pokermath_part_development})

  # APPEND leaves an absolute folder, which a packager may have chosen, as it is.
  cmake_path(APPEND pc_libdir "\${prefix}" "${CMAKE_INSTALL_LIBDIR}")
  cmake_path(APPEND pc_includedir "\${prefix}" "${CMAKE_INSTALL_INCLUDEDIR}")
  cmake_path(ABSOLUTE_PATH CMAKE_INSTALL_LIBDIR BASE_DIRECTORY ${CMAKE_INSTALL_PREFIX}
             OUTPUT_VARIABLE full_libdir)
  cmake_path(RELATIVE_PATH CMAKE_INSTALL_PREFIX BASE_DIRECTORY "${full_libdir}/pkgconfig"
             OUTPUT_VARIABLE pc_to_prefix)
  list(TRANSFORM dependency_names PREPEND "-l" OUTPUT_VARIABLE pc_libs_private)
  list(JOIN pc_libs_private " " pc_libs_private)
  configure_file(${PROJECT_SOURCE_DIR}/cmake/pokermath.pc.in ${folder}/pokermath.pc @ONLY)
  install(FILES ${folder}/pokermath.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig
                                                   ${pokermath_part_development})
endfunction()

# The tool, its man page, and completion where each shell looks for what packages bring.
function(pokermath_install_tool)
  install(TARGETS pokermath_cli RUNTIME ${pokermath_part_tool})
  set(pages ${PROJECT_BINARY_DIR}/cli)
  install(FILES ${pages}/pokermath.1.gz DESTINATION ${CMAKE_INSTALL_MANDIR}/man1
                                                    ${pokermath_part_tool})
  foreach(completion bash-completion/completions/pokermath zsh/vendor-completions/_pokermath
                     fish/vendor_completions.d/pokermath.fish)
    string(REGEX MATCH "^[a-z]+" shell ${completion})
    cmake_path(GET completion PARENT_PATH folder)
    cmake_path(GET completion FILENAME name)
    install(
      FILES ${pages}/completion.${shell}
      DESTINATION ${CMAKE_INSTALL_DATADIR}/${folder}
      RENAME ${name} ${pokermath_part_tool})
  endforeach()
endfunction()

# The README links to docs/ and other papers beside it; the scripts there are for the sources.
function(pokermath_install_docs)
  install(FILES ${PROJECT_SOURCE_DIR}/README.md TYPE DOC ${pokermath_part_tool})
  foreach(paper HACKING.md CONTRIBUTING.md SECURITY.md CITATION.cff)
    install(FILES ${PROJECT_SOURCE_DIR}/${paper} TYPE DOC ${pokermath_part_development})
  endforeach()
  install(DIRECTORY ${PROJECT_SOURCE_DIR}/docs TYPE DOC ${pokermath_part_development}
          PATTERN "*.sh" EXCLUDE
          PATTERN "*.sed" EXCLUDE
          PATTERN "Doxyfile" EXCLUDE)
endfunction()

pokermath_install_library(${PROJECT_BINARY_DIR})
if(TARGET pokermath_cli)
  pokermath_install_tool()
endif()
pokermath_install_docs()
install(FILES LICENSE CHANGELOG.md TYPE DOC)
