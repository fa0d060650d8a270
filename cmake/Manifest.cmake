# Makes Quillmark.MergeModules.manifest, which describes the server and its siblings as a
# side-by-side assembly. A program with this manifest creates their objects without registration.
# The assembly must not have the name of a DLL: where Windows finds such a DLL, it does not look for
# a manifest. The GUIDs are read from the IDL, their only home.

# qm_guid_before(<variable> <idl text> <declaration>): finds the uuid in the attributes of a
# declaration.
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

foreach(idl qmmmupdater qmmmupdater2 siblings mergeset)
  set(idl_file "${PROJECT_SOURCE_DIR}/idl/${idl}.idl")
  set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS "${idl_file}")
  file(READ "${idl_file}" ${idl}_text)
endforeach()

qm_guid_before(LIBID_INTERFACES "${qmmmupdater_text}" "library QMMMUpdaterLib ")
qm_guid_before(LIBID_CLASSES "${qmmmupdater2_text}" "library QMMMUPDATER2Lib ")
foreach(class MMCatalog MMCatalogPro MergeModule2 MMCatalogManager)
  qm_guid_before(CLSID_${class} "${qmmmupdater2_text}" "coclass ${class} ")
endforeach()
foreach(class IniReader ApplicationServices RepositoryMgr)
  qm_guid_before(CLSID_${class} "${siblings_text}" "coclass ${class} ")
endforeach()

qm_guid_before(LIBID_MERGESET "${mergeset_text}" "library QmMergeSetLib ")
qm_guid_before(CLSID_MergeSet "${mergeset_text}" "coclass MergeSet ")

set(QM_MANIFEST "${CMAKE_RUNTIME_OUTPUT_DIRECTORY}/Quillmark.MergeModules.manifest")
configure_file("${PROJECT_SOURCE_DIR}/server/Quillmark.MergeModules.manifest.in" "${QM_MANIFEST}" @ONLY)
