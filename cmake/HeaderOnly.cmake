# Makes header-only libraries of the build machine available to cross-compiled programs. The
# compiler sees the folders of these libraries only, never the machine's whole include folder.

set(headers "${CMAKE_BINARY_DIR}/headers")
file(MAKE_DIRECTORY "${headers}")
foreach(library IN LISTS QM_HEADER_LIBRARIES)
  if(NOT EXISTS "${QM_HEADER_FOLDER}/${library}")
    message(FATAL_ERROR "The headers of ${library} were not found; run tools/setup")
  endif()
  file(CREATE_LINK "${QM_HEADER_FOLDER}/${library}" "${headers}/${library}" SYMBOLIC)
endforeach()

add_library(header_only INTERFACE)
target_include_directories(header_only SYSTEM INTERFACE "${headers}")
