// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick 2.15
import QtQuick.Layouts 1.15

// A title above a column of settings.
ColumnLayout {
    id: section

    default property alias content: contentColumn.data
    property alias title: sectionTitle.title
    property alias contentSpacing: contentColumn.spacing

    spacing: 5

    KXCTitle {
        id: sectionTitle

        Layout.fillWidth: true
        pointSize: 20
    }

    ColumnLayout {
        id: contentColumn

        Layout.fillWidth: true
        Layout.margins: 10
        spacing: 15
    }
}
