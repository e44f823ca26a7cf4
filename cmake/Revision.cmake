# Run at each build, since a commit changes nothing that would make CMake configure anew:
# cmake -D SOURCE=<folder> -D OUTPUT=<header> -P Revision.cmake
cmake_minimum_required(VERSION 3.25)
set(revision "")
if(EXISTS ${SOURCE}/.git)
  execute_process(COMMAND git -C ${SOURCE} describe --always --dirty --abbrev=12
                  OUTPUT_VARIABLE revision OUTPUT_STRIP_TRAILING_WHITESPACE ERROR_QUIET)
endif()
file(CONFIGURE OUTPUT ${OUTPUT} CONTENT "#pragma once\n\n#define XRF_REVISION \"${revision}\"\n")
