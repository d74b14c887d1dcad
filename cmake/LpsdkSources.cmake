# SPDX-License-Identifier: MIT
# lpsdk_add_sources(<target> SOURCES ... PUBLIC_HEADERS ...)
# Adds sources to a library and records its public headers, which are installed flat
# into include/nvLoudspeakerPluginSdk so that the umbrella header finds them all.
function(lpsdk_add_sources target)
    cmake_parse_arguments(ARG "" "" "SOURCES;PUBLIC_HEADERS" ${ARGN})
    set(headers)
    foreach(header IN LISTS ARG_PUBLIC_HEADERS)
        get_filename_component(header "${header}" ABSOLUTE)
        list(APPEND headers "${header}")
    endforeach()
    target_sources(${target} PRIVATE ${ARG_SOURCES} ${headers})
    set_property(TARGET ${target} APPEND PROPERTY LPSDK_PUBLIC_HEADERS ${headers})
endfunction()

# lpsdk_install_library(<target>): installs the library and its recorded public headers.
function(lpsdk_install_library target)
    install(TARGETS ${target} EXPORT nvLoudspeakerPluginSdkTargets
        LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR}
        ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR}
        RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR})
    install(FILES $<TARGET_PROPERTY:${target},LPSDK_PUBLIC_HEADERS> DESTINATION ${LPSDK_INSTALL_INCLUDE_DIR})
endfunction()
