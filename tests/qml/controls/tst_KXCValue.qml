// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick 2.15
import QtTest 1.15
import Kestrix.CUnit 1.0
import "qrc:/Resources/Controls"
import "qrc:/Resources/Utils/Style.js" as Style

Item {
    id: root

    width: 400
    height: 300

    Component {
        id: valueComponent

        KXCValue {
        }
    }

    Component {
        id: cellComponent

        Item {
            property var styleData: null
            property alias number: cellValue

            KXCValue {
                id: cellValue
            }
        }
    }

    Component {
        id: unitComponent

        KXCUnit {
        }
    }

    TestCase {
        name: "KXCValue"

        function cleanup() {
            TestSupport.setLocale("C");
        }

        function test_defaults() {
            const label = createTemporaryObject(valueComponent, root);
            compare(label.unit, 0);
            compare(label.convertValue, true);
            compare(label.displayValue, true);
            compare(label.precision, 2);
            compare(label.significantNb, -1);
            compare(label.useCustomParserPointAlignment, false);
            compare(label.useCustomParserSignificatifNumber, false);
            compare(label.useLeftpadding, false);
            verify(isNaN(label.value));
            compare(label.font.family, Style.NumberFontFamily);
        }

        function test_text_data() {
            return [
                {tag: "fixed decimals", properties: {value: 12.345}, text: "12.35"},
                {tag: "precision", properties: {value: 12.345, precision: 0}, text: "12"},
                {tag: "groups are removed", properties: {value: 1234567.891}, text: "1234567.89"},
                {tag: "significant digits", properties: {value: 12.345678, useCustomParserSignificatifNumber: true}, text: "12.346"},
                {tag: "their number", properties: {value: 12.345678, useCustomParserSignificatifNumber: true, significantNb: 3}, text: "12.3"},
                {tag: "padding", properties: {value: 1.5, useCustomParserSignificatifNumber: true, useLeftpadding: true}, text: "  1.5000"},
                {tag: "no padding of fixed decimals", properties: {value: 1.5, useLeftpadding: true}, text: "1.50"},
                {tag: "aligned points", properties: {value: 1.5, useCustomParserPointAlignment: true}, text: "      1.500 "},
                {tag: "alignment before digits", properties: {value: 1.5, useCustomParserPointAlignment: true, useCustomParserSignificatifNumber: true}, text: "      1.500 "},
                {tag: "hidden", properties: {value: 1.5, displayValue: false}, text: " --"},
                {tag: "hidden before all", properties: {value: 1.5, displayValue: false, useCustomParserPointAlignment: true, useCustomParserSignificatifNumber: true}, text: " --"}
            ];
        }

        function test_text(data) {
            const label = createTemporaryObject(valueComponent, root, data.properties);
            compare(label.text, data.text);
        }

        function test_localeOfFixedDecimals_data() {
            return [
                {tag: "C", text: "1234567.5"},
                {tag: "en_US", text: "1234567.5"},
                {tag: "de_DE", text: "1234567,5"},
                {tag: "fr_FR", text: "1234567,5"},
                {tag: "de_CH", text: "1234567.5"}
            ];
        }

        function test_localeOfFixedDecimals(data) {
            TestSupport.setLocale(data.tag);
            const label = createTemporaryObject(valueComponent, root, {value: 1234567.5, precision: 1});
            compare(label.text, data.text);
        }

        function test_textFollowsTheValue() {
            const label = createTemporaryObject(valueComponent, root, {value: 1});
            label.value = 2;
            compare(label.text, "2.00");
            label.displayValue = false;
            compare(label.text, " --");
        }

        function test_valueOfATableCell_data() {
            return [
                {tag: "number", value: 12.5, text: "12.50"},
                {tag: "zero", value: 0, text: "0.00"},
                {tag: "null", value: null, text: "nan"},
                {tag: "undefined", value: undefined, text: "nan"}
            ];
        }

        function test_valueOfATableCell(data) {
            const cell = createTemporaryObject(cellComponent, root, {styleData: {value: data.value}});
            compare(isNaN(cell.number.value), data.text === "nan");
            compare(cell.number.text, data.text);
        }

        function test_unitTakesNoMoreThanItsText() {
            const unit = createTemporaryObject(unitComponent, root, {unit: Unit.MICRO_TESLA});
            compare(unit.text, "\u00B5T");
            compare(unit.font.pointSize, 16);
            verify(unit.paintedWidth > 10);
            compare(unit.width, unit.paintedWidth);
            unit.unit = Unit.MEGA_HERTZ_PROTON;
            compare(unit.text, "MHzp");
            compare(unit.width, unit.paintedWidth);
            unit.font.pointSize = 60;
            unit.unit = Unit.MICRO_TESLA;
            unit.unit = Unit.MEGA_HERTZ_PROTON;
            verify(unit.paintedWidth > 100);
            compare(unit.width, 100);
        }

        function test_unitWithoutText() {
            const unit = createTemporaryObject(unitComponent, root);
            compare(unit.unit, 0);
            compare(unit.text, "");
            compare(unit.width, 100);
        }
    }
}
