# What the toolchains of both architectures share. They set QM_TARGET, the prefix of the tools.
#
# The compiler is the posix variant, because the win32 one lacks std::mutex and its relatives.

set(CMAKE_SYSTEM_NAME Windows)

set(CMAKE_C_COMPILER ${QM_TARGET}-gcc-posix)
set(CMAKE_CXX_COMPILER ${QM_TARGET}-g++-posix)
set(CMAKE_RC_COMPILER ${QM_TARGET}-windres)
set(CMAKE_DLLTOOL ${QM_TARGET}-dlltool CACHE STRING "Makes import libraries from .def files")
set(QM_WIDL ${QM_TARGET}-widl CACHE STRING "IDL compiler")

set(CMAKE_FIND_ROOT_PATH /usr/${QM_TARGET})
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
