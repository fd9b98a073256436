// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick 2.15
import QtQuick.Layouts 1.15

// The field components of the last block.
GridLayout {
    objectName: "componentDisplayer"
    columns: 3
    rowSpacing: 0
    columnSpacing: 0

    MeterFields {
        Layout.fillHeight: true
        Layout.fillWidth: true
        Layout.rightMargin: 20
    }
}
