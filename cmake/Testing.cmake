# qstd_add_test(NAME SOURCE...): a GoogleTest program on the static library, with access to internal headers, whose
# test cases CTest runs one by one.
if(CMAKE_CROSSCOMPILING)
    # Debian has GoogleTest compiled for the host, and its sources for every other system.
    set(CMAKE_POLICY_DEFAULT_CMP0077 NEW)
    set(INSTALL_GTEST OFF)
    set(gtest_disable_pthreads ${QSTDLIB_BARE_METAL})
    add_subdirectory(/usr/src/googletest ${PROJECT_BINARY_DIR}/googletest EXCLUDE_FROM_ALL SYSTEM)
    if(QSTDLIB_BARE_METAL)
        # The C library hides what is not in the C++ standard, and streams cannot be redirected.
        target_compile_definitions(gtest PUBLIC _POSIX_C_SOURCE=200809L GTEST_HAS_STREAM_REDIRECTION=0 PRIVATE PATH_MAX=1024)
    endif()
else()
    find_package(GTest REQUIRED)
endif()
include(GoogleTest)

function(qstd_add_test name)
    if(QSTDLIB_BARE_METAL)
        qstd_add_image(${name} ${ARGN})
    else()
        add_executable(${name} ${ARGN})
    endif()
    target_include_directories(${name} PRIVATE ${PROJECT_SOURCE_DIR})
    target_link_libraries(${name} PRIVATE qstdlib::qstdlib_static qstdlib_warnings GTest::gmock GTest::gtest_main)
    # The tests form expected values themselves, by the same rules of arithmetic.
    target_compile_options(${name} PRIVATE -ffp-contract=off)
    if(QSTDLIB_BARE_METAL OR WIN32)
        # The start of the emulator costs more than a test case: all cases of a program run at once.
        add_test(NAME ${name} COMMAND ${name})
        if(WIN32)
            # The exit status of Wine says nothing: one that cannot run the program prints nothing and succeeds.
            set_tests_properties(${name} PROPERTIES PASS_REGULAR_EXPRESSION "PASSED" FAIL_REGULAR_EXPRESSION "FAILED")
        endif()
    else()
        gtest_discover_tests(${name} DISCOVERY_TIMEOUT 60 PROPERTIES ENVIRONMENT "${QSTDLIB_TEST_ENVIRONMENT}")
    endif()
endfunction()
