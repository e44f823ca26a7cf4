# What is installed, in four components: runtime (the library for programs), development (what links
# against it), command and python.
include(CMakePackageConfigHelpers)

set(XRF_CMAKE_PACKAGE_DIR ${CMAKE_INSTALL_LIBDIR}/cmake/xrf)

install(TARGETS xrf EXPORT xrf-targets
  LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT runtime NAMELINK_COMPONENT development)

foreach(header IN LISTS XRF_PUBLIC_HEADERS)
  cmake_path(GET header PARENT_PATH folder)
  install(FILES ${PROJECT_SOURCE_DIR}/${header}
          DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/xrf/${folder} COMPONENT development)
endforeach()
foreach(header IN LISTS XRF_GENERATED_PUBLIC_HEADERS)
  cmake_path(GET header PARENT_PATH folder)
  install(FILES ${XRF_GENERATED_DIR}/${header}
          DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/xrf/${folder} COMPONENT development)
endforeach()

install(EXPORT xrf-targets NAMESPACE xrf:: DESTINATION ${XRF_CMAKE_PACKAGE_DIR}
        COMPONENT development)
configure_package_config_file(${PROJECT_SOURCE_DIR}/cmake/xrf-config.cmake.in
  ${PROJECT_BINARY_DIR}/xrf-config.cmake INSTALL_DESTINATION ${XRF_CMAKE_PACKAGE_DIR}
  NO_SET_AND_CHECK_MACRO)
# The SONAME is the major number, and so is what a user may rely on.
write_basic_package_version_file(${PROJECT_BINARY_DIR}/xrf-config-version.cmake
  COMPATIBILITY SameMajorVersion)
install(FILES ${PROJECT_BINARY_DIR}/xrf-config.cmake ${PROJECT_BINARY_DIR}/xrf-config-version.cmake
        DESTINATION ${XRF_CMAKE_PACKAGE_DIR} COMPONENT development)

# Found from where the file lies, so that an installed tree may be moved.
file(RELATIVE_PATH XRF_PREFIX_FROM_PC
     ${CMAKE_INSTALL_FULL_LIBDIR}/pkgconfig ${CMAKE_INSTALL_PREFIX})
configure_file(${PROJECT_SOURCE_DIR}/cmake/xrf.pc.in ${PROJECT_BINARY_DIR}/xrf.pc @ONLY)
install(FILES ${PROJECT_BINARY_DIR}/xrf.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig
        COMPONENT development)

if(TARGET xrf_command)
  # A system's own folders need no help to be found.
  if(NOT CMAKE_INSTALL_PREFIX STREQUAL "/usr")
    file(RELATIVE_PATH library_from_command
         ${CMAKE_INSTALL_FULL_BINDIR} ${CMAKE_INSTALL_FULL_LIBDIR})
    set_target_properties(xrf_command PROPERTIES INSTALL_RPATH "$ORIGIN/${library_from_command}")
  endif()
  install(TARGETS xrf_command RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR} COMPONENT command)

  # Each shell looks for completions in a folder of its own, and zsh below /usr in that of vendors.
  set(zsh_completions site-functions)
  if(CMAKE_INSTALL_PREFIX STREQUAL "/usr")
    set(zsh_completions vendor-completions)
  endif()
  set(completions ${PROJECT_SOURCE_DIR}/tools/completions)
  install(FILES ${completions}/xrf.bash RENAME xrf COMPONENT command
          DESTINATION ${CMAKE_INSTALL_DATADIR}/bash-completion/completions)
  install(FILES ${completions}/_xrf COMPONENT command
          DESTINATION ${CMAKE_INSTALL_DATADIR}/zsh/${zsh_completions})
  install(FILES ${completions}/xrf.fish COMPONENT command
          DESTINATION ${CMAKE_INSTALL_DATADIR}/fish/vendor_completions.d)
  include(Manual)
endif()

if(TARGET xrf_python)
  # Below /usr, Debian has one folder for all versions, and elsewhere one for each.
  set(python_folder python${Python3_VERSION_MAJOR}.${Python3_VERSION_MINOR})
  if(CMAKE_INSTALL_PREFIX STREQUAL "/usr")
    set(python_folder python3)
  endif()
  set(XRF_PYTHON_INSTALL_DIR lib/${python_folder}/dist-packages CACHE STRING
      "Where Python looks for packages, below the prefix")
  set(package ${XRF_PYTHON_INSTALL_DIR}/xrf)
  if(NOT CMAKE_INSTALL_PREFIX STREQUAL "/usr")
    file(RELATIVE_PATH library_from_package
         ${CMAKE_INSTALL_PREFIX}/${package} ${CMAKE_INSTALL_FULL_LIBDIR})
    set_target_properties(xrf_python PROPERTIES INSTALL_RPATH "$ORIGIN/${library_from_package}")
  endif()
  install(TARGETS xrf_python LIBRARY DESTINATION ${package} COMPONENT python)
  foreach(file IN LISTS XRF_PYTHON_FILES)
    cmake_path(GET file PARENT_PATH folder)
    install(FILES ${XRF_PYTHON_DIR}/xrf/${file} DESTINATION ${package}/${folder} COMPONENT python)
  endforeach()
endif()
