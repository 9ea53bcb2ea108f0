# Windows on x86-64 by mingw-w64. Programs run under Wine, 64 bits: it needs no display.
# Debian packages: g++-mingw-w64-x86-64-posix wine64 wine, and googletest for the tests
set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_SYSTEM_PROCESSOR x86_64)
set(CMAKE_C_COMPILER x86_64-w64-mingw32-gcc-posix)
set(CMAKE_CXX_COMPILER x86_64-w64-mingw32-g++-posix)
set(CMAKE_RC_COMPILER x86_64-w64-mingw32-windres)

set(CMAKE_FIND_ROOT_PATH /usr/x86_64-w64-mingw32)
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)

find_program(QSTDLIB_EMULATOR wine)
if(NOT QSTDLIB_EMULATOR)
    message(FATAL_ERROR "No Wine to run programs for Windows: install Debian's wine and wine64")
endif()
set(CMAKE_CROSSCOMPILING_EMULATOR ${QSTDLIB_EMULATOR})

# The run-time libraries of the compiler go into the programs.
set(CMAKE_EXE_LINKER_FLAGS_INIT -static)
set(CMAKE_SHARED_LINKER_FLAGS_INIT -static-libgcc)
