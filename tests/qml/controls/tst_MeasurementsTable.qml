// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick 2.15
import QtTest 1.15
import Kestrix.CUnit 1.0
import "qrc:/Resources/Controls"
import "qrc:/Resources/Controls/MeasurementsTable"
import "qrc:/Resources/Utils/Style.js" as Style

Item {
    id: root

    width: 1000
    height: 400

    Component {
        id: tableComponent

        MeasurementsTable {
            width: root.width
            height: root.height
            unit: Unit.MICRO_TESLA
            uncertaintyUnit: Unit.PERCENT
        }
    }

    Component {
        id: bareComponent

        MeasurementsTable {
        }
    }

    Component {
        id: cellComponent

        TableCell {
        }
    }

    Component {
        id: textCellComponent

        TableTextCell {
        }
    }

    Timer {
        id: fastRows

        interval: 20
        repeat: true
        onTriggered: testCase.table.rowCountChanged()
    }

    TestCase {
        id: testCase

        property MeasurementsTable view: null
        property Item table: null

        function make(rows, properties) {
            view = createTemporaryObject(tableComponent, root, properties ? properties : {});
            verify(view);
            table = findChild(view, "resultsTable");
            view.model = TestSupport.resultsModel(rows);
            // The row count lags a turn behind the model.
            tryCompare(table, "rowCount", rows, 30000);
        }

        function columns() {
            const all = [];
            for (let i = 0; i < table.columnCount; ++i)
                all.push(table.getColumn(i));
            return all;
        }

        function shownTexts(item) {
            let found = [];
            for (let i = 0; i < item.children.length; ++i) {
                const child = item.children[i];
                if (child.visible && child.text !== undefined)
                    found.push(child.text);
                found = found.concat(shownTexts(child));
            }
            return found;
        }

        name: "MeasurementsTable"
        when: windowShown

        function cleanup() {
            ActiveOperation.RecordingManager.IsOperationMeasure = true;
        }

        function test_defaults() {
            const bare = createTemporaryObject(bareComponent, root);
            compare(bare.timpestampColumnMinWidth, 180);
            compare(bare.columnMinPosWidth, 55);
            compare(bare.columnMinWidth, 60);
            compare(bare.isCommentVisible, false);
            compare(bare.isPositionVisible, false);
            compare(bare.comment, "");
        }

        // A row that is made asynchronously can outlive the model.
        function test_noRowsInStore() {
            make(100);
            compare(table.flickableItem.cacheBuffer, 0);
        }

        function test_columns() {
            make(1, {bxLabel: "Bx'", byLabel: "By'", bzLabel: "Bz'"});
            compare(columns().map(column => column.role),
                    ["Timestamp", "X", "Y", "Z", "Roll", "Pitch", "Yaw", "B", "dB", "BBprime", "Bx", "By", "Bz", "T"]);
            compare(columns().map(column => column.title),
                    ["Timestamp", "X", "Y", "Z", "Roll", "Pitch", "Yaw", "B [\u00B5T]", "\u03B5(B) [%]", "B\u00B7B' [\u00B5T]",
                     "Bx' [\u00B5T]", "By' [\u00B5T]", "Bz' [\u00B5T]", "T [ADC]"]);
            for (const column of columns()) {
                compare(column.movable, false);
                compare(column.resizable, false);
            }
        }

        function test_positionColumns() {
            make(1);
            const positions = ["X", "Y", "Z", "Roll", "Pitch", "Yaw"];
            for (const column of columns())
                compare(column.visible, positions.indexOf(column.role) < 0, column.role);
            view.isPositionVisible = true;
            for (const column of columns())
                compare(column.visible, true, column.role);
        }

        function test_titlesFollowTheUnits() {
            make(1);
            view.unit = Unit.GAUSS;
            view.uncertaintyUnit = Unit.MILLI_GAUSS;
            compare(columns()[7].title, "B [G]");
            compare(columns()[8].title, "\u03B5(B) [mG]");
            compare(columns()[12].title, "Bz [G]");
        }

        function test_cells() {
            make(1, {isPositionVisible: true, width: 1000});
            tryVerify(() => shownTexts(table).indexOf("8000") >= 0, 30000);
            const texts = shownTexts(table).filter(text => columns().map(column => column.title).indexOf(text) < 0);
            // X is role 9: 10 * (256 + 9). Bx is missing and By not a number.
            compare(texts.filter(text => text !== ""),
                    ["2024.05.06T07:08:00.000000000", "2650", "2660", "2670", "1.23", "1.23", "1.23", "0.5000", "0.0100", "-48.856",
                     " --", " --", "12345", "8000"]);
        }

        function test_rowColours() {
            make(3);
            tryVerify(() => shownTexts(table).length > 10, 30000);
            const image = grabImage(table);
            const x = 3;
            const rowY = row => Style.TableRowHeight * (row + 1) + 3;
            verify(Qt.colorEqual(image.pixel(x, 3), Style.darkColor));
            const first = image.pixel(x, rowY(0));
            const second = image.pixel(x, rowY(1));
            verify(Qt.colorEqual(first, Style.RowColor) !== Qt.colorEqual(second, Style.RowColor));
            verify(Qt.colorEqual(first, Style.AltRowColor) !== Qt.colorEqual(second, Style.AltRowColor));
            verify(Qt.colorEqual(first, image.pixel(x, rowY(2))));
            mouseClick(table, 20, rowY(1));
            verify(table.selection.contains(1));
            tryVerify(() => Qt.colorEqual(grabImage(table).pixel(5, rowY(1)), Style.SelectedRowColor), 30000);
        }

        function test_keyboard() {
            make(3);
            verify(table.activeFocusOnTab);
            // The header takes its place above the rows a turn later.
            tryVerify(() => table.rowAt(20, Style.TableRowHeight + 5) === 0, 30000);
            mouseClick(table, 20, Style.TableRowHeight + 5);
            compare(table.currentRow, 0);
            keyClick(Qt.Key_Down);
            compare(table.currentRow, 1);
            verify(Qt.colorEqual(grabImage(table).pixel(0, 0), Style.TextFieldFocusBorder));
        }

        function test_widthIsSharedEqually() {
            make(3);
            // The sum of the minima: time stamp, seven numbers, scroll bar.
            const rest = Math.floor((1000 - (180 + 7 * 60 + 10)) / 8);
            tryCompare(columns()[0], "width", 180 + rest, 30000);
            for (const column of columns().slice(7))
                compare(column.width, 60 + rest, column.role);
        }

        function test_widthWithPositions() {
            make(3, {isPositionVisible: true, width: 1200});
            const rest = Math.floor((1200 - (180 + 6 * 55 + 7 * 60 + 10)) / 14);
            tryCompare(columns()[0], "width", 180 + rest, 30000);
            for (const column of columns().slice(1, 7))
                compare(column.width, 55 + rest, column.role);
            for (const column of columns().slice(7))
                compare(column.width, 60 + rest, column.role);
        }

        function test_widthFollowsTheWindow() {
            make(3);
            view.width = 700;
            tryCompare(columns()[0], "width", 180 + Math.floor((700 - 610) / 8), 30000);
            view.width = 500;
            tryCompare(columns()[0], "width", 180, 30000);
        }

        function test_widthFollowsWhileRowsComeFast() {
            make(3);
            view.width = 700;
            fastRows.start();
            tryCompare(columns()[0], "width", 180 + Math.floor((700 - 610) / 8));
            fastRows.stop();
        }

        function test_comment() {
            make(1);
            const field = findChild(view, "blockComment");
            verify(!field.visible);
            view.isCommentVisible = true;
            view.comment = "door closed";
            verify(field.visible);
            verify(field.readOnly);
            compare(field.text, "door closed");
            verify(shownTexts(view).indexOf("Comment:") >= 0);
        }

        function test_captionOfTheMapping() {
            make(1);
            verify(shownTexts(view).indexOf("Last measurement of each block") < 0);
            ActiveOperation.RecordingManager.IsOperationMeasure = false;
            verify(shownTexts(view).indexOf("Last measurement of each block") >= 0);
        }

        function test_tableCell() {
            const cell = createTemporaryObject(cellComponent, root, {width: 80, height: 30});
            const line = cell.children[0];
            compare(line.visible, true);
            compare(line.x, 79);
            verify(Qt.colorEqual(line.color, Style.LineSeparatorColor));
            cell.separatorVisible = false;
            compare(line.visible, false);
        }

        function test_tableTextCell() {
            const cell = createTemporaryObject(textCellComponent, root);
            compare(cell.width, 100);
            compare(cell.font.pointSize, Style.TableTextSize);
            compare(cell.horizontalAlignment, Text.AlignHCenter);
            compare(cell.verticalAlignment, Text.AlignVCenter);
        }
    }
}
