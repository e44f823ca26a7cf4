# The objects are compiled once and used twice: by the shared library, and by the tests, which thus
# reach what the library does not export.
xrf_sources(XRF_LIBRARY_SOURCES support crossreference lmx60 hpi)
if(NOT XRF_LIBRARY_SOURCES)
  return()
endif()

find_package(EXPAT REQUIRED)

add_library(xrf_objects OBJECT ${XRF_LIBRARY_SOURCES} ${XRF_BINDING_SOURCES})
set_target_properties(xrf_objects PROPERTIES
  POSITION_INDEPENDENT_CODE ON
  CXX_VISIBILITY_PRESET hidden
  VISIBILITY_INLINES_HIDDEN ON)
target_compile_definitions(xrf_objects PRIVATE XRF_BUILDING)
target_include_directories(xrf_objects PUBLIC ${PROJECT_SOURCE_DIR} ${XRF_GENERATED_DIR})
target_link_libraries(xrf_objects PUBLIC EXPAT::EXPAT PRIVATE $<BUILD_INTERFACE:xrf_warnings>)
# Reading a netlist is a great many small calls from file to file. The objects hold plain code too,
# so that the tests, which are linked often, need not be optimised as a whole.
if(XRF_LTO)
  target_compile_options(xrf_objects PRIVATE
    -O3 -flto=auto -ffat-lto-objects -fno-semantic-interposition)
  target_link_options(xrf_objects INTERFACE -fno-lto)
endif()

add_library(xrf SHARED $<TARGET_OBJECTS:xrf_objects>)
add_library(xrf::xrf ALIAS xrf)
set_target_properties(xrf PROPERTIES
  VERSION ${PROJECT_VERSION}
  SOVERSION ${PROJECT_VERSION_MAJOR}
  LINKER_LANGUAGE CXX)
target_compile_features(xrf PUBLIC cxx_std_20)
target_include_directories(xrf PUBLIC
  $<BUILD_INTERFACE:${PROJECT_SOURCE_DIR}>
  $<BUILD_INTERFACE:${XRF_GENERATED_DIR}>
  $<INSTALL_INTERFACE:${CMAKE_INSTALL_INCLUDEDIR}/xrf>)
target_link_libraries(xrf PRIVATE EXPAT::EXPAT)
target_link_options(xrf PRIVATE LINKER:--no-undefined
  LINKER:--version-script=${PROJECT_SOURCE_DIR}/cmake/exports.map)
if(XRF_LTO)
  target_link_options(xrf PRIVATE -O3 -flto=auto)
endif()
set_property(TARGET xrf APPEND PROPERTY LINK_DEPENDS ${PROJECT_SOURCE_DIR}/cmake/exports.map)
