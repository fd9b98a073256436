// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick 2.15
import QtQuick.Layouts 1.15
import "../Controls"
import "../Utils/Style.js" as Style

// A caption above a value of one line.
ColumnLayout {
    id: entry

    property string caption: ""
    property string value: ""

    Layout.minimumWidth: 100
    Layout.maximumWidth: Layout.fillWidth ? -1 : 220
    Layout.alignment: Qt.AlignTop
    spacing: 2

    KXCLabel {
        text: entry.caption
        pointSize: 10
        textColor: Style.TextLightColor
    }

    KXCLabel {
        objectName: "value"
        Layout.fillWidth: true
        text: entry.value
        pointSize: 10
        textColor: Style.TextDarkColor
        wrapMode: Text.NoWrap
        maximumLineCount: 1
        elide: Text.ElideRight
        Accessible.role: Accessible.StaticText
        Accessible.name: entry.caption + ": " + entry.value
    }
}
