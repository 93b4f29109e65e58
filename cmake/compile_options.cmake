# What every target of ours is compiled with.
add_library(kx_options INTERFACE)
target_compile_options(kx_options INTERFACE
  -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Wsign-conversion -Wcast-qual -Wold-style-cast
  -Wundef -Wmissing-declarations -Wnull-dereference -Wzero-as-null-pointer-constant
  $<$<CXX_COMPILER_ID:GNU>:-Wlogical-op>
  -Werror
  -ffunction-sections -fdata-sections
  "-ffile-prefix-map=${CMAKE_SOURCE_DIR}=.") # the same program from any folder
if(WIN32)
  target_compile_definitions(kx_options INTERFACE
    NOMINMAX UNICODE _UNICODE WIN32_LEAN_AND_MEAN
    _WIN32_WINNT=0x0601) # Windows 7, the first to know FIND_FIRST_EX_LARGE_FETCH
  target_link_options(kx_options INTERFACE -static -Wl,--gc-sections -Wl,--no-insert-timestamp)
endif()

# One static library of a folder of the product. Its headers are included as "folder/header.h" and
# are seen only by the targets that link it, so an include that runs back up does not build. The
# PLATFORM_SOURCES call Windows; the other SOURCES build anywhere.
function(kx_add_layer folder)
  cmake_parse_arguments(PARSE_ARGV 1 layer "" "" "SOURCES;PLATFORM_SOURCES;LINKS")
  if(NOT WIN32)
    set(layer_PLATFORM_SOURCES)
  endif()
  set(include "${CMAKE_BINARY_DIR}/include/${folder}")
  file(MAKE_DIRECTORY "${include}")
  file(CREATE_LINK "${CMAKE_CURRENT_SOURCE_DIR}" "${include}/${folder}" SYMBOLIC)
  add_library(kx_${folder} STATIC ${layer_SOURCES} ${layer_PLATFORM_SOURCES})
  target_include_directories(kx_${folder} PUBLIC "${include}")
  target_link_libraries(kx_${folder} PUBLIC ${layer_LINKS} PRIVATE kx_options)
endfunction()
