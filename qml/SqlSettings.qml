// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick

// Frame for the database settings. Has no fields and is never shown, intentional: the upload is
// dormant.
Window {
    id: sqlSettings

    signal exitSqlSettings

    color: Theme.window
    height: 420
    flags: Qt.Dialog
    modality: Qt.WindowModal
    title: "Параметры SQL сервера"
    width: 480

    onActiveChanged: {}

    FontLoader {
        source: "qrc:/settings/Fonts/GOST/GOST_B.TTF"
    }

    FontLoader {
        source: "qrc:/settings/Fonts/Palantino/pala.ttf"
    }

    RedFrame {
        focus: true

        Keys.onEscapePressed: sqlSettings.close()

        FrameExitButton {
            objectName: "exitButton"

            onClicked: sqlSettings.exitSqlSettings()
        }
    }
}
