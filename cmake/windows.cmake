# Builds for Windows (64 bits) on Debian. PLINKET3_WINDOWS_ROOT: where the libraries for it were installed.
set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_SYSTEM_PROCESSOR x86_64)
set(CMAKE_C_COMPILER x86_64-w64-mingw32-gcc-posix)
set(CMAKE_CXX_COMPILER x86_64-w64-mingw32-g++-posix)
set(CMAKE_RC_COMPILER x86_64-w64-mingw32-windres)

if(NOT PLINKET3_WINDOWS_ROOT)
    set(PLINKET3_WINDOWS_ROOT "$ENV{PLINKET3_WINDOWS_ROOT}")
endif()
list(APPEND CMAKE_TRY_COMPILE_PLATFORM_VARIABLES PLINKET3_WINDOWS_ROOT)
set(CMAKE_FIND_ROOT_PATH /usr/x86_64-w64-mingw32 ${PLINKET3_WINDOWS_ROOT})
set(CMAKE_PREFIX_PATH ${PLINKET3_WINDOWS_ROOT})
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)

# Qt's own tools run on the machine that builds.
set(QT_HOST_PATH /usr)
set(QT_HOST_PATH_CMAKE_DIR /usr/lib/x86_64-linux-gnu/cmake)
# What is built is one file, and runs under wine while it is built and tested. With its parts at whole pages wine maps it
# into memory; else it would read all of it at each start.
set(CMAKE_EXE_LINKER_FLAGS_INIT "-static -Wl,--file-alignment,4096")
set(CMAKE_CROSSCOMPILING_EMULATOR ${CMAKE_CURRENT_LIST_DIR}/../scripts/on-wine)
