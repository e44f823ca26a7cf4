# The metadata binding is generated when CMake configures, so that editors and checks see it, and anew
# when the schema or the generator changes.
find_package(Python3 REQUIRED COMPONENTS Interpreter)

set(XRF_GENERATED_DIR ${PROJECT_BINARY_DIR}/generated)
set(XRF_SCHEMA ${PROJECT_SOURCE_DIR}/ocl/src/shared/schemas/movrel.xsd)
set(XRF_BINDING_SOURCES
  ${XRF_GENERATED_DIR}/ocl/src/shared/schemas/HPIMovrelXmlReaderWriterLMX.cpp)

# xrf_generate(<script> <argument>...) runs a generator, none of which leaves anything beside itself.
function(xrf_generate script)
  execute_process(COMMAND ${Python3_EXECUTABLE} -B ${script} ${ARGN} COMMAND_ERROR_IS_FATAL ANY)
  set_property(DIRECTORY ${PROJECT_SOURCE_DIR} APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS
               ${script} ${XRF_SCHEMA} ${PROJECT_SOURCE_DIR}/ocl/src/shared/schemas/schema.py)
endfunction()

xrf_generate(${PROJECT_SOURCE_DIR}/ocl/src/shared/schemas/generate.py
             ${XRF_SCHEMA} ${XRF_GENERATED_DIR}/ocl/src/shared/schemas)
