# SPDX-License-Identifier: GPL-3.0-or-later
# Compiler settings shared by all targets of the project.

add_library(ork2_build_flags INTERFACE)
target_compile_definitions(ork2_build_flags INTERFACE
    QT_NO_CAST_FROM_ASCII
    QT_NO_CAST_TO_ASCII
    QT_NO_KEYWORDS
    QT_DISABLE_DEPRECATED_BEFORE=0x060400)
if(NOT MSVC)
    target_compile_options(ork2_build_flags INTERFACE -Wall -Wextra -Wpedantic -Wconversion)
    if(ORK2_WARNINGS_AS_ERRORS)
        target_compile_options(ork2_build_flags INTERFACE -Werror)
    endif()
    if(ORK2_SANITIZE)
        target_compile_options(ork2_build_flags INTERFACE
            -fsanitize=${ORK2_SANITIZE} -fno-omit-frame-pointer -fno-sanitize-recover=undefined)
        target_link_options(ork2_build_flags INTERFACE -fsanitize=${ORK2_SANITIZE})
        if(ORK2_SANITIZE MATCHES "address")
            add_library(ork2_keep_libraries OBJECT
                ${PROJECT_SOURCE_DIR}/cmake/keeplibraries.cpp)
            target_link_options(ork2_build_flags INTERFACE
                $<$<STREQUAL:$<TARGET_PROPERTY:TYPE>,EXECUTABLE>:$<TARGET_OBJECTS:ork2_keep_libraries>>)
            add_dependencies(ork2_build_flags ork2_keep_libraries)
        endif()
    endif()
    if(ORK2_COVERAGE)
        target_compile_options(ork2_build_flags INTERFACE --coverage -fprofile-update=atomic)
        target_link_options(ork2_build_flags INTERFACE --coverage)
    endif()
endif()

# Adds the library of a folder. Its headers are included by file name, for example "comport.h".
function(ork2_add_library target)
    add_library(${target} STATIC ${ARGN})
    target_include_directories(${target} PUBLIC ${CMAKE_CURRENT_SOURCE_DIR})
    target_link_libraries(${target} PUBLIC ork2_build_flags)
endfunction()

# Adds a program for users, built in bin/. Tests and benchmarks are built in their own folders.
function(ork2_add_program target)
    add_executable(${target} ${ARGN})
    target_link_libraries(${target} PRIVATE ork2_build_flags)
    set_target_properties(${target} PROPERTIES
        RUNTIME_OUTPUT_DIRECTORY ${PROJECT_BINARY_DIR}/bin)
endfunction()
