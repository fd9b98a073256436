// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick 2.15
import "../Utils/Style.js" as Style

Text {
    id: label

    property alias pointSize: label.font.pointSize
    property alias capitalization: label.font.capitalization
    property alias bold: label.font.bold
    property alias textColor: label.color
    property alias fontType: label.font.family
    // False for numbers, which have a font of their own.
    property bool letterLabel: true

    color: Style.TextDarkColor
    font.family: letterLabel ? Style.LetterFontFamily : Style.NumberFontFamily
    font.pointSize: 10
    wrapMode: Text.Wrap
    renderType: Text.NativeRendering
    textFormat: Text.PlainText
    Accessible.role: Accessible.StaticText
    Accessible.name: text
}
