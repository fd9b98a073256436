// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick 2.15
import QtQuick.Controls 2.15
import QtTest 1.15
import "qrc:/Resources/Controls"
import "qrc:/Resources/Utils/Style.js" as Style

Item {
    id: root

    readonly property var ranges: [
        {
            "first": "Auto",
            "second": ""
        },
        {
            "first": "0.1",
            "second": "[T]"
        },
        {
            "first": "1.5",
            "second": "[T]"
        }
    ]

    width: 400
    height: 300

    Component {
        id: boxComponent

        KXCComboBox {
            objectName: "range"
            width: 250
        }
    }

    TestCase {
        property KXCComboBox row: null
        property ComboBox box: null

        function make(properties) {
            row = createTemporaryObject(boxComponent, root, properties);
            verify(row);
            box = findChild(row, "rangeBox");
            verify(box);
        }

        function labelTexts(item) {
            const texts = [];
            const labels = item.contentItem.children;
            for (let i = 0; i < labels.length; ++i) {
                if (labels[i].visible)
                    texts.push(labels[i].text);
            }
            return texts;
        }

        function openedEntry(index) {
            box.popup.open();
            tryCompare(box.popup, "opened", true, 30000);
            tryVerify(() => box.popup.contentItem.itemAtIndex(index) !== null, 30000);
            return box.popup.contentItem.itemAtIndex(index);
        }

        name: "KXCComboBox"
        when: windowShown

        function test_defaults() {
            make({});
            compare(row.text, "");
            compare(row.currentText, "");
            compare(row.currentIndex, -1);
            compare(row.count, 0);
            compare(row.textRole, "");
            compare(row.comboboxWidth, 120);
            compare(row.textPointSize, 9);
            compare(row.labelPointSize, 10);
            compare(row.unitVisible, false);
            tryCompare(box, "width", 120, 30000);
            compare(box.font.family, Style.LetterFontFamily);
            compare(box.font.pointSize, 9);
        }

        function test_legendSizeIsThatOfTheLabel() {
            make({legendPointSize: 14});
            compare(row.legendPointSize, 14);
            compare(row.labelPointSize, 14);
        }

        function test_nullModelShowsAnEmptyText() {
            make({model: null});
            compare(row.count, 0);
            compare(row.currentText, "");
            compare(box.contentItem.text, "");
        }

        function test_nullModelWithUnitShowsAnEmptyText() {
            make({model: null, unitVisible: true});
            compare(row.currentText, "");
            compare(box.contentItem.text, "");
        }

        function test_modelOfTexts() {
            make({model: ["mT", "nT"], currentIndex: 1, text: "Units"});
            compare(row.count, 2);
            compare(row.currentText, "nT");
            compare(box.contentItem.text, "nT");
            compare(box.Accessible.name, "Units");
            compare(labelTexts(openedEntry(0)), ["mT"]);
            compare(openedEntry(1).objectName, "rangeEntry1");
        }

        function test_modelOfMaps() {
            make({model: [{"name": "a"}, {"name": "b"}], textRole: "name"});
            compare(row.currentText, "a");
            compare(labelTexts(openedEntry(1)), ["b"]);
        }

        function test_unitStandsBehindTheEntry() {
            make({model: root.ranges, unitVisible: true, currentIndex: 2});
            compare(row.count, 3);
            compare(row.currentText, "1.5");
            compare(box.contentItem.text, "1.5");
            const entry = openedEntry(1);
            compare(labelTexts(entry), ["0.1", "[T]"]);
            const unit = entry.contentItem.children[1];
            compare(unit.mapToItem(entry, unit.width, 0).x, entry.width - 8);
            compare(labelTexts(openedEntry(0)), ["Auto", ""]);
        }

        function test_newModelIsShownInTheList() {
            make({model: root.ranges, unitVisible: true});
            openedEntry(1);
            row.model = [{"first": "--", "second": ""}];
            compare(row.count, 1);
            row.currentIndex = 0;
            compare(row.currentText, "--");
            compare(labelTexts(openedEntry(0)), ["--", ""]);
        }

        function test_colours() {
            make({model: ["a", "b"]});
            verify(Qt.colorEqual(box.background.color, Style.darkColor));
            mousePress(box);
            verify(Qt.colorEqual(box.background.color, Style.ComboBoxPressed));
            mouseRelease(box);
            tryCompare(box.popup, "opened", true, 30000);
            const entry = openedEntry(1);
            mouseMove(entry, 10, 10);
            tryVerify(() => Qt.colorEqual(entry.background.color, Style.lightColor), 30000);
        }

        function test_choiceByMouseKeepsTheBinding() {
            make({model: ["a", "b"]});
            const source = Qt.createQmlObject("import QtQuick 2.15; QtObject { property int index: 0 }", root);
            row.currentIndex = Qt.binding(() => source.index);
            mouseClick(openedEntry(1));
            compare(row.currentIndex, 1);
            tryCompare(box.popup, "visible", false, 30000);
            source.index = 1;
            source.index = 0;
            compare(row.currentIndex, 0);
            source.destroy();
        }

        function test_choiceByKeyboard() {
            make({model: ["a", "b", "c"]});
            verify(box.activeFocusOnTab);
            box.forceActiveFocus(Qt.TabFocusReason);
            verify(box.visualFocus);
            compare(box.background.border.width, 2);
            verify(Qt.colorEqual(box.background.border.color, Style.TextFieldFocusBorder));
            keyClick(Qt.Key_Down);
            compare(row.currentIndex, 1);
            keyClick(Qt.Key_Space);
            tryCompare(box.popup, "opened", true, 30000);
            keyClick(Qt.Key_Down);
            keyClick(Qt.Key_Return);
            compare(row.currentText, "c");
        }

        function test_pressPassesTheHandCursor() {
            make({model: ["a", "b"]});
            mouseClick(box);
            tryCompare(box.popup, "opened", true, 30000);
        }
    }
}
