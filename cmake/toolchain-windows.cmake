# Windows x64, built on Debian: mingw-w64 with the posix thread model (std::mutex). Everything is linked statically, and
# programs run under Wine.
set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_SYSTEM_PROCESSOR AMD64)

set(CMAKE_C_COMPILER x86_64-w64-mingw32-gcc-posix)
set(CMAKE_CXX_COMPILER x86_64-w64-mingw32-g++-posix)
set(CMAKE_RC_COMPILER x86_64-w64-mingw32-windres)

# The folder of libraries built for the target (scripts/build-expat-windows). A build outside the tree names it in the
# environment.
get_filename_component(zupm_root "${CMAKE_CURRENT_LIST_DIR}/.." ABSOLUTE)
if(DEFINED ENV{ZUPM_WINDOWS_DEPS})
    set(zupm_windows_deps "$ENV{ZUPM_WINDOWS_DEPS}")
else()
    set(zupm_windows_deps "${zupm_root}/build/deps/windows")
endif()

set(CMAKE_FIND_ROOT_PATH "${zupm_windows_deps}" /usr/x86_64-w64-mingw32)
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)

# Any load address, no executable data, the whole 64-bit address space for randomisation.
set(zupm_link_flags "-static -Wl,--dynamicbase,--nxcompat,--high-entropy-va")
set(CMAKE_EXE_LINKER_FLAGS_INIT "${zupm_link_flags}")
set(CMAKE_SHARED_LINKER_FLAGS_INIT "${zupm_link_flags}")
set(CMAKE_MODULE_LINKER_FLAGS_INIT "${zupm_link_flags}")

set(CMAKE_CROSSCOMPILING_EMULATOR "${zupm_root}/scripts/run-in-wine")
