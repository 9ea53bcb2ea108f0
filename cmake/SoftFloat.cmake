# QSTDLIB_SOFT_FLOAT_OBJECTS: the objects of platform/soft_float, for everything that is linked here with the library or
# is the library; empty where the processor computes doubles itself, and where another library is wanted to do it.
include(CheckCXXSourceCompiles)

set(QSTDLIB_SOFT_FLOAT_OBJECTS "")
if(CMAKE_SYSTEM_PROCESSOR MATCHES "^arm")
    check_cxx_source_compiles(
        "#if !defined(__ARMEL__) || !defined(__SOFTFP__) || __ARM_ARCH < 5 || __ARM_ARCH_PROFILE == 'M'
         #error
         #endif
         int main() { return 0; }"
        QSTDLIB_ARM_SOFT_FLOAT)
endif()
if(QSTDLIB_ARM_SOFT_FLOAT)
    option(QSTDLIB_SOFT_FLOAT "Compute doubles by platform/soft_float instead of the compiler's library" ON)
    if(QSTDLIB_SOFT_FLOAT)
        add_subdirectory(platform/soft_float)
        target_link_libraries(soft_float PRIVATE qstdlib_warnings)
        set(QSTDLIB_SOFT_FLOAT_OBJECTS $<TARGET_OBJECTS:soft_float>)
    endif()
endif()
