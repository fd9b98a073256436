// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick 2.15
import QtQuick.Controls 2.15
import "../../Controls"
import "../../Utils/Style.js" as Style

Button {
    id: boxButton

    implicitWidth: 80
    implicitHeight: 30
    padding: 4
    Accessible.name: text

    contentItem: KXCLabel {
        text: boxButton.text
        textColor: boxButton.enabled ? Style.TextDarkColor : Style.ActionButtonDisabledText
        horizontalAlignment: Text.AlignHCenter
        verticalAlignment: Text.AlignVCenter
        wrapMode: Text.NoWrap
        elide: Text.ElideRight
        Accessible.ignored: true
    }

    background: Rectangle {
        color: boxButton.down ? Style.ParametersBoxButtonDownColor : Style.ParametersBoxButtonColor
        opacity: boxButton.enabled ? 1 : 0.5
        border.width: boxButton.visualFocus ? 2 : boxButton.down ? 1 : 0
        border.color: boxButton.visualFocus ? Style.TextFieldFocusBorder : Style.BordersColor
    }

    HandCursorArea {
    }
}
