// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick 2.15
import QtQuick.Layouts 1.15
import "../Utils/Style.js" as Style

// A label and a text.
RowLayout {
    id: displayer

    property alias label: nameLabel.text
    property alias value: valueLabel.text
    property alias valueColor: valueLabel.textColor
    property alias valueWrapMode: valueLabel.wrapMode
    property int textPointSize: 10
    property real labelWidth: -1

    spacing: 5
    Accessible.role: Accessible.StaticText
    Accessible.name: label + " " + value

    KXCLabel {
        id: nameLabel

        Layout.preferredWidth: displayer.labelWidth
        pointSize: displayer.textPointSize
        textColor: Style.TextLightColor
        Accessible.ignored: true
    }

    KXCLabel {
        id: valueLabel

        objectName: "value"
        Layout.fillWidth: true
        pointSize: displayer.textPointSize
        textColor: Style.TextDarkColor
        elide: Text.ElideRight
        Accessible.ignored: true
    }
}
