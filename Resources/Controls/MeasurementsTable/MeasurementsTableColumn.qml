// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick.Controls 1.4

TableViewColumn {
    property bool isPosition: false

    movable: false
    resizable: false
}
