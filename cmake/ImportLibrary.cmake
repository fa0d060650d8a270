# qm_add_import_library(<name> <def> [DELAYED]): makes an import library from a .def file, so that a
# program imports exactly what the file says (by ordinal, for instance). Link the target <name>.
# With DELAYED, the DLL is loaded at the first call of one of its functions.
function(qm_add_import_library name def)
  cmake_parse_arguments(arg "DELAYED" "" "" ${ARGN})
  set(kind -l)
  if(arg_DELAYED)
    set(kind -y)
  endif()
  set(archive "${CMAKE_CURRENT_BINARY_DIR}/lib${name}.a")
  qm_choose_def(def "${def}")
  # -k removes "@n" from the decorated names of 32 bits in the import table.
  add_custom_command(OUTPUT "${archive}"
    COMMAND ${CMAKE_DLLTOOL} -k -d "${def}" ${kind} "${archive}"
    DEPENDS "${def}" VERBATIM)
  add_custom_target(${name}_archive DEPENDS "${archive}")
  add_library(${name} INTERFACE)
  add_dependencies(${name} ${name}_archive)
  target_link_libraries(${name} INTERFACE "${archive}" $<$<BOOL:${arg_DELAYED}>:delayimp>)
endfunction()
