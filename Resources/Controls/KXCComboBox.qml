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

    // The user has chosen an entry; a change by code, or by a new model, does not count.
    signal activated(int index)

    spacing: 5

    KXCLabel {
        id: comboBoxLabel

        Layout.fillWidth: true
        pointSize: 10
        Accessible.ignored: true
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
        onActivated: comboBoxRow.activated(index)

        background: Rectangle {
            color: comboBox.down ? Style.ComboBoxPressed : Style.darkColor
            border.width: comboBox.visualFocus ? 2 : 0
            border.color: Style.TextFieldFocusBorder
        }

        contentItem: KXCLabel {
            leftPadding: 8
            rightPadding: comboBox.indicator.width + 6
            text: comboBox.displayText
            pointSize: comboBoxRow.textPointSize
            textColor: comboBox.enabled ? Style.TextDarkColor : Style.TextLightColor
            verticalAlignment: Text.AlignVCenter
            wrapMode: Text.NoWrap
            elide: Text.ElideRight
            Accessible.ignored: true
        }

        indicator: Image {
            x: comboBox.width - width - 6
            y: (comboBox.height - height) / 2
            source: "qrc:///Resources/Images/ArrowDown.svg"
            sourceSize: Qt.size(14, 14)
            opacity: comboBox.enabled ? 1 : 0.4
        }

        delegate: ItemDelegate {
            id: entry

            objectName: comboBoxRow.objectName + "Entry" + index
            width: comboBox.width
            height: 30
            padding: 0
            highlighted: comboBox.highlightedIndex === index
            Accessible.name: entryLabel.text

            background: Rectangle {
                color: entry.highlighted || entry.hovered ? Style.lightColor : Style.darkColor
            }

            contentItem: RowLayout {
                spacing: 5

                KXCLabel {
                    id: entryLabel

                    Layout.fillWidth: true
                    Layout.leftMargin: 8
                    // Reading the count lets the text follow a new model under the same index.
                    text: comboBox.count > index ? comboBox.textAt(index) : ""
                    pointSize: comboBoxRow.textPointSize
                    bold: comboBox.currentIndex === index
                    wrapMode: Text.NoWrap
                    elide: Text.ElideRight
                    Accessible.ignored: true
                }

                KXCLabel {
                    Layout.rightMargin: 8
                    visible: comboBoxRow.unitVisible
                    text: comboBoxRow.unitVisible ? modelData.second : ""
                    pointSize: comboBoxRow.textPointSize
                    wrapMode: Text.NoWrap
                    Accessible.ignored: true
                }
            }
        }

        HandCursorArea {
        }
    }
}
