# SPDX-License-Identifier: GPL-3.0-or-later
# What every target of the project has in common.

set(CMAKE_CXX_STANDARD 17)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_AUTOMOC ON)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)
set(CMAKE_CXX_VISIBILITY_PRESET hidden)
set(CMAKE_VISIBILITY_INLINES_HIDDEN ON)
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)

find_program(CCACHE_PROGRAM ccache)
if(CCACHE_PROGRAM AND NOT CMAKE_CXX_COMPILER_LAUNCHER)
    # Precompiled headers are cached only if their macros and time stamps are trusted.
    set(CMAKE_CXX_COMPILER_LAUNCHER ${CMAKE_COMMAND} -E env CCACHE_SLOPPINESS=pch_defines,time_macros "${CCACHE_PROGRAM}")
endif()

add_library(kestrix_options INTERFACE)
target_compile_definitions(
    kestrix_options INTERFACE QT_NO_CAST_FROM_ASCII QT_NO_CAST_TO_ASCII QT_NO_URL_CAST_FROM_STRING
                              QT_STRICT_ITERATORS QT_MESSAGELOGCONTEXT)
if(MSVC)
    target_compile_options(kestrix_options INTERFACE /W4 /utf-8 /fp:precise)
else()
    # Numbers must not depend on the processor: no fused multiply-add where the source has two operations.
    target_compile_options(kestrix_options INTERFACE -Wall -Wextra -Wpedantic -ffp-contract=off)
    if(KESTRIX_WERROR)
        target_compile_options(kestrix_options INTERFACE -Werror)
    endif()
endif()
# Targets made while KESTRIX_TEST_CODE is set are code of the tests.
define_property(TARGET PROPERTY KESTRIX_TEST_CODE INITIALIZE_FROM_VARIABLE KESTRIX_TEST_CODE)
if(KESTRIX_SANITIZE)
    # A test's own arithmetic is not what is looked at, and the checks of it would take half of the time to build.
    target_compile_options(
        kestrix_options INTERFACE -fsanitize=${KESTRIX_SANITIZE} -fno-omit-frame-pointer -fno-sanitize-recover=all
                                  $<$<BOOL:$<TARGET_PROPERTY:KESTRIX_TEST_CODE>>:-fno-sanitize=undefined>)
    target_link_options(kestrix_options INTERFACE -fsanitize=${KESTRIX_SANITIZE})
endif()

# Half of the time to build the tests was their linking.
find_program(KESTRIX_MOLD mold)
if(KESTRIX_MOLD AND CMAKE_BUILD_TYPE STREQUAL "Debug" AND CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
    target_link_options(kestrix_options INTERFACE -fuse-ld=mold)
endif()

# Half of the time to compile a class was Qt's headers. Only headers that read the same whatever other Qt modules a
# target links. A build without KESTRIX_PRECOMPILE shows missing includes.
if(KESTRIX_PRECOMPILE)
    find_package(Qt5 5.15 REQUIRED COMPONENTS Core)
    set(anchor "${CMAKE_BINARY_DIR}/kestrix_precompiled.cpp")
    file(CONFIGURE OUTPUT "${anchor}" CONTENT "")
    add_library(kestrix_precompiled STATIC "${anchor}")
    set_target_properties(kestrix_precompiled PROPERTIES AUTOMOC OFF UNITY_BUILD OFF)
    target_link_libraries(kestrix_precompiled PRIVATE Qt5::Core kestrix_options)
    target_precompile_headers(kestrix_precompiled PRIVATE <QtCore/QtCore> <cmath> <limits> <memory> <vector>)
endif()

# kestrix_precompile(TARGET ...): targets that link Qt Core and kestrix_options.
function(kestrix_precompile)
    if(KESTRIX_PRECOMPILE)
        foreach(target IN LISTS ARGN)
            target_precompile_headers(${target} REUSE_FROM kestrix_precompiled)
        endforeach()
    endif()
endfunction()

# kestrix_add_layer(NAME SOURCES ... LINKS ...)
# A static library of one folder. Its own folder is its only include directory, so that a class can only be
# included by the layers that link it.
function(kestrix_add_layer name)
    cmake_parse_arguments(ARG "" "" "SOURCES;LINKS;PRIVATE_LINKS" ${ARGN})
    add_library(${name} STATIC ${ARG_SOURCES})
    target_include_directories(${name} PUBLIC "${CMAKE_CURRENT_SOURCE_DIR}")
    target_link_libraries(${name} PUBLIC ${ARG_LINKS} PRIVATE kestrix_options ${ARG_PRIVATE_LINKS})
    kestrix_precompile(${name})
endfunction()

# kestrix_add_plugin(NAME KIND instrument|mapper|trigger SOURCES ... LINKS ...)
# A plug-in library in the folder where the application looks for its kind.
function(kestrix_add_plugin name)
    cmake_parse_arguments(ARG "" "KIND" "SOURCES;LINKS" ${ARGN})
    add_library(${name} MODULE ${ARG_SOURCES})
    target_include_directories(${name} PRIVATE "${CMAKE_CURRENT_SOURCE_DIR}")
    target_link_libraries(${name} PRIVATE kestrix-plugin-api kestrix_options ${ARG_LINKS})
    kestrix_precompile(${name})
    set_target_properties(${name} PROPERTIES LIBRARY_OUTPUT_DIRECTORY "${KESTRIX_PLUGIN_DIR}/${ARG_KIND}" PREFIX "")
    set(destination "${KESTRIX_INSTALL_PLUGINDIR}/${ARG_KIND}")
    kestrix_install_rpath(${name} FROM "${destination}" TO "${KESTRIX_INSTALL_LIBRARYDIR}")
    install(TARGETS ${name} LIBRARY DESTINATION "${destination}")
endfunction()
