# SPDX-License-Identifier: GPL-3.0-or-later
# A Debian package of its own for the archive: it is also useful on computers without an instrument,
# and the terminal does not need its libraries. Installed in the program folder of the terminal,
# because the data folder of the terminal is found relative to it.

set(archive_documents usr/share/doc/ork2-archive)
set(archive_made ${CMAKE_CURRENT_BINARY_DIR}/made-archive)

# Not part of the package of the terminal.
function(ork2_install_archive)
    install(${ARGN} COMPONENT archive EXCLUDE_FROM_ALL)
endfunction()

function(ork2_install_archive_compressed source destination name)
    set(target ${archive_made}/${destination}/${name}.gz)
    add_custom_command(OUTPUT ${target}
        COMMAND ${CMAKE_COMMAND} -E make_directory ${archive_made}/${destination}
        COMMAND gzip -9nc ${source} > ${target}
        DEPENDS ${source}
        VERBATIM)
    set_property(DIRECTORY APPEND PROPERTY ork2_archive_compressed ${target})
    ork2_install_archive(FILES ${target} DESTINATION ${destination})
endfunction()

ork2_install_archive(TARGETS ork2-archive RUNTIME DESTINATION opt/ork2-terminal)
file(MAKE_DIRECTORY ${archive_made}/usr/bin)
file(CREATE_LINK /opt/ork2-terminal/ork2-archive ${archive_made}/usr/bin/ork2-archive SYMBOLIC)
ork2_install_archive(FILES ${archive_made}/usr/bin/ork2-archive DESTINATION usr/bin)
ork2_install_archive_compressed(
    ${CMAKE_CURRENT_SOURCE_DIR}/man/ork2-archive.1 usr/share/man/man1 ork2-archive.1)
ork2_install_archive_compressed(
    ${CMAKE_CURRENT_SOURCE_DIR}/man/ru/ork2-archive.1 usr/share/man/ru/man1 ork2-archive.1)
ork2_install_archive_compressed(
    ${CMAKE_CURRENT_SOURCE_DIR}/debian-archive/changelog ${archive_documents} changelog)
ork2_install_archive(FILES debian/copyright DESTINATION ${archive_documents})
ork2_install_archive(FILES debian-archive/lintian-overrides
    DESTINATION usr/share/lintian/overrides RENAME ork2-archive)
ork2_install_archive(FILES ork2-archive.desktop DESTINATION usr/share/applications)
ork2_install_archive(FILES ru.kastor.ork2_archive.metainfo.xml DESTINATION usr/share/metainfo)
foreach(side 16 24 32 48 64 128 256 512)
    ork2_install_archive(FILES icons/archive/${side}.png
        DESTINATION usr/share/icons/hicolor/${side}x${side}/apps RENAME ork2-archive.png)
endforeach()
ork2_install_archive(FILES ${PROJECT_SOURCE_DIR}/art/archive-icon.svg
    DESTINATION usr/share/icons/hicolor/scalable/apps RENAME ork2-archive.svg)
get_directory_property(archive_compressed ork2_archive_compressed)
add_custom_target(ork2_archive_compressed ALL DEPENDS ${archive_compressed})

configure_file(archive-package.cmake.in ${PROJECT_BINARY_DIR}/CPackArchiveConfig.cmake @ONLY)
add_custom_target(package_archive
    COMMAND ${CMAKE_CPACK_COMMAND} --config ${PROJECT_BINARY_DIR}/CPackArchiveConfig.cmake
    WORKING_DIRECTORY ${PROJECT_BINARY_DIR}
    VERBATIM)
add_dependencies(package_archive ork2-archive ork2_archive_compressed)
