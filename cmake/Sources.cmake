# xrf_sources(<variable> <folder>...) sets <variable> to every C++ source of the folders. A folder
# without any is an error: a target that silently shrinks would be noticed far too late.
function(xrf_sources variable)
  set(all "")
  foreach(folder IN LISTS ARGN)
    file(GLOB sources CONFIGURE_DEPENDS "${PROJECT_SOURCE_DIR}/${folder}/*.cpp")
    if(NOT sources)
      xrf_missing("${folder}/ holds no *.cpp")
    endif()
    list(APPEND all ${sources})
  endforeach()
  set(${variable} "${all}" PARENT_SCOPE)
endfunction()

# XRF_MISSING says how loudly a part that is not there is reported.
set(XRF_MISSING FATAL_ERROR)
function(xrf_missing what)
  message(${XRF_MISSING} "xrf: ${what}; what needs it is left out")
endfunction()
