# 32-bit ARM under Linux without a floating-point unit (Debian's armel). Programs run under user-mode emulation, as a
# processor of the instrument's family.
# Debian packages: g++-arm-linux-gnueabi qemu-user-static, and googletest for the tests
set(CMAKE_SYSTEM_NAME Linux)
set(CMAKE_SYSTEM_PROCESSOR arm)
set(CMAKE_C_COMPILER arm-linux-gnueabi-gcc)
set(CMAKE_CXX_COMPILER arm-linux-gnueabi-g++)
set(QSTDLIB_DEBIAN_ARCHITECTURE armel)

set(CMAKE_FIND_ROOT_PATH /usr/arm-linux-gnueabi)
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)

find_program(QSTDLIB_EMULATOR NAMES qemu-arm-static qemu-arm)
if(NOT QSTDLIB_EMULATOR)
    message(FATAL_ERROR "No emulator of an ARM processor for programs of Linux: install Debian's qemu-user-static")
endif()
set(CMAKE_CROSSCOMPILING_EMULATOR ${QSTDLIB_EMULATOR} -cpu arm926 -L /usr/arm-linux-gnueabi)

# Nothing was compiled by the old compilers whose way to pass some arguments differs.
set(CMAKE_CXX_FLAGS_INIT -Wno-psabi)
