// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick 2.15
import QtQuick.Controls 2.15
import QtQuick.Layouts 1.15
import "../../Utils/Style.js" as Style

// A few lines of text. `commented` comes at every change and at the end of editing.
ScrollView {
    id: area

    property alias text: textArea.text
    // Where the Tab key goes.
    property Item tabTarget: null

    signal commented

    // To the next item of the window, or the one before.
    function leave(forward) {
        const next = textArea.nextItemInFocusChain(forward);
        next.forceActiveFocus(forward ? Qt.TabFocusReason : Qt.BacktabFocusReason);
    }

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
        Keys.priority: Keys.BeforeItem
        // Tab goes to and fro between the comments, so other keys have to leave them.
        Keys.onTabPressed: {
            if (event.modifiers & Qt.ControlModifier || area.tabTarget === null)
                area.leave(true);
            else
                area.tabTarget.forceActiveFocus(Qt.TabFocusReason);
        }
        Keys.onBacktabPressed: area.leave(false)
        Accessible.name: area.Accessible.name
        Accessible.description: qsTr("Ctrl+Tab and Shift+Tab leave the comments.")
        onTextChanged: area.commented()
        onEditingFinished: area.commented()
    }
}
