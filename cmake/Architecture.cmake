# What differs between the builds for 32-bit and for 64-bit hosts:
#
#   QM_BITS                    32 or 64
#   QM_ARCHITECTURE            x86 or x64, as users read it
#   QM_MANIFEST_ARCHITECTURE   x86 or amd64, as manifests name it
#   QM_WIDL_TARGET             the option of the IDL compiler

if(CMAKE_SIZEOF_VOID_P EQUAL 8)
  set(QM_BITS 64)
  set(QM_ARCHITECTURE x64)
  set(QM_MANIFEST_ARCHITECTURE amd64)
else()
  set(QM_BITS 32)
  set(QM_ARCHITECTURE x86)
  set(QM_MANIFEST_ARCHITECTURE x86)
endif()
set(QM_WIDL_TARGET --win${QM_BITS})

# qm_choose_def(<variable> <def>): sets <variable> to the .def file to use. The files have the names of
# 32 bits, decorated with the size of the arguments, which is known nowhere else. In 64 bits names are
# plain, so there it is a copy without the decoration.
function(qm_choose_def variable def)
  get_filename_component(def "${def}" ABSOLUTE)
  if(QM_BITS EQUAL 64)
    get_filename_component(name "${def}" NAME)
    set(plain "${CMAKE_CURRENT_BINARY_DIR}/${name}")
    set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS "${def}")
    file(READ "${def}" text)
    string(REGEX REPLACE "\"_([A-Za-z0-9]+)@[0-9]+\"" "\\1" text "${text}")
    string(REGEX REPLACE "([A-Za-z0-9]+)@[0-9]+" "\\1" text "${text}")
    file(CONFIGURE OUTPUT "${plain}" CONTENT "${text}" @ONLY)
    set(def "${plain}")
  endif()
  set(${variable} "${def}" PARENT_SCOPE)
endfunction()
