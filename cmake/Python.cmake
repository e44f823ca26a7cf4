# The extension is for one interpreter: the system's, unless another is asked for by Python3_EXECUTABLE.
# What a user keeps in front of it in PATH has packages of its own, and often no headers.
if(NOT DEFINED Python3_EXECUTABLE AND EXISTS /usr/bin/python3)
  set(Python3_EXECUTABLE /usr/bin/python3 CACHE FILEPATH "Interpreter that the extension is for")
endif()
find_package(Python3 3.10 REQUIRED COMPONENTS Interpreter Development.Module)
