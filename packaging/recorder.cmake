# SPDX-License-Identifier: GPL-3.0-or-later
# The package of the recorder. Its files belong to a component that the terminal's package leaves
# out, and it has its own CPack configuration:
#   cpack --config CPackRecorderConfig.cmake    (in the build folder)

set(documents usr/share/doc/ork2-recorder)
set(component COMPONENT recorder EXCLUDE_FROM_ALL)

install(TARGETS ork2-recorder RUNTIME DESTINATION usr/bin ${component})
install(FILES recorder/ork2-recorder.conf DESTINATION etc
    PERMISSIONS OWNER_READ OWNER_WRITE GROUP_READ ${component})
install(FILES recorder/ork2-recorder.service DESTINATION usr/lib/systemd/system ${component})
install(FILES recorder/upload.conf debian/copyright DESTINATION ${documents} ${component})
install(FILES recorder/lintian-overrides DESTINATION usr/share/lintian/overrides
    RENAME ork2-recorder ${component})

ork2_compress(${CMAKE_CURRENT_SOURCE_DIR}/recorder/changelog ${documents} changelog)
install(FILES ${made}/${documents}/changelog.gz DESTINATION ${documents} ${component})
foreach(language "" ru/)
    set(folder usr/share/man/${language}man8)
    ork2_compress(${CMAKE_CURRENT_SOURCE_DIR}/man/${language}ork2-recorder.8 ${folder} ork2-recorder.8)
    install(FILES ${made}/${folder}/ork2-recorder.8.gz DESTINATION ${folder} ${component})
endforeach()

configure_file(CPackRecorderConfig.cmake.in ${PROJECT_BINARY_DIR}/CPackRecorderConfig.cmake @ONLY)
