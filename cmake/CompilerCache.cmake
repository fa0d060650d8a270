# Compiles through ccache if it is installed. Paths are cached relative to the root, so that another
# checkout hits the same entries. The first configuration of a build folder decides: using a ccache
# that is installed later would change every command and rebuild everything.

if(NOT DEFINED CACHE{QM_CCACHE})
  find_program(QM_CCACHE ccache)
endif()
if(QM_CCACHE)
  set(launcher ${CMAKE_COMMAND} -E env "CCACHE_BASEDIR=${PROJECT_SOURCE_DIR}" CCACHE_NOHASHDIR=1 "${QM_CCACHE}")
  set(CMAKE_C_COMPILER_LAUNCHER "${launcher}")
  set(CMAKE_CXX_COMPILER_LAUNCHER "${launcher}")
endif()
