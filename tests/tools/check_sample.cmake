# Rebuilds a sample picker from its JSON description and compares the bytes with the committed file.
execute_process(COMMAND ${PKRTOOL} build ${DESCRIPTION} -o ${BUILT} RESULT_VARIABLE status)
if(NOT status EQUAL 0)
    message(FATAL_ERROR "pkrtool build ${DESCRIPTION} failed: ${status}")
endif()
execute_process(COMMAND ${CMAKE_COMMAND} -E compare_files ${BUILT} ${EXPECTED}
    RESULT_VARIABLE different)
if(different)
    message(FATAL_ERROR "${EXPECTED} differs from what pkrtool builds from ${DESCRIPTION}")
endif()
