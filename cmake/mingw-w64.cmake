# Cross-compiling for 64-bit Windows with MinGW-w64 (Debian's
# g++-mingw-w64-x86-64): cmake -DCMAKE_TOOLCHAIN_FILE=cmake/mingw-w64.cmake.
#
# The "posix" flavour of the compiler, because the transform's helper thread
# is a std::thread, which the "win32" flavour of GCC 12 does not have. The
# programs are linked statically, so that an .exe needs no DLL of the
# compiler's (libstdc++, libgcc, libwinpthread) beside it.
set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_SYSTEM_PROCESSOR x86_64)

set(ORDIX_MINGW_PREFIX x86_64-w64-mingw32)
find_program(CMAKE_C_COMPILER NAMES ${ORDIX_MINGW_PREFIX}-gcc-posix ${ORDIX_MINGW_PREFIX}-gcc REQUIRED)
find_program(CMAKE_CXX_COMPILER NAMES ${ORDIX_MINGW_PREFIX}-g++-posix ${ORDIX_MINGW_PREFIX}-g++ REQUIRED)
find_program(CMAKE_RC_COMPILER NAMES ${ORDIX_MINGW_PREFIX}-windres)

set(CMAKE_FIND_ROOT_PATH /usr/${ORDIX_MINGW_PREFIX})
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)

set(CMAKE_EXE_LINKER_FLAGS_INIT "-static")

# GCC on Windows keeps the stack 16-byte aligned but spills 32-byte AVX
# registers with aligned moves (GCC bug 54412): the assembler turns those
# into unaligned moves, which cost nothing on processors with AVX.
set(CMAKE_CXX_FLAGS_INIT "-Wa,-muse-unaligned-vector-move")

# Tests and scripts run the programs through Wine when it is there. The build
# lists each test program's cases by running it: without Wine, configure with
# -DBUILD_TESTING=OFF.
# Debian's wine64 package puts its loader in /usr/lib/wine only.
find_program(ORDIX_WINE NAMES wine64 wine PATHS /usr/lib/wine)
if(ORDIX_WINE)
  set(CMAKE_CROSSCOMPILING_EMULATOR ${ORDIX_WINE})
endif()
