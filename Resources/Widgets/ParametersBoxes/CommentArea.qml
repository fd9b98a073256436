// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick 2.15
import QtQuick.Controls 2.15
import QtQuick.Layouts 1.15
import "../../Utils/Style.js" as Style

// A few lines of text. `commented` comes at every change and at the end of editing.
ScrollView {
    id: area

    property alias text: textArea.text

    signal commented

    Layout.fillWidth: true
    Layout.preferredHeight: 50
    clip: true

    background: Rectangle {
        color: textArea.enabled ? Style.BackgroundColor : Style.DisabledColor
        border.width: textArea.activeFocus ? 2 : 1
        border.color: textArea.activeFocus ? Style.TextFieldFocusBorder : Style.BordersColor
    }

    TextArea {
        id: textArea

        objectName: area.objectName + "Text"
        focus: true
        activeFocusOnTab: true
        padding: 5
        wrapMode: TextArea.Wrap
        selectByMouse: true
        selectionColor: Style.TextFieldFocusBorder
        selectedTextColor: Style.BackgroundColor
        font.family: Style.LetterFontFamily
        font.pointSize: 9
        color: Style.TextDarkColor
        textFormat: TextEdit.PlainText
        KeyNavigation.priority: KeyNavigation.BeforeItem
        KeyNavigation.tab: area.KeyNavigation.tab
        Accessible.name: area.Accessible.name
        onTextChanged: area.commented()
        onEditingFinished: area.commented()
    }
}
