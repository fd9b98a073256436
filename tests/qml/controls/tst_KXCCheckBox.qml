// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick 2.15
import QtQuick.Controls 2.15
import QtTest 1.15
import "qrc:/Resources/Controls"

Item {
    id: root

    width: 400
    height: 300

    Component {
        id: boxComponent

        KXCCheckBox {
            objectName: "csv"
            label: "Save recordings"
            width: 250
        }
    }

    TestCase {
        property KXCCheckBox row: null
        property CheckBox box: null

        function make(properties) {
            row = createTemporaryObject(boxComponent, root, properties);
            verify(row);
            box = findChild(row, "csvBox");
            verify(box);
        }

        function labelItem() {
            return row.children[1];
        }

        name: "KXCCheckBox"
        when: windowShown

        function test_defaults() {
            make({});
            compare(row.checked, false);
            compare(row.toolTipText, "");
            compare(row.label, "Save recordings");
            compare(box.Accessible.name, "Save recordings");
        }

        function test_clickOnTheBox() {
            make({});
            mouseClick(box);
            compare(row.checked, true);
            mouseClick(box);
            compare(row.checked, false);
        }

        function test_clickOnTheLabel() {
            make({});
            compare(labelItem().text, "Save recordings");
            mouseClick(labelItem());
            compare(row.checked, true);
            mouseClick(labelItem());
            compare(row.checked, false);
        }

        function test_disabled() {
            make({enabled: false});
            mouseClick(labelItem());
            mouseClick(box);
            compare(row.checked, false);
        }

        function test_keyboard() {
            make({});
            box.forceActiveFocus(Qt.TabFocusReason);
            verify(box.visualFocus);
            compare(box.indicator.border.width, 2);
            keyClick(Qt.Key_Space);
            compare(row.checked, true);
        }

        function test_toolTip() {
            make({toolTipText: "A side file"});
            compare(findChild(box, "hoverDelay").interval, 500);
            compare(box.ToolTip.text, "A side file");
            mouseMove(labelItem(), 5, 5);
            tryCompare(box.ToolTip, "visible", true, 30000);
            mouseMove(root, 390, 290);
            tryCompare(box.ToolTip, "visible", false, 30000);
        }

        function test_noEmptyToolTip() {
            make({});
            mouseMove(box, 5, 5);
            compare(box.ToolTip.visible, false);
        }
    }
}
