// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick 2.15
import "../Utils/Style.js" as Style

KXCLabel {
    width: 100
    pointSize: Style.TableTextSize
    horizontalAlignment: Text.AlignHCenter
    verticalAlignment: Text.AlignVCenter
    wrapMode: Text.NoWrap
}
