// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick 2.15
import QtQuick.Layouts 1.15
import "../../Utils/Style.js" as Style

// A titled group of parameters that can be collapsed to its title.
Rectangle {
    id: box

    default property alias content: contentColumn.data
    property alias title: boxTitle.title
    property alias expanded: boxTitle.expanded
    property alias invertArrow: boxTitle.invertArrow
    property bool childrenEnabled: true

    // The height is assigned, not bound: a panel that is laid out anew by it may change the width, and with it the
    // height of wrapped texts, while a binding would still be at work.
    function fitHeight() {
        implicitHeight = boxTitle.height + (expanded ? contentColumn.implicitHeight + 20 : 0);
    }

    color: Style.BoxBackgroundColor
    width: parent ? parent.width : implicitWidth
    implicitWidth: Style.ParametersPanelWidth - Style.ParametersScrollBarWidth
    onExpandedChanged: fitHeight()
    Component.onCompleted: fitHeight()

    ParametersBoxTitle {
        id: boxTitle

        objectName: box.objectName + "Title"
        width: box.width
        onHeightChanged: box.fitHeight()
    }

    ColumnLayout {
        id: contentColumn

        anchors.top: boxTitle.bottom
        anchors.left: box.left
        anchors.right: box.right
        anchors.margins: 10
        visible: box.expanded
        enabled: box.childrenEnabled
        onImplicitHeightChanged: box.fitHeight()
    }
}
