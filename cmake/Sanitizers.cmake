if(XRF_SANITIZE)
  add_compile_options(-fsanitize=${XRF_SANITIZE} -fno-sanitize-recover=all -fno-omit-frame-pointer)
  add_link_options(-fsanitize=${XRF_SANITIZE})
  if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
    # The instrumentation hides from g++ that a variable is set on every path.
    target_compile_options(xrf_warnings INTERFACE -Wno-maybe-uninitialized)
  endif()
endif()
