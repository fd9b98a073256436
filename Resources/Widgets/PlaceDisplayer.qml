// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick 2.15
import QtQuick.Layouts 1.15
import "../Controls"

// Three numbers of a place side by side under a heading.
ColumnLayout {
    id: placeDisplayer

    property alias title: heading.text
    default property alias content: row.data

    spacing: 2

    KXCLabel {
        id: heading

        bold: true
    }

    RowLayout {
        id: row

        spacing: 15
    }
}
