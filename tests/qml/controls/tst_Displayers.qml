// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick 2.15
import QtTest 1.15
import Kestrix.CUnit 1.0
import "qrc:/Resources/Controls"
import "qrc:/Resources/Utils/Style.js" as Style

Item {
    id: root

    width: 500
    height: 300

    Component {
        id: labelComponent

        KXCLabel {
        }
    }

    Component {
        id: valueComponent

        ValueDisplayer {
            label: "Bx"
            value: 12.345678
            unit: Unit.MICRO_TESLA
            useCustomParserSignificatifNumber: true
        }
    }

    Component {
        id: uncertaintyComponent

        ValueUncertaintyDisplayer {
            label: "B"
            value: 48.856
            unit: Unit.MICRO_TESLA
            uncertainty: 0.01
            uncertaintyUnit: Unit.PERCENT
            pointSize: 24
            useCustomParserSignificatifNumber: true
        }
    }

    Component {
        id: rowComponent

        RowValueDisplayer {
            label: "Maximum :"
            value: 1.5
            unit: Unit.MILLI_TESLA
        }
    }

    Component {
        id: columnComponent

        ColumnValueDisplayer {
            label: "Maximum :"
            value: 1.5
            unit: Unit.MILLI_TESLA
        }
    }

    Component {
        id: labelDisplayerComponent

        LabelDisplayer {
            label: "Model"
            value: "KX"
        }
    }

    Component {
        id: titleComponent

        KXCTitle {
            title: "Results"
        }
    }

    Component {
        id: sectionComponent

        KXCSettingsSection {
            title: "File Paths"

            Rectangle {
                objectName: "first"
                implicitHeight: 20
                implicitWidth: 20
            }

            Rectangle {
                objectName: "second"
                implicitHeight: 20
                implicitWidth: 20
            }
        }
    }

    TestCase {
        // The visible texts below an item from left to right and from top to bottom.
        function texts(item) {
            let found = [];
            for (let i = 0; i < item.children.length; ++i) {
                const child = item.children[i];
                if (!child.visible)
                    continue;
                found = found.concat(child.text === undefined ? texts(child) : [child]);
            }
            return found;
        }

        function textsOf(item) {
            return texts(item).map(label => label.text);
        }

        name: "Displayers"
        when: windowShown

        function test_label() {
            const label = createTemporaryObject(labelComponent, root);
            compare(label.text, "");
            compare(label.pointSize, 10);
            compare(label.letterLabel, true);
            compare(label.fontType, Style.LetterFontFamily);
            compare(label.bold, false);
            compare(label.capitalization, Font.MixedCase);
            compare(label.wrapMode, Text.Wrap);
            compare(label.renderType, Text.NativeRendering);
            verify(Qt.colorEqual(label.textColor, Style.TextDarkColor));
            label.letterLabel = false;
            compare(label.font.family, Style.NumberFontFamily);
        }

        function test_labelAliases() {
            const label = createTemporaryObject(labelComponent, root, {
                text: "a", pointSize: 14, bold: true, capitalization: Font.AllUppercase, textColor: "red",
                fontType: "serif", horizontalAlignment: Text.AlignRight, verticalAlignment: Text.AlignBottom
            });
            compare(label.font.pointSize, 14);
            compare(label.font.bold, true);
            compare(label.font.capitalization, Font.AllUppercase);
            compare(label.font.family, "serif");
            verify(Qt.colorEqual(label.color, "red"));
        }

        function test_labelShowsTextAsItIs() {
            const label = createTemporaryObject(labelComponent, root, {text: "<b>a</b>"});
            compare(label.textFormat, Text.PlainText);
        }

        function test_fontsAreTheProgramsOwn() {
            const label = createTemporaryObject(labelComponent, root, {text: "B"});
            compare(label.fontInfo.family, "VRQ Oxygen");
            label.letterLabel = false;
            compare(label.fontInfo.family, "Oxygen Mono");
        }

        function test_value() {
            const displayer = createTemporaryObject(valueComponent, root);
            compare(textsOf(displayer), ["12.346", "\u00B5T", "Bx"]);
            compare(texts(displayer)[2].font.pointSize, 12);
            compare(displayer.Accessible.name, "Bx 12.346 \u00B5T");
            displayer.displayValue = false;
            compare(textsOf(displayer)[0], " --");
            displayer.pointSize = 24;
            compare(texts(displayer)[0].font.pointSize, 24);
        }

        function test_valueWithUncertainty() {
            const displayer = createTemporaryObject(uncertaintyComponent, root);
            compare(displayer.displayValueUncertainty, true);
            compare(textsOf(displayer), ["48.856", "\u00B5T", "\u00B1", "0.0100", "%", "B"]);
            compare(texts(displayer)[0].font.pointSize, 24);
            displayer.displayValueUncertainty = false;
            compare(textsOf(displayer)[3], " --");
        }

        function test_valueInARow() {
            const displayer = createTemporaryObject(rowComponent, root, {generalPointSize: 13});
            compare(textsOf(displayer), ["Maximum :", "1.50", "mT"]);
            for (const label of texts(displayer)) {
                compare(label.font.pointSize, 13);
                verify(Qt.colorEqual(label.color, Style.TextLightColor));
            }
            const xs = texts(displayer).map(label => label.mapToItem(root, 0, 0).x);
            verify(xs[0] < xs[1] && xs[1] < xs[2]);
        }

        function test_valueInAColumn() {
            const displayer = createTemporaryObject(columnComponent, root, {generalPointSize: 13});
            compare(textsOf(displayer), ["Maximum :", "1.50", "mT"]);
            for (const label of texts(displayer)) {
                compare(label.font.pointSize, 13);
                verify(Qt.colorEqual(label.color, Style.TextLightColor));
            }
            const ys = texts(displayer).map(label => label.mapToItem(root, 0, 0).y);
            verify(ys[0] < ys[1]);
        }

        function test_labelAndText() {
            const displayer = createTemporaryObject(labelDisplayerComponent, root);
            compare(displayer.textPointSize, 10);
            compare(textsOf(displayer), ["Model", "KX"]);
            displayer.textPointSize = 12;
            for (const label of texts(displayer))
                compare(label.font.pointSize, 12);
        }

        function test_title() {
            const title = createTemporaryObject(titleComponent, root, {width: 300});
            const button = title.titleButton;
            compare(button.visible, false);
            title.imageSource = "qrc:/Resources/Images/Save.svg";
            compare(button.visible, true);
            tryCompare(button, "width", 30, 30000);
            compare(button.height, 30);
            const line = title.children[1];
            compare(line.height, 2);
            tryCompare(line, "width", 300, 30000);
            verify(Qt.colorEqual(line.color, Style.BordersColor));
        }

        function test_section() {
            const section = createTemporaryObject(sectionComponent, root, {width: 300});
            compare(textsOf(section), ["File Paths"]);
            compare(texts(section)[0].font.pointSize, 20);
            const first = findChild(section, "first");
            const second = findChild(section, "second");
            tryCompare(first.mapToItem(section, 0, 0), "x", 10, 30000);
            compare(second.y - first.y, 20 + 15);
        }
    }
}
