// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick 2.15
import QtQuick.Layouts 1.15
import "../../Controls"

// A line of information in a box: what does not fit is cut off at the right.
LabelDisplayer {
    Layout.fillWidth: true
    labelWidth: 75
    textPointSize: 9
    valueWrapMode: Text.NoWrap
}
