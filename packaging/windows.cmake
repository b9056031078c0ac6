# SPDX-License-Identifier: GPL-3.0-or-later
# Installs the program, the Qt libraries and settings/ in one folder, as an installer and as an
# archive.

install(TARGETS ork2-terminal RUNTIME DESTINATION .)
install(FILES ${PROJECT_SOURCE_DIR}/settings/settings.txt DESTINATION settings)

# Qt's deployment script installs its libraries and modules.
qt_generate_deploy_qml_app_script(TARGET ork2-terminal FILENAME_VARIABLE deploy_script)
install(SCRIPT ${deploy_script})

set(CPACK_GENERATOR NSIS ZIP)
set(CPACK_PACKAGE_INSTALL_DIRECTORY ork2-terminal)
# Day files are written to the program folder, and users cannot write to "Program Files".
set(CPACK_NSIS_INSTALL_ROOT "$LOCALAPPDATA\\\\Programs")
set(CPACK_NSIS_EXECUTABLES_DIRECTORY .)
set(CPACK_PACKAGE_EXECUTABLES ork2-terminal "Терминал ОРК-2")
set(CPACK_RESOURCE_FILE_LICENSE ${PROJECT_SOURCE_DIR}/LICENSE)
set(CPACK_NSIS_MUI_ICON ${PROJECT_SOURCE_DIR}/img/logokas_p9x_2.ico)
set(CPACK_NSIS_INSTALLED_ICON_NAME ork2-terminal.exe)
set(CPACK_NSIS_ENABLE_UNINSTALL_BEFORE_INSTALL ON)
