# Makes type libraries, headers and GUID definitions from IDL.

if(NOT QM_STDOLE2)
  message(FATAL_ERROR "stdole2.tlb of ${QM_BITS}-bit Wine was not found; run tools/setup --test")
endif()
list(GET QM_STDOLE2 0 QM_STDOLE2)
get_filename_component(QM_STDOLE2_DIR "${QM_STDOLE2}" DIRECTORY)

set(QM_IDL_FLAGS ${QM_WIDL_TARGET} -I "${PROJECT_SOURCE_DIR}/idl" -I "${PROJECT_SOURCE_DIR}/idl/platform"
  -L "${QM_STDOLE2_DIR}")

# qm_add_idl(<name> [<imported idl>...]): makes generated/idl/<name>.h and <name>_i.c, and
# <name>.tlb if the file has a library.
function(qm_add_idl name)
  set(out "${PROJECT_BINARY_DIR}/generated/idl")
  file(MAKE_DIRECTORY "${out}")
  set(idl "${PROJECT_SOURCE_DIR}/idl/${name}.idl")
  set(imports "${PROJECT_SOURCE_DIR}/idl/platform/oaidl.idl")
  foreach(import IN LISTS ARGN)
    list(APPEND imports "${PROJECT_SOURCE_DIR}/idl/${import}.idl")
  endforeach()
  add_custom_command(
    OUTPUT "${out}/${name}.h" "${out}/${name}_i.c"
    COMMAND ${QM_WIDL} ${QM_IDL_FLAGS} -h -o "${out}/${name}.h" "${idl}"
    COMMAND ${QM_WIDL} ${QM_IDL_FLAGS} -u -o "${out}/${name}_i.c" "${idl}"
    DEPENDS "${idl}" ${imports}
    VERBATIM)
  file(STRINGS "${idl}" library REGEX "^library ")
  if(library)
    add_custom_command(
      OUTPUT "${out}/${name}.tlb"
      COMMAND ${QM_WIDL} ${QM_IDL_FLAGS} -t -o "${out}/${name}.tlb" "${idl}"
      DEPENDS "${idl}" ${imports}
      VERBATIM)
  endif()
endfunction()
