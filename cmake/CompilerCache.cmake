# Compiles through ccache where it is installed. Paths are cached relative to the root, so that a checkout
# elsewhere finds what this one compiled. The first configuration of a build folder decides: a ccache that
# is installed later would change every command, and thereby rebuild everything.

if(NOT DEFINED CACHE{QM_CCACHE})
  find_program(QM_CCACHE ccache)
endif()
if(QM_CCACHE)
  set(launcher ${CMAKE_COMMAND} -E env "CCACHE_BASEDIR=${PROJECT_SOURCE_DIR}" CCACHE_NOHASHDIR=1 "${QM_CCACHE}")
  set(CMAKE_C_COMPILER_LAUNCHER "${launcher}")
  set(CMAKE_CXX_COMPILER_LAUNCHER "${launcher}")
endif()
