# SPDX-License-Identifier: MIT
# Regenerates the key reference and fails when the committed one differs.
execute_process(COMMAND ${GENERATOR} keys ${ACTUAL} RESULT_VARIABLE result)
if(NOT result EQUAL 0)
    message(FATAL_ERROR "nvlps-filedocs failed")
endif()
execute_process(COMMAND ${CMAKE_COMMAND} -E compare_files ${EXPECTED} ${ACTUAL} RESULT_VARIABLE different)
if(different)
    message(FATAL_ERROR "${EXPECTED} is out of date: build the target update-file-keys and commit it")
endif()
