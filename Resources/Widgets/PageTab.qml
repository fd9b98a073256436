// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick 2.15
import "../Controls"

// A tab of an operation page and the view that it shows.
KXCTabButton {
    property Component component: null
    property int sectionIndex: 0
}
