# Toolchain: 32-bit Windows programs with MinGW-w64 on Debian, run under Wine.
#
#   cmake --preset release            (the presets name this file)
#   cmake -G Ninja -DCMAKE_TOOLCHAIN_FILE=cmake/mingw-i686.cmake -S . -B build/mine

set(CMAKE_SYSTEM_PROCESSOR x86)
set(QM_TARGET i686-w64-mingw32)
include("${CMAKE_CURRENT_LIST_DIR}/mingw.cmake")

set(CMAKE_CROSSCOMPILING_EMULATOR "${CMAKE_CURRENT_LIST_DIR}/../tools/wine-run")
