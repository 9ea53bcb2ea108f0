# qstd_add_image(NAME SOURCE...): a program for the board without an operating system, on the static library. CTest runs
# it on the emulated board when it is the command of a test.
enable_language(ASM)

set(QSTDLIB_BOARD ${PROJECT_SOURCE_DIR}/platform/versatile)

add_library(
    qstdlib_board OBJECT
    ${QSTDLIB_BOARD}/start.S
    ${QSTDLIB_BOARD}/arguments.c
    ${QSTDLIB_BOARD}/atomic.c
    ${QSTDLIB_BOARD}/leave.c
    ${QSTDLIB_BOARD}/mkdir.c)
target_link_libraries(qstdlib_board PRIVATE qstdlib_warnings)
target_include_directories(qstdlib_board INTERFACE ${PROJECT_SOURCE_DIR})
target_link_options(
    qstdlib_board
    INTERFACE
    --specs=rdimon.specs
    -nostartfiles
    LINKER:--gc-sections
    LINKER:-T,${QSTDLIB_BOARD}/versatile.ld)

# Before the command of a test: what it prints stands in the document of costs.
set(QSTDLIB_IN_COST_DOCUMENT ${PROJECT_SOURCE_DIR}/tests/support/in_document.py ${PROJECT_SOURCE_DIR}/docs/target/cost.md)

function(qstd_add_image name)
    add_executable(${name} ${ARGN})
    set_target_properties(${name} PROPERTIES SUFFIX .elf LINK_DEPENDS ${QSTDLIB_BOARD}/versatile.ld)
    target_link_libraries(${name} PRIVATE qstdlib::qstdlib_static qstdlib_board qstdlib_warnings)
    target_compile_options(${name} PRIVATE -ffp-contract=off)
endfunction()
