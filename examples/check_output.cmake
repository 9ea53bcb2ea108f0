# cmake -D PROGRAM=... -D EXPECTED=... -P check_output.cmake: the program must end with 0 and print exactly EXPECTED.
execute_process(COMMAND ${PROGRAM} RESULT_VARIABLE result OUTPUT_VARIABLE output ERROR_VARIABLE error)
string(STRIP "${output}" output)
if(NOT result EQUAL 0 OR NOT output STREQUAL EXPECTED OR NOT error STREQUAL "")
    message(FATAL_ERROR "${PROGRAM} ended with ${result}\n printed:  ${output}\n expected: ${EXPECTED}\n error: ${error}")
endif()
