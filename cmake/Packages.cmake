# Debian packages, one for each component that is installed: scripts/package makes them.
set(XRF_PACKAGE_CONTACT "The developers of xrf <xrf@example.org>" CACHE STRING
    "Maintainer named in the packages: name and address")

set(package_of_runtime libxrf${PROJECT_VERSION_MAJOR})
set(package_of_development libxrf-dev)
set(package_of_command xrf)
set(package_of_python python3-xrf)
set(components runtime development)
if(TARGET xrf_command)
  list(APPEND components command)
endif()
if(TARGET xrf_python)
  list(APPEND components python)
endif()

# Every package must carry its copyright and its changes. The date is that of SOURCE_DATE_EPOCH where
# it is set, so that the same sources give the same packages.
string(TIMESTAMP XRF_PACKAGE_DATE "%a, %d %b %Y %H:%M:%S +0000" UTC)
configure_file(${PROJECT_SOURCE_DIR}/packaging/changelog.in ${PROJECT_BINARY_DIR}/changelog @ONLY)
xrf_compressed(${PROJECT_BINARY_DIR}/changelog)
foreach(component IN LISTS components)
  set(folder ${CMAKE_INSTALL_DATADIR}/doc/${package_of_${component}})
  install(FILES ${PROJECT_SOURCE_DIR}/packaging/copyright DESTINATION ${folder}
          COMPONENT ${component})
  install(FILES ${PROJECT_BINARY_DIR}/changelog.gz DESTINATION ${folder} COMPONENT ${component})
endforeach()

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME xrf)
set(CPACK_PACKAGE_CONTACT "${XRF_PACKAGE_CONTACT}")
set(CPACK_PACKAGE_DIRECTORY ${PROJECT_BINARY_DIR}/packages)
set(CPACK_STRIP_FILES ON)
set(CPACK_COMPONENTS_ALL ${components})
set(CPACK_COMPONENTS_GROUPING IGNORE)
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)

set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS ${CMAKE_LIBRARY_OUTPUT_DIRECTORY})
set(CPACK_DEBIAN_ENABLE_COMPONENT_DEPENDS ON)
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS ON)
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS_POLICY ">=")

set(about "tells where in an FPGA's configuration memory the value of an RTL register
lives: the frame address and the bit offset at which readback delivers it. It
reads the netlists, the location file and the synthesis log of a build.")

set(CPACK_DEBIAN_RUNTIME_PACKAGE_NAME ${package_of_runtime})
set(CPACK_DEBIAN_RUNTIME_PACKAGE_SECTION libs)
set(CPACK_DEBIAN_RUNTIME_PACKAGE_CONTROL_EXTRA ${PROJECT_SOURCE_DIR}/packaging/triggers)
set(CPACK_DEBIAN_RUNTIME_DESCRIPTION
    "xrf ${about}\n.\nThis package holds the library, for programs that use it.")

set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_NAME ${package_of_development})
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_SECTION libdevel)
set(CPACK_COMPONENT_DEVELOPMENT_DEPENDS runtime)
set(CPACK_DEBIAN_DEVELOPMENT_DESCRIPTION
    "xrf ${about}\n.\nThis package holds what is needed to build against the library.")

set(CPACK_DEBIAN_COMMAND_PACKAGE_NAME ${package_of_command})
set(CPACK_DEBIAN_COMMAND_PACKAGE_SECTION electronics)
set(CPACK_COMPONENT_COMMAND_DEPENDS runtime)
set(CPACK_DEBIAN_COMMAND_DESCRIPTION
    "xrf ${about}\n.\nThis package holds the command, its manual pages and completions.")

# The extension is for one version of the interpreter alone, and what is compiled when Python first
# runs must go with the package: the scripts see to that.
if(TARGET xrf_python)
  math(EXPR next_minor "${Python3_VERSION_MINOR} + 1")
  set(CPACK_DEBIAN_PYTHON_PACKAGE_DEPENDS
      "python3 (>= 3.${Python3_VERSION_MINOR}), python3 (<< 3.${next_minor})")
endif()
set(CPACK_DEBIAN_PYTHON_PACKAGE_NAME ${package_of_python})
set(CPACK_DEBIAN_PYTHON_PACKAGE_SECTION python)
set(CPACK_DEBIAN_PYTHON_PACKAGE_SUGGESTS "python3-numpy, python3-pandas")
set(CPACK_DEBIAN_PYTHON_PACKAGE_CONTROL_EXTRA
    ${PROJECT_SOURCE_DIR}/packaging/python/postinst ${PROJECT_SOURCE_DIR}/packaging/python/prerm)
set(CPACK_COMPONENT_PYTHON_DEPENDS runtime)
set(CPACK_DEBIAN_PYTHON_DESCRIPTION
    "xrf ${about}\n.\nThis package holds the package xrf for Python.")
include(CPack)
