# The compiler and linker options of all our targets. The presets make every warning an error.
add_library(kx_options INTERFACE)
target_compile_options(kx_options INTERFACE
  -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Wsign-conversion -Wcast-qual -Wold-style-cast
  -Wundef -Wmissing-declarations -Wnull-dereference -Wzero-as-null-pointer-constant
  $<$<CXX_COMPILER_ID:GNU>:-Wlogical-op>
  -ffunction-sections # not -fdata-sections, with which MinGW writes zeroed objects into the program's file
  "-ffile-prefix-map=${CMAKE_SOURCE_DIR}=.") # makes the same program in any folder
if(WIN32)
  target_compile_definitions(kx_options INTERFACE
    NOMINMAX UNICODE _UNICODE WIN32_LEAN_AND_MEAN
    _WIN32_WINNT=0x0A00) # Windows 10, as in the program's header below
  # "-u" asks for a function of std::string before any library is read. Without it the linker of GCC 14
  # finds its first copy among the string streams, and the program grows by 184 KB.
  target_link_options(kx_options INTERFACE
    -Wl,-u,_ZNSt7__cxx1112basic_stringIcSt11char_traitsIcESaIcEE10_M_disposeEv)
  # The linker sets the flags for address space randomisation and data execution prevention itself.
  target_link_options(kx_options INTERFACE -static -Wl,--gc-sections -Wl,--no-insert-timestamp
    -Wl,--subsystem,console:10.0 -Wl,--major-os-version=10 -Wl,--tsaware)
endif()
