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

# lpsdk_add_layer(<folder> [USES <folder>...] SOURCES ... [PUBLIC_HEADERS ...])
# One folder of src/ as an object library built into the SDK library. Its files see only their
# own folder, the folders it USES and the common and computing libraries, so an include that
# reaches up or sideways fails to compile. Public headers are recorded for installation.
function(lpsdk_add_layer folder)
    cmake_parse_arguments(ARG "" "" "USES;SOURCES;PUBLIC_HEADERS" ${ARGN})
    set(target nvLoudspeakerPluginSdk_${folder})
    add_library(${target} OBJECT)
    set_target_properties(${target} PROPERTIES POSITION_INDEPENDENT_CODE ON)
    # Compiled into the SDK library, so its symbols are exported, not imported.
    target_compile_definitions(${target} PRIVATE nvLoudspeakerPluginSdk_EXPORTS)
    list(TRANSFORM ARG_USES PREPEND ${PROJECT_SOURCE_DIR}/src/)
    target_include_directories(${target} PRIVATE ${CMAKE_CURRENT_SOURCE_DIR} ${ARG_USES} ${LPSDK_GENERATED_INCLUDE_DIR})
    target_link_libraries(${target} PRIVATE nvCommon nvComputingLibrary Qt6::Core Qt6::Concurrent Qt6::Sql)
    lpsdk_add_sources(${target} SOURCES ${ARG_SOURCES} PUBLIC_HEADERS ${ARG_PUBLIC_HEADERS})
    get_target_property(headers ${target} LPSDK_PUBLIC_HEADERS)
    if(headers)
        set_property(TARGET nvLoudspeakerPluginSdk APPEND PROPERTY LPSDK_PUBLIC_HEADERS ${headers})
    endif()
    target_sources(nvLoudspeakerPluginSdk PRIVATE $<TARGET_OBJECTS:${target}>)
    # Programs built with the library (tests, tools) see every folder.
    target_include_directories(nvLoudspeakerPluginSdk PUBLIC $<BUILD_INTERFACE:${CMAKE_CURRENT_SOURCE_DIR}>)
endfunction()
