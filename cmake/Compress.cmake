# xrf_compressed(<file>) makes <file>.gz in the binary folder of the project, as Debian wants
# documentation that is installed: without the time of the compression in it.
find_program(XRF_GZIP gzip REQUIRED)
function(xrf_compressed file)
  cmake_path(GET file FILENAME name)
  set(output ${PROJECT_BINARY_DIR}/${name}.gz)
  add_custom_command(OUTPUT ${output}
    COMMAND ${XRF_GZIP} -9nc ${file} > ${output}
    DEPENDS ${file} VERBATIM)
  string(MAKE_C_IDENTIFIER "xrf_compressed_${name}" target)
  add_custom_target(${target} ALL DEPENDS ${output})
endfunction()
