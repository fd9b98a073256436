// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick 2.15
import QtQuick.Layouts 1.15
import QtGraphicalEffects 1.15

// Tells that the alarm has gone off.
RowLayout {
    id: warning

    property int imageSize: 25
    property int pointSize: 12

    spacing: 8
    Accessible.role: Accessible.AlertMessage
    Accessible.name: warningText.text

    Image {
        source: "qrc:///Resources/Images/Warning.svg"
        sourceSize: Qt.size(warning.imageSize, warning.imageSize)
        layer.enabled: true
        layer.effect: ColorOverlay {
            color: "orange"
        }
    }

    KXCLabel {
        id: warningText

        text: qsTr("Measured field is out of bounds.")
        pointSize: warning.pointSize
        textColor: "black"
        Accessible.ignored: true
    }
}
