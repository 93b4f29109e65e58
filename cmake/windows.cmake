# The cross tools, in the folder KX_TOOLCHAIN, which ./dev takes from cmake/toolchain.sh.
set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_SYSTEM_PROCESSOR x86_64)

set(KX_TOOLCHAIN "$ENV{KX_TOOLCHAIN}" CACHE PATH "Folder of the cross tools")
set(ENV{KX_TOOLCHAIN} "${KX_TOOLCHAIN}") # for the compiler checks, which read this file again
if(NOT EXISTS "${KX_TOOLCHAIN}/bin/ucrt64-g++")
  message(FATAL_ERROR "KX_TOOLCHAIN does not name the cross tools; ./dev build sets it.")
endif()
set(CMAKE_CXX_COMPILER "${KX_TOOLCHAIN}/bin/ucrt64-g++")
set(CMAKE_C_COMPILER "${KX_TOOLCHAIN}/bin/ucrt64-gcc")
set(CMAKE_RC_COMPILER "${KX_TOOLCHAIN}/bin/ucrt64-windres")
