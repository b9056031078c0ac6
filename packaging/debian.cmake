# SPDX-License-Identifier: GPL-3.0-or-later
# The program needs settings/ and Data/ in its own folder, so it is installed in /opt. Links are
# installed in other folders of the system, so the installation prefix is the root folder.

if(CMAKE_INSTALL_PREFIX_INITIALIZED_TO_DEFAULT)
    set_property(CACHE CMAKE_INSTALL_PREFIX PROPERTY VALUE /)
endif()
set(folder opt/ork2-terminal)
set(documents usr/share/doc/ork2-terminal)

install(TARGETS ork2-terminal ork2-simulator RUNTIME DESTINATION ${folder})
install(FILES ${PROJECT_SOURCE_DIR}/settings/settings.txt DESTINATION ${folder}/settings)
set(programs ork2-terminal ork2-simulator)
if(EXISTS ${PROJECT_SOURCE_DIR}/tools/diagnose)
    install(PROGRAMS ${PROJECT_SOURCE_DIR}/tools/diagnose
        DESTINATION ${folder} RENAME ork2-diagnose)
    foreach(module __init__ account bundle data files ini main options ports processes programs report
            settingsfile store)
        install(FILES ${PROJECT_SOURCE_DIR}/tools/diagnosis/${module}.py
            DESTINATION ${folder}/diagnosis)
    endforeach()
    list(APPEND programs ork2-diagnose)
endif()

# Links and compressed files are not part of the sources; they are created in the build folder.
set(made ${CMAKE_CURRENT_BINARY_DIR}/made)
function(ork2_compress source destination name)
    set(target ${made}/${destination}/${name}.gz)
    add_custom_command(OUTPUT ${target}
        COMMAND ${CMAKE_COMMAND} -E make_directory ${made}/${destination}
        COMMAND gzip -9nc ${source} > ${target}
        DEPENDS ${source}
        VERBATIM)
    set_property(DIRECTORY APPEND PROPERTY ork2_compressed ${target})
endfunction()
function(ork2_install_compressed source destination name)
    ork2_compress(${source} ${destination} ${name})
    install(FILES ${made}/${destination}/${name}.gz DESTINATION ${destination})
endfunction()

file(MAKE_DIRECTORY ${made}/usr/bin)
foreach(program IN LISTS programs)
    file(CREATE_LINK /${folder}/${program} ${made}/usr/bin/${program} SYMBOLIC)
    install(FILES ${made}/usr/bin/${program} DESTINATION usr/bin)
    foreach(language "" ru/)
        set(page ${CMAKE_CURRENT_SOURCE_DIR}/man/${language}${program}.1)
        if(EXISTS ${page})
            ork2_install_compressed(${page} usr/share/man/${language}man1 ${program}.1)
        endif()
    endforeach()
endforeach()
ork2_install_compressed(${CMAKE_CURRENT_SOURCE_DIR}/debian/changelog ${documents} changelog)

install(FILES ork2-terminal.desktop DESTINATION usr/share/applications)
install(FILES ru.kastor.ork2_terminal.metainfo.xml DESTINATION usr/share/metainfo)
foreach(side 16 24 32 48 64 128 256 512)
    install(FILES icons/${side}.png
        DESTINATION usr/share/icons/hicolor/${side}x${side}/apps RENAME ork2-terminal.png)
endforeach()
install(FILES ${PROJECT_SOURCE_DIR}/art/icon.svg
    DESTINATION usr/share/icons/hicolor/scalable/apps RENAME ork2-terminal.svg)

install(FILES debian/copyright DESTINATION ${documents})
# The embedded fonts are taken from system packages, which contain their licences.
foreach(font fonts-urw-base35 fonts-osifont)
    install(FILES /usr/share/doc/${font}/copyright
        DESTINATION ${documents} RENAME copyright.${font} OPTIONAL)
endforeach()
install(FILES debian/lintian-overrides DESTINATION usr/share/lintian/overrides
    RENAME ork2-terminal)

# Packages needed at run time are listed in section [run] of the package list; the linked libraries
# are determined from the program.
set(package_list ${CMAKE_CURRENT_SOURCE_DIR}/debian-packages.txt)
set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${package_list})
file(STRINGS ${package_list} lines)
set(section "")
set(run_packages "")
set(recorder_packages "")
foreach(line IN LISTS lines)
    string(REGEX REPLACE "#.*" "" line "${line}")
    string(STRIP "${line}" line)
    if(line MATCHES "^\\[(.*)\\]$")
        set(section ${CMAKE_MATCH_1})
    elseif(section STREQUAL "run" AND line MATCHES "^(.*[^ ]) *\\| *-$")
        # Not available in every release: add the package if the build machine has it.
        set(name ${CMAKE_MATCH_1})
        execute_process(COMMAND dpkg-query -W ${name}
            RESULT_VARIABLE absent OUTPUT_QUIET ERROR_QUIET)
        if(absent EQUAL 0)
            list(APPEND run_packages ${name})
        endif()
    elseif(section STREQUAL "run" AND NOT line STREQUAL "")
        list(APPEND run_packages "${line}")
    elseif(section STREQUAL "recorder" AND NOT line STREQUAL "")
        list(APPEND recorder_packages "${line}")
    endif()
endforeach()
list(JOIN run_packages ", " CPACK_DEBIAN_PACKAGE_DEPENDS)
list(JOIN recorder_packages ", " recorder_packages)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)

set(CPACK_GENERATOR DEB)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT) # ork2-terminal_2.2.4_amd64.deb
set(CPACK_DEBIAN_PACKAGE_SECTION science)
set(CPACK_DEBIAN_PACKAGE_PRIORITY optional)
set(CPACK_PACKAGING_INSTALL_PREFIX /)
set(control ${CMAKE_CURRENT_SOURCE_DIR}/debian)
set(CPACK_DEBIAN_PACKAGE_CONTROL_EXTRA ${control}/conffiles ${control}/postinst ${control}/postrm)
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)
# The permissions of folders in the package must not depend on the umask of the user.
set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS
    OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)

include(recorder.cmake)
get_directory_property(compressed ork2_compressed)
add_custom_target(ork2_compressed ALL DEPENDS ${compressed})
