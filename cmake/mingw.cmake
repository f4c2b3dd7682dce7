# Windows from Debian's mingw-w64, the flavour with POSIX threads (std::thread and friends): what the
# toolchains of both sizes share. VNCORE_TRIPLE tells which. The compiler's runtimes are linked in, so
# that the library and the programs need nothing beside the system's own DLLs.
set(CMAKE_SYSTEM_NAME Windows)

set(CMAKE_C_COMPILER ${VNCORE_TRIPLE}-gcc-posix)
set(CMAKE_CXX_COMPILER ${VNCORE_TRIPLE}-g++-posix)
set(CMAKE_RC_COMPILER ${VNCORE_TRIPLE}-windres)
set(CMAKE_NM ${VNCORE_TRIPLE}-nm CACHE STRING "")
set(CMAKE_OBJDUMP ${VNCORE_TRIPLE}-objdump CACHE STRING "")

set(CMAKE_FIND_ROOT_PATH /usr/${VNCORE_TRIPLE})
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)

set(CMAKE_EXE_LINKER_FLAGS_INIT "-static")
set(CMAKE_SHARED_LINKER_FLAGS_INIT "-static")

# Programs run under Wine on a virtual screen.
set(CMAKE_CROSSCOMPILING_EMULATOR ${CMAKE_CURRENT_LIST_DIR}/wine-emulator.sh)
