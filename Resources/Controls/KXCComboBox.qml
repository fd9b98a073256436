// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick 2.15
import QtQuick.Controls 2.15
import QtQuick.Layouts 1.15
import "../Utils/Style.js" as Style

// A label and a choice. With `unitVisible` the entries are maps with `first` and `second`, of which the list shows
// both and the box the first.
RowLayout {
    id: comboBoxRow

    property alias text: comboBoxLabel.text
    property alias currentText: comboBox.currentText
    property alias currentIndex: comboBox.currentIndex
    property alias model: comboBox.model
    property alias textRole: comboBox.textRole
    property alias count: comboBox.count
    property alias labelPointSize: comboBoxLabel.pointSize
    property alias legendPointSize: comboBoxLabel.pointSize
    property int textPointSize: 9
    property int comboboxWidth: 120
    property bool unitVisible: false

    function entryText(entry) {
        if (entry === null || entry === undefined)
            return "";
        if (unitVisible)
            return entry.first;
        return comboBox.textRole === "" ? entry : entry[comboBox.textRole];
    }

    spacing: 5

    KXCLabel {
        id: comboBoxLabel

        Layout.fillWidth: true
        pointSize: 10
    }

    ComboBox {
        id: comboBox

        objectName: comboBoxRow.objectName + "Box"
        Layout.preferredWidth: comboBoxRow.comboboxWidth
        Layout.preferredHeight: 30
        font.family: Style.LetterFontFamily
        font.pointSize: comboBoxRow.textPointSize
        textRole: comboBoxRow.unitVisible ? "first" : ""
        Accessible.name: comboBoxLabel.text

        background: Rectangle {
            color: comboBox.down ? Style.ComboBoxPressed : Style.darkColor
            border.width: comboBox.visualFocus ? 2 : 0
            border.color: Style.TextFieldFocusBorder
        }

        contentItem: KXCLabel {
            leftPadding: 8
            rightPadding: comboBox.indicator.width
            text: comboBox.displayText
            pointSize: comboBoxRow.textPointSize
            textColor: comboBox.enabled ? Style.TextDarkColor : Style.TextLightColor
            verticalAlignment: Text.AlignVCenter
            wrapMode: Text.NoWrap
            elide: Text.ElideRight
        }

        indicator: Image {
            x: comboBox.width - width - 6
            y: (comboBox.height - height) / 2
            source: "qrc:///Resources/Images/ArrowDown.svg"
            sourceSize: Qt.size(14, 14)
        }

        delegate: ItemDelegate {
            id: entryDelegate

            width: comboBox.width
            height: 30
            padding: 0
            highlighted: comboBox.highlightedIndex === index
            Accessible.name: entryLabel.text

            background: Rectangle {
                color: entryDelegate.highlighted || entryDelegate.hovered ? Style.lightColor : Style.BackgroundColor
            }

            contentItem: RowLayout {
                spacing: 5

                KXCLabel {
                    id: entryLabel

                    Layout.fillWidth: true
                    Layout.leftMargin: 8
                    text: comboBoxRow.entryText(modelData)
                    pointSize: comboBoxRow.textPointSize
                    bold: comboBox.currentIndex === index
                    wrapMode: Text.NoWrap
                    elide: Text.ElideRight
                }

                KXCLabel {
                    Layout.rightMargin: 8
                    visible: comboBoxRow.unitVisible
                    text: comboBoxRow.unitVisible ? modelData.second : ""
                    pointSize: comboBoxRow.textPointSize
                    textColor: Style.TextLightColor
                    wrapMode: Text.NoWrap
                }
            }
        }

        HandCursorArea {
        }
    }
}
