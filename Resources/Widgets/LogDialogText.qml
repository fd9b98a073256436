// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick 2.15
import "../Utils/Style.js" as Style

// Text of a log row that can be selected and copied.
TextEdit {
    readOnly: true
    selectByMouse: true
    textFormat: TextEdit.PlainText
    color: Style.TextDarkColor
    font.family: Style.LetterFontFamily
    font.pointSize: 9
    Accessible.role: Accessible.StaticText
    Accessible.name: text
}
