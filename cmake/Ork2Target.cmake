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
        # Half of the time to compile a test would be for undefined behaviour, which is looked for
        # in the programs only.
        target_compile_options(ork2_build_flags INTERFACE
            -fsanitize=${ORK2_SANITIZE} -fno-omit-frame-pointer -fno-sanitize-recover=undefined
            $<$<BOOL:$<TARGET_PROPERTY:ORK2_TEST_CODE>>:-fno-sanitize=undefined>
            # Reported by gcc without reason in instrumented code.
            $<$<CXX_COMPILER_ID:GNU>:-Wno-maybe-uninitialized>)
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

# Most of the time to compile a file would go into the headers of Qt Core. The precompiled headers
# must have been compiled with the flags of the files that use them.
function(ork2_add_qt_headers target)
    add_library(${target} OBJECT ${PROJECT_SOURCE_DIR}/cmake/qtheaders.cpp)
    target_link_libraries(${target} PRIVATE ork2_build_flags Qt6::Core)
    target_precompile_headers(${target} PRIVATE <QtCore>)
endfunction()
ork2_add_qt_headers(ork2_qt_headers)

# Adds the library of a folder. Its headers are included by file name, for example "comport.h".
function(ork2_add_library target)
    add_library(${target} STATIC ${ARGN})
    target_include_directories(${target} PUBLIC ${CMAKE_CURRENT_SOURCE_DIR})
    target_link_libraries(${target} PUBLIC ork2_build_flags)
    target_precompile_headers(${target} REUSE_FROM ork2_qt_headers)
endfunction()

# Adds a program for users, built in bin/. Tests and benchmarks are built in their own folders.
function(ork2_add_program target)
    add_executable(${target} ${ARGN})
    target_link_libraries(${target} PRIVATE ork2_build_flags)
    target_precompile_headers(${target} REUSE_FROM ork2_qt_headers)
    set_target_properties(${target} PROPERTIES
        RUNTIME_OUTPUT_DIRECTORY ${PROJECT_BINARY_DIR}/bin)
endfunction()
