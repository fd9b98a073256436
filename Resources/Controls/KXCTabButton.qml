// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick 2.15
import QtQuick.Controls 2.15
import "../Utils/Style.js" as Style

TabButton {
    id: tabButton

    property bool light: false

    width: Style.TabWidth
    height: 30
    font.family: Style.LetterFontFamily
    font.pointSize: 10
    Accessible.name: text

    contentItem: KXCLabel {
        text: tabButton.text
        pointSize: 10
        horizontalAlignment: Text.AlignHCenter
        verticalAlignment: Text.AlignVCenter
        wrapMode: Text.NoWrap
        elide: Text.ElideRight
        Accessible.ignored: true
    }

    background: Rectangle {
        color: tabButton.checked || tabButton.pressed ? (tabButton.light ? Style.lightColor : Style.BackgroundColor) : Style.InactiveTabColor
        border.width: tabButton.visualFocus ? 2 : 0
        border.color: Style.TextFieldFocusBorder
    }

    HandCursorArea {
    }
}
