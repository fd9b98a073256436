// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick 2.15
import QtTest 1.15
import "qrc:/Resources/Controls"
import "qrc:/Resources/Utils/Style.js" as Style
import "qrc:/Resources/Widgets"
import "qrc:/Resources/Widgets/ParametersBoxes"

Item {
    id: root

    width: 400
    height: 300

    Component {
        id: boxComponent

        ParametersBox {
            objectName: "alarmBox"
            title: "Alarm"

            Rectangle {
                objectName: "content"
                implicitWidth: 50
                implicitHeight: 100
            }
        }
    }

    Component {
        id: panelComponent

        ParametersPanel {
            width: Style.ParametersPanelWidth
            height: root.height

            ParametersBox {
                objectName: "first"

                Rectangle {
                    implicitHeight: 200
                }
            }

            ParametersBox {
                objectName: "second"

                Rectangle {
                    implicitHeight: 200
                }
            }
        }
    }

    Component {
        id: smallPanelComponent

        SmallParametersPanel {
            height: root.height

            ParametersBox {
                objectName: "first"
            }
        }
    }

    Component {
        id: spacerComponent

        Spacer {
        }
    }

    TestCase {
        name: "ParametersBox"
        when: windowShown

        function cleanup() {
            MainViewModel.ParameterMenuExpanded = false;
        }

        function test_defaults() {
            const box = createTemporaryObject(boxComponent, root);
            compare(box.expanded, true);
            compare(box.childrenEnabled, true);
            compare(box.invertArrow, false);
            verify(Qt.colorEqual(box.color, Style.BoxBackgroundColor));
            compare(findChild(box, "alarmBoxTitle").height, 35);
            compare(box.width, root.width);
        }

        function test_contentHasMargins() {
            const box = createTemporaryObject(boxComponent, root);
            const place = findChild(box, "content").mapToItem(box, 0, 0);
            compare(place.x, 10);
            compare(place.y, 45);
            compare(box.height, 35 + 10 + 100 + 10);
        }

        function test_titleToggles() {
            const box = createTemporaryObject(boxComponent, root);
            const title = findChild(box, "alarmBoxTitle");
            mouseClick(title);
            compare(box.expanded, false);
            compare(box.height, 35);
            compare(findChild(box, "content").visible, false);
            mouseClick(title);
            compare(box.expanded, true);
            compare(box.height, 155);
        }

        function test_keyboardToggles_data() {
            return [{tag: "Space", key: Qt.Key_Space}, {tag: "Return", key: Qt.Key_Return}, {tag: "Enter", key: Qt.Key_Enter}];
        }

        function test_keyboardToggles(data) {
            const box = createTemporaryObject(boxComponent, root);
            const title = findChild(box, "alarmBoxTitle");
            verify(title.activeFocusOnTab);
            title.forceActiveFocus(Qt.TabFocusReason);
            verify(Qt.colorEqual(grabImage(title).pixel(0, 0), Style.TextFieldFocusBorder));
            keyClick(data.key);
            compare(box.expanded, false);
        }

        function test_titleIsInCapitals() {
            const box = createTemporaryObject(boxComponent, root);
            const title = findChild(box, "alarmBoxTitle");
            compare(title.Accessible.name, "Alarm");
            const label = title.children[1];
            compare(label.text, "Alarm");
            compare(label.font.capitalization, Font.AllUppercase);
            compare(label.font.pointSize, 12);
        }

        function test_arrow() {
            const box = createTemporaryObject(boxComponent, root);
            const arrow = findChild(box, "alarmBoxTitleArrow");
            compare(arrow.status, Image.Ready);
            const expandedArrow = arrow.source;
            box.expanded = false;
            const collapsedArrow = arrow.source;
            verify(expandedArrow !== collapsedArrow);
            box.invertArrow = true;
            compare(arrow.source, expandedArrow);
            box.expanded = true;
            compare(arrow.source, collapsedArrow);
        }

        function test_childrenCanBeDisabled() {
            const box = createTemporaryObject(boxComponent, root, {childrenEnabled: false});
            compare(findChild(box, "content").enabled, false);
            mouseClick(findChild(box, "alarmBoxTitle"));
            compare(box.expanded, false);
        }

        function test_panel() {
            const panel = createTemporaryObject(panelComponent, root);
            compare(panel.spacing, 30);
            const first = findChild(panel, "first");
            const second = findChild(panel, "second");
            tryCompare(first, "width", Style.ParametersPanelWidth - Style.ParametersScrollBarWidth, 30000);
            compare(second.y, first.height + 10);
            const flickable = findChild(panel, "parametersFlickable");
            compare(flickable.clip, true);
            compare(flickable.contentHeight, 2 * first.height + 10 + 10);
            mouseWheel(flickable, 50, 50, 0, -240);
            tryVerify(() => flickable.contentY > 0, 30000);
        }

        function test_panelFollowsItsBoxes() {
            const panel = createTemporaryObject(panelComponent, root);
            const flickable = findChild(panel, "parametersFlickable");
            findChild(panel, "first").expanded = false;
            tryCompare(flickable, "contentHeight", 35 + 10 + 255 + 10, 30000);
        }

        function test_smallPanel() {
            const panel = createTemporaryObject(smallPanelComponent, root);
            const toggle = findChild(panel, "parametersMenuToggle");
            const flickable = findChild(panel, "parametersFlickable");
            compare(panel.width, Style.SmallMainMenuClosedWidth);
            verify(!flickable.visible);
            tryCompare(toggle, "width", Style.SmallMainMenuClosedWidth, 30000);
            compare(toggle.y, 0);
            compare(toggle.imageSize, 30);
            mouseClick(toggle);
            compare(MainViewModel.ParameterMenuExpanded, true);
            compare(panel.width, Style.ParametersPanelWidth);
            verify(flickable.visible);
            compare(toggle.y, 0);
            tryCompare(toggle, "width", Style.ParametersPanelWidth, 30000);
            verify(findChild(panel, "first").width > 150);
            mouseClick(toggle);
            compare(MainViewModel.ParameterMenuExpanded, false);
            verify(!flickable.visible);
            compare(panel.width, Style.SmallMainMenuClosedWidth);
            tryCompare(toggle, "y", 0, 30000);
        }

        function test_spacer() {
            compare(createTemporaryObject(spacerComponent, root).height, 5);
        }
    }
}
