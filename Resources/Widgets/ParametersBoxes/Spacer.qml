// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick 2.15

// A gap between groups of a parameter box.
Item {
    implicitHeight: 5
    height: 5
}
