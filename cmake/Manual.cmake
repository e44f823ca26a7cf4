# The manual pages. Those of the command are made of its help, so it has to run where it is built.
if(CMAKE_CROSSCOMPILING AND NOT CMAKE_CROSSCOMPILING_EMULATOR)
  xrf_missing("the manual pages need the command to run")
  return()
endif()

set(folder ${PROJECT_BINARY_DIR}/man)
set(pages xrf.1 xrf.5 xrf-build.1 xrf-info.1 xrf-find.1 xrf-whatis.1 xrf-tree.1 xrf-dump.1 xrf-emu.1
    xrf-meta.1 xrf-meta-check.1 xrf-meta-format.1)
list(TRANSFORM pages APPEND .gz OUTPUT_VARIABLE packed)
list(TRANSFORM packed PREPEND ${folder}/)
find_program(XRF_GZIP gzip REQUIRED)
add_custom_command(OUTPUT ${packed}
  COMMAND ${CMAKE_COMMAND} -E make_directory ${folder}
  COMMAND ${Python3_EXECUTABLE} -B ${PROJECT_SOURCE_DIR}/docs/man/pages.py
          $<TARGET_FILE:xrf_command> ${PROJECT_VERSION} ${folder}
  # Without the time of the compression, and with the pages themselves kept.
  COMMAND ${XRF_GZIP} -9nkf ${pages}
  WORKING_DIRECTORY ${folder}
  DEPENDS xrf_command ${PROJECT_SOURCE_DIR}/docs/man/pages.py
          ${PROJECT_SOURCE_DIR}/docs/xrf-format.md
  VERBATIM)
add_custom_target(xrf_manual ALL DEPENDS ${packed})

foreach(page IN LISTS pages)
  string(REGEX REPLACE ".*\\." "" number ${page})
  install(FILES ${folder}/${page}.gz DESTINATION ${CMAKE_INSTALL_MANDIR}/man${number}
          COMPONENT command)
endforeach()
