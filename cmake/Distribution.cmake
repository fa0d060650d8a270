# What the build takes from the distribution, and where Debian and its derivatives keep it.
# Everything else is found by name.

if(MSVC OR CMAKE_CXX_SIMULATE_ID STREQUAL "MSVC")
  message(FATAL_ERROR "This tree is built with GCC: the MinGW-w64 cross-compiler for Windows "
    "(presets release, strict and those for x64) and the machine's own for the native tests. MSVC and clang-cl do not "
    "know the import libraries and linker options that it uses.")
endif()

# The sources of GoogleTest, which only the tests need. Found by a pattern, because they may be
# installed after the first configuration.
set(QM_GOOGLETEST_FOLDER /usr/src/googletest)
file(GLOB QM_GOOGLETEST CONFIGURE_DEPENDS "${QM_GOOGLETEST_FOLDER}/CMakeLists.txt")

# Header-only libraries, the folder of their headers, and the files with their licenses.
set(QM_HEADER_FOLDER /usr/include)
set(QM_HEADER_LIBRARIES CLI nlohmann toml++)
set(QM_CLI_LICENSE /usr/share/doc/libcli11-dev/copyright)
set(QM_nlohmann_LICENSE /usr/share/doc/nlohmann-json3-dev/copyright)
set(QM_toml++_LICENSE /usr/share/doc/libtomlplusplus-dev/copyright)

# The type library that all others import. Wine includes it.
set(QM_WINE_FOLDER_32 i386-windows)
set(QM_WINE_FOLDER_64 x86_64-windows)
file(GLOB QM_STDOLE2 /usr/lib/*/wine/${QM_WINE_FOLDER_${QM_BITS}}/stdole2.tlb
  /usr/lib/wine/${QM_WINE_FOLDER_${QM_BITS}}/stdole2.tlb)
