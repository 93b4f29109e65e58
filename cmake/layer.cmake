# Adds the static library kx_FOLDER. Its headers are included as "folder/header.h". Only the targets
# that link it find them, so an include that runs upwards does not build.
function(kx_add_layer folder)
  cmake_parse_arguments(PARSE_ARGV 1 layer "" "" "SOURCES;LINKS")
  set(include "${CMAKE_BINARY_DIR}/include/${folder}")
  file(MAKE_DIRECTORY "${include}")
  file(CREATE_LINK "${CMAKE_CURRENT_SOURCE_DIR}" "${include}/${folder}" SYMBOLIC)
  add_library(kx_${folder} STATIC ${layer_SOURCES})
  target_include_directories(kx_${folder} PUBLIC "${include}")
  target_link_libraries(kx_${folder} PUBLIC ${layer_LINKS} PRIVATE kx_options)
endfunction()
