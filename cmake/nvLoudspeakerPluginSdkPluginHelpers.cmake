# SPDX-License-Identifier: MIT
#
# nvlps_add_plugin(<target> CLASS_NAME <root class>
#                  SOURCES <files>...
#                  [RESOURCES <files>...] [RESOURCE_PREFIX <prefix>] [RESOURCE_BASE <dir>]
#                  [OUTPUT_DIRECTORY <dir>])
#
# Builds a loudspeaker-series plugin: a Qt plugin library linked against the SDK.
# RESOURCES are compiled into the plugin under RESOURCE_PREFIX (default "/Resources",
# where the SDK looks for balloon and controller setup files), relative to RESOURCE_BASE
# (default: the calling directory).
function(nvlps_add_plugin target)
    cmake_parse_arguments(ARG "" "CLASS_NAME;RESOURCE_PREFIX;RESOURCE_BASE;OUTPUT_DIRECTORY" "SOURCES;RESOURCES" ${ARGN})
    if(NOT ARG_CLASS_NAME)
        message(FATAL_ERROR "nvlps_add_plugin(${target}): CLASS_NAME is required")
    endif()
    if(NOT ARG_RESOURCE_PREFIX)
        set(ARG_RESOURCE_PREFIX "/Resources")
    endif()
    if(NOT ARG_RESOURCE_BASE)
        set(ARG_RESOURCE_BASE "${CMAKE_CURRENT_SOURCE_DIR}")
    endif()
    qt_add_plugin(${target} SHARED CLASS_NAME ${ARG_CLASS_NAME})
    set_target_properties(${target} PROPERTIES AUTOMOC ON)
    target_sources(${target} PRIVATE ${ARG_SOURCES})
    target_link_libraries(${target} PRIVATE nvLoudspeakerPluginSdk::nvLoudspeakerPluginSdk)
    if(ARG_RESOURCES)
        qt_add_resources(${target} "${target}_resources"
            PREFIX "${ARG_RESOURCE_PREFIX}"
            BASE "${ARG_RESOURCE_BASE}"
            FILES ${ARG_RESOURCES})
    endif()
    if(ARG_OUTPUT_DIRECTORY)
        set_target_properties(${target} PROPERTIES LIBRARY_OUTPUT_DIRECTORY "${ARG_OUTPUT_DIRECTORY}")
    endif()
endfunction()
