# Quillmark.MergeModules.manifest: the server as a side-by-side assembly, through which a program
# creates its objects without registration. The name must not be that of a DLL, beside which Windows
# would stop looking for a manifest. Made from the IDL, which is the only home of the GUIDs.

# qm_guid_before(<variable> <idl text> <declaration>): the uuid of the attributes of a declaration.
function(qm_guid_before variable text declaration)
  string(FIND "${text}" "${declaration}" end)
  if(end EQUAL -1)
    message(FATAL_ERROR "The IDL has no \"${declaration}\"")
  endif()
  string(SUBSTRING "${text}" 0 ${end} head)
  string(REGEX MATCHALL "uuid\\([0-9A-Fa-f-]+\\)" uuids "${head}")
  list(GET uuids -1 uuid)
  string(REGEX REPLACE "uuid\\((.*)\\)" "{\\1}" guid "${uuid}")
  set(${variable} "${guid}" PARENT_SCOPE)
endfunction()

set(idl_files "${PROJECT_SOURCE_DIR}/idl/qmmmupdater.idl" "${PROJECT_SOURCE_DIR}/idl/qmmmupdater2.idl")
set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${idl_files})
file(READ "${PROJECT_SOURCE_DIR}/idl/qmmmupdater.idl" interfaces_idl)
file(READ "${PROJECT_SOURCE_DIR}/idl/qmmmupdater2.idl" classes_idl)

qm_guid_before(LIBID_INTERFACES "${interfaces_idl}" "library QMMMUpdaterLib ")
qm_guid_before(LIBID_CLASSES "${classes_idl}" "library QMMMUPDATER2Lib ")
qm_guid_before(CLSID_MERGEMODULE2 "${classes_idl}" "coclass MergeModule2 ")

set(QM_MANIFEST "${CMAKE_RUNTIME_OUTPUT_DIRECTORY}/Quillmark.MergeModules.manifest")
configure_file("${PROJECT_SOURCE_DIR}/server/app/Quillmark.MergeModules.manifest.in" "${QM_MANIFEST}" @ONLY)
