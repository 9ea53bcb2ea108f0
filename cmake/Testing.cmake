# qstd_add_test(NAME SOURCE...): a GoogleTest program on the static library, with access to internal headers, whose
# test cases CTest runs one by one.
find_package(GTest REQUIRED)
include(GoogleTest)

function(qstd_add_test name)
    add_executable(${name} ${ARGN})
    target_include_directories(${name} PRIVATE ${PROJECT_SOURCE_DIR})
    target_link_libraries(${name} PRIVATE qstdlib::qstdlib_static qstdlib_warnings GTest::gmock GTest::gtest_main)
    # The tests form expected values themselves, by the same rules of arithmetic.
    target_compile_options(${name} PRIVATE -ffp-contract=off)
    gtest_discover_tests(${name} DISCOVERY_TIMEOUT 60 PROPERTIES ENVIRONMENT "${QSTDLIB_TEST_ENVIRONMENT}")
endfunction()
