// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick 2.15
import QtQuick.Controls 2.15
import "../Utils/Style.js" as Style

Button {
    id: textButton

    property bool light: false

    implicitWidth: 100
    implicitHeight: 50
    Accessible.name: text

    contentItem: KXCLabel {
        text: textButton.text
        pointSize: 10
        textColor: textButton.enabled ? Style.TextDarkColor : Style.ActionButtonDisabledText
        horizontalAlignment: Text.AlignHCenter
        verticalAlignment: Text.AlignVCenter
        wrapMode: Text.NoWrap
        Accessible.ignored: true
    }

    background: Rectangle {
        color: !textButton.enabled ? Style.ActionButtonDisabledBg : textButton.down ? Style.PageButtonDownColor : textButton.light ? Style.lightColor : Style.PageButtonColor
        border.width: textButton.visualFocus ? 2 : textButton.down ? 1 : 0
        border.color: textButton.visualFocus ? Style.TextFieldFocusBorder : Style.BordersColor
    }

    HandCursorArea {
    }
}
