# qm_settings: the compiler and linker settings of every target.

add_library(qm_settings INTERFACE)
target_include_directories(qm_settings INTERFACE "${PROJECT_SOURCE_DIR}")
# -Woverloaded-virtual: on the target, mixing up MEMBERID and INT leaves a virtual-table slot
# unimplemented, and nothing else reports it. -Wnon-virtual-dtor is left out because it fires on
# every COM interface.
target_compile_options(qm_settings INTERFACE
  $<$<COMPILE_LANGUAGE:CXX>:-Wall;-Wextra;-Werror;-Woverloaded-virtual;-Wsuggest-override;-Wcast-qual;-Wshadow>)

if(WIN32)
  # Generated headers are included as "idl/x.h"; they include one another by their bare names.
  target_include_directories(qm_settings SYSTEM INTERFACE
    "${PROJECT_BINARY_DIR}/generated" "${PROJECT_BINARY_DIR}/generated/idl")
  target_compile_definitions(qm_settings INTERFACE
    UNICODE _UNICODE NOMINMAX WINVER=0x0601 _WIN32_WINNT=0x0601)
  target_link_options(qm_settings INTERFACE
    -static -Wl,--nxcompat -Wl,--dynamicbase -Wl,--no-insert-timestamp
    $<$<CONFIG:Release>:-s>)
endif()

if(QM_STRICT)
  target_compile_definitions(qm_settings INTERFACE _GLIBCXX_ASSERTIONS)
  # Release builds do without the stack protector: its support library opens a cryptographic
  # provider while the DLL is loaded.
  target_compile_options(qm_settings INTERFACE
    # Callers of a 32-bit server may keep a VARIANT at any multiple of 4 bytes, as Wine's VBScript does.
    -O1 -fstack-protector-strong -fsanitize=undefined -fno-sanitize=alignment
    -fsanitize-undefined-trap-on-error)
  target_link_libraries(qm_settings INTERFACE ssp)
endif()

# For native builds only: the cross compiler has no run-time libraries of the sanitizers.
if(QM_SANITIZE)
  target_compile_definitions(qm_settings INTERFACE _GLIBCXX_ASSERTIONS)
  set(sanitizers -fsanitize=address,undefined -fno-sanitize-recover=all)
  target_compile_options(qm_settings INTERFACE -O1 -fno-omit-frame-pointer ${sanitizers})
  target_link_options(qm_settings INTERFACE ${sanitizers})
endif()

# qm_add_library(<name> [<library>...]): adds a static library of all .cpp files of the current
# folder, and links it to the given libraries.
function(qm_add_library name)
  file(GLOB sources CONFIGURE_DEPENDS "${CMAKE_CURRENT_SOURCE_DIR}/*.cpp")
  add_library(${name} STATIC ${sources})
  target_link_libraries(${name} PUBLIC qm_settings ${ARGN})
endfunction()
