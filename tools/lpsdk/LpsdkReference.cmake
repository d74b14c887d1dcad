# SPDX-License-Identifier: MIT
# Writes lpsdk's Markdown reference to ACTUAL; with EXPECTED, fails when that committed copy differs.
execute_process(COMMAND ${LPSDK} help --markdown OUTPUT_FILE ${ACTUAL} RESULT_VARIABLE result)
if(NOT result EQUAL 0)
    message(FATAL_ERROR "lpsdk help --markdown failed")
endif()
if(EXPECTED)
    execute_process(COMMAND ${CMAKE_COMMAND} -E compare_files ${EXPECTED} ${ACTUAL} RESULT_VARIABLE different)
    if(different)
        message(FATAL_ERROR "${EXPECTED} is out of date: build the target update-lpsdk-reference and commit it")
    endif()
endif()
