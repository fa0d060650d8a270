# Toolchain: 64-bit Windows programs with MinGW-w64 on Debian, run under 64-bit Wine.
#
#   cmake --preset release-x64        (the presets name this file)

set(CMAKE_SYSTEM_PROCESSOR AMD64)
set(QM_TARGET x86_64-w64-mingw32)
include("${CMAKE_CURRENT_LIST_DIR}/mingw.cmake")

set(CMAKE_CROSSCOMPILING_EMULATOR "${CMAKE_CURRENT_LIST_DIR}/../tools/wine64-run")
