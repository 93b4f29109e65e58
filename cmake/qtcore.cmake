# QtCore as one imported library. KX_QTCORE in the environment names the folder that
# cmake/qtcore.sh prints.
set(KX_QTCORE "$ENV{KX_QTCORE}" CACHE PATH "Folder of QtCore for Windows")
if(NOT EXISTS "${KX_QTCORE}/lib/libQt5Core.a")
  message(FATAL_ERROR "KX_QTCORE does not name a QtCore; ./dev build sets it.")
endif()

add_library(QtCore STATIC IMPORTED)
set_target_properties(QtCore PROPERTIES
  IMPORTED_LOCATION "${KX_QTCORE}/lib/libQt5Core.a"
  INTERFACE_INCLUDE_DIRECTORIES "${KX_QTCORE}/include;${KX_QTCORE}/include/QtCore")
# What QtCore itself calls.
target_link_libraries(QtCore INTERFACE
  mpr userenv version netapi32 ws2_32 advapi32 kernel32 ole32 shell32 uuid user32 winmm)
# Every conversion between 8-bit and 16-bit text names its encoding: the unnamed ones mean Latin-1
# in QtCore 4 and UTF-8 in QtCore 5.
target_compile_definitions(QtCore INTERFACE
  QT_NO_CAST_FROM_ASCII QT_NO_CAST_TO_ASCII QT_NO_CAST_FROM_BYTEARRAY QT_NO_KEYWORDS QT_NO_FOREACH)
