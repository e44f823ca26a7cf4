if(TARGET xrf)
  install(TARGETS xrf LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR})
  foreach(header IN LISTS XRF_PUBLIC_HEADERS)
    cmake_path(GET header PARENT_PATH folder)
    install(FILES ${PROJECT_SOURCE_DIR}/${header}
            DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/xrf/${folder})
  endforeach()
  foreach(header IN LISTS XRF_GENERATED_PUBLIC_HEADERS)
    cmake_path(GET header PARENT_PATH folder)
    install(FILES ${XRF_GENERATED_DIR}/${header}
            DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/xrf/${folder})
  endforeach()
endif()

if(TARGET xrf_command)
  file(RELATIVE_PATH library_from_command
       ${CMAKE_INSTALL_FULL_BINDIR} ${CMAKE_INSTALL_FULL_LIBDIR})
  set_target_properties(xrf_command PROPERTIES INSTALL_RPATH "$ORIGIN/${library_from_command}")
  install(TARGETS xrf_command RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR})
endif()
