# The target QtCore. For Windows it is the library in the folder KX_QTCORE, which ./dev takes from the
# environment or else builds. For this machine it is Debian's.
if(WIN32)
  set(KX_QTCORE "$ENV{KX_QTCORE}" CACHE PATH "Folder of QtCore for Windows")
  if(NOT EXISTS "${KX_QTCORE}/lib/libQt5Core.a")
    message(FATAL_ERROR "KX_QTCORE must name a folder with include/, lib/libQt5Core.a and lib/libdelayed.a.")
  endif()

  add_library(QtCore STATIC IMPORTED)
  set_target_properties(QtCore PROPERTIES
    IMPORTED_LOCATION "${KX_QTCORE}/lib/libQt5Core.a"
    INTERFACE_INCLUDE_DIRECTORIES "${KX_QTCORE}/include;${KX_QTCORE}/include/QtCore")
  # The libraries that QtCore calls. The linker takes a function from the first library that has it,
  # so libdelayed.a, whose DLLs are not loaded at the start of the program, comes first.
  target_link_libraries(QtCore INTERFACE "${KX_QTCORE}/lib/libdelayed.a" delayimp uuid kernel32)
  target_compile_definitions(QtCore INTERFACE $<$<NOT:$<CONFIG:Debug>>:QT_NO_DEBUG>) # no assertions
  # QtCore's headers put their paths into messages. This keeps the program the same in any folder.
  target_compile_options(QtCore INTERFACE "-ffile-prefix-map=${KX_QTCORE}=qtcore")
else()
  find_package(Qt5 5.15 REQUIRED COMPONENTS Core)
  add_library(QtCore INTERFACE)
  target_link_libraries(QtCore INTERFACE Qt5::Core)
endif()
# A conversion between 8-bit and 16-bit text must name its encoding. Without one it is Latin-1 in QtCore
# 4 and UTF-8 in QtCore 5.
target_compile_definitions(QtCore INTERFACE
  QT_NO_CAST_FROM_ASCII QT_NO_CAST_TO_ASCII QT_NO_CAST_FROM_BYTEARRAY QT_NO_KEYWORDS QT_NO_FOREACH)
