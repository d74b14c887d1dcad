# SPDX-License-Identifier: MIT
# The Python module nvlps (python/), built when Python 3 and pybind11 are found
# (Debian: python3-dev, pybind11-dev); NVLPS_PYTHON turns it off.
# Its tests and example need numpy: prefer the first interpreter that has it (the system one on
# Debian) over one earlier on PATH that lacks it.
if(NOT Python3_EXECUTABLE)
    foreach(candidate python3 /usr/bin/python3)
        find_program(python_candidate ${candidate} NO_CACHE)
        if(python_candidate)
            execute_process(COMMAND ${python_candidate} -c "import numpy" RESULT_VARIABLE no_numpy OUTPUT_QUIET ERROR_QUIET)
            if(no_numpy EQUAL 0)
                set(Python3_EXECUTABLE ${python_candidate})
                break()
            endif()
        endif()
        unset(python_candidate)
    endforeach()
endif()
find_package(Python3 COMPONENTS Interpreter Development.Module QUIET)
find_package(pybind11 CONFIG QUIET)
if(Python3_FOUND AND pybind11_FOUND AND NOT LPSDK_SANITIZE AND NOT LPSDK_FUZZ)
    option(NVLPS_PYTHON "Build the Python module nvlps" ON)
elseif(LPSDK_SANITIZE OR LPSDK_FUZZ)
    # A sanitized extension module runs only with the sanitizer runtime preloaded into Python.
    option(NVLPS_PYTHON "Build the Python module nvlps" OFF)
else()
    option(NVLPS_PYTHON "Build the Python module nvlps" OFF)
    message(STATUS "Python 3 or pybind11 not found (Debian: python3-dev, pybind11-dev): nvlps is not built")
endif()
if(NVLPS_PYTHON)
    add_subdirectory(python)
endif()
