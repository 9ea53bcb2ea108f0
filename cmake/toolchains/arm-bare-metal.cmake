# ARM926EJ-S (ARMv5TE, no floating-point unit) without an operating system: newlib on an emulated board.
# Debian packages: gcc-arm-none-eabi libnewlib-arm-none-eabi libstdc++-arm-none-eabi-newlib qemu-system-arm
set(CMAKE_SYSTEM_NAME Generic)
set(CMAKE_SYSTEM_PROCESSOR arm)
set(CMAKE_C_COMPILER arm-none-eabi-gcc)
set(CMAKE_CXX_COMPILER arm-none-eabi-g++)
set(CMAKE_ASM_COMPILER arm-none-eabi-gcc)
foreach(language IN ITEMS C CXX ASM)
    set(CMAKE_${language}_FLAGS_INIT "-mcpu=arm926ej-s -marm -mfloat-abi=soft -ffunction-sections -fdata-sections")
endforeach()
# No note that GCC 7 changed how records are passed: nothing here was built with an older compiler.
string(APPEND CMAKE_CXX_FLAGS_INIT " -Wno-psabi")

# Linking a program takes the board's start and memory map, which CMake's own checks do not have.
set(CMAKE_TRY_COMPILE_TARGET_TYPE STATIC_LIBRARY)
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)

set(CMAKE_CROSSCOMPILING_EMULATOR ${CMAKE_CURRENT_LIST_DIR}/../../platform/versatile/run_image.sh)
