# xrf_warnings is linked PRIVATE by every target of ours. Headers of other projects reach us through
# imported targets, which CMake passes as system headers, so their warnings do not count.
add_library(xrf_warnings INTERFACE)
target_compile_options(xrf_warnings INTERFACE -Wall -Wextra -Wpedantic -Wconversion -Wshadow)

if(XRF_WARNINGS_AS_ERRORS)
  target_compile_options(xrf_warnings INTERFACE -Werror)
endif()

if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU" AND CMAKE_CXX_COMPILER_VERSION VERSION_LESS 13)
  # g++ 12 warns of overlapping copies inside std::string's operator+ where there are none.
  target_compile_options(xrf_warnings INTERFACE -Wno-restrict)
endif()
