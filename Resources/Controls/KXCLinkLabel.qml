// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick 2.15
import "../Utils/Style.js" as Style

// A text with a link in it, which opens outside of the program: by a click, or by Return when it has the focus.
Text {
    id: linkLabel

    property string textBefore: ""
    property string linkText: ""
    property string textAfter: ""
    property string url: ""

    function escaped(plain) {
        return plain.replace(/&/g, "&amp;").replace(/</g, "&lt;").replace(/"/g, "&quot;");
    }

    function openLink() {
        Qt.openUrlExternally(url);
    }

    textFormat: Text.StyledText
    text: escaped(textBefore) + "<a href=\"" + escaped(url) + "\">" + escaped(linkText) + "</a>" + escaped(textAfter)
    color: Style.TextDarkColor
    linkColor: Style.accentColor
    font.family: Style.LetterFontFamily
    font.pointSize: 10
    wrapMode: Text.Wrap
    renderType: Text.NativeRendering
    activeFocusOnTab: true
    Accessible.role: Accessible.Link
    Accessible.name: textBefore + linkText + textAfter
    Accessible.focusable: true
    Accessible.onPressAction: openLink()
    Keys.onReturnPressed: openLink()
    Keys.onEnterPressed: openLink()
    Keys.onSpacePressed: openLink()
    onLinkActivated: openLink()

    Rectangle {
        anchors.fill: parent
        anchors.margins: -2
        color: "transparent"
        border.width: linkLabel.activeFocus ? 2 : 0
        border.color: Style.TextFieldFocusBorder
    }

    MouseArea {
        anchors.fill: parent
        acceptedButtons: Qt.NoButton
        cursorShape: linkLabel.hoveredLink === "" ? Qt.ArrowCursor : Qt.PointingHandCursor
    }
}
