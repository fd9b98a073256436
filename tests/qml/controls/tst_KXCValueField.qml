// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick 2.15
import QtQuick.Controls 2.15
import QtTest 1.15
import Kestrix.CUnit 1.0
import "qrc:/Resources/Controls"
import "qrc:/Resources/Utils/Style.js" as Style

Item {
    id: root

    width: 400
    height: 300

    Component {
        id: fieldComponent

        KXCValueField {
            objectName: "field"
            width: 200
        }
    }

    Component {
        id: otherComponent

        TextInput {
            y: 100
            width: 100
            height: 30
            activeFocusOnTab: true
        }
    }

    SignalSpy {
        id: editSpy

        signalName: "valueEditDoneChanged"
    }

    TestCase {
        property KXCValueField field: null
        property TextInput other: null
        property Item input: null

        function make(properties) {
            field = createTemporaryObject(fieldComponent, root, properties);
            verify(field);
            input = findChild(field, "fieldText");
            other = createTemporaryObject(otherComponent, root);
            editSpy.target = field;
            editSpy.clear();
        }

        function focusByMouse() {
            mouseClick(input);
            verify(input.activeFocus);
        }

        function type(text) {
            for (const character of text)
                keyClick(character);
        }

        // What the owner does when `valueEditDone` turns true.
        function takeValue() {
            verify(field.valueEditDone);
            field.valueEditDone = false;
            editSpy.clear();
            return field.valueInput;
        }

        name: "KXCValueField"
        when: windowShown

        function init() {
            TestSupport.setLocale("C");
        }

        function cleanup() {
            TestSupport.setLocale("C");
        }

        function test_defaults() {
            make({});
            compare(field.label, "");
            compare(field.readOnly, false);
            compare(field.value, 0);
            compare(field.valueInput, -1);
            compare(field.valueEditDone, false);
            compare(field.fieldVisibility, true);
            compare(field.maxValue, Number.MAX_VALUE);
            compare(field.minValue, Number.MIN_VALUE);
            verify(field.minValue > 0);
            compare(field.precision, -1);
            compare(field.significantNb, -1);
            compare(field.toolTipText, "");
            compare(field.formatValid, true);
            compare(field.integerValueField, false);
            compare(field.enabled, true);
            compare(input.placeholderText, "-");
            compare(input.font.pointSize, 10);
            compare(input.font.family, Style.NumberFontFamily);
            compare(input.inputMethodHints, Qt.ImhPreferNumbers);
            compare(editSpy.count, 0);
        }

        function test_zeroIsOutOfRangeByDefault() {
            make({});
            compare(field.rangeValid, false);
            compare(field.valid, false);
            verify(Qt.colorEqual(input.color, "red"));
            compare(input.text, "0.0000");
        }

        function test_formatting_data() {
            return [
                {tag: "five digits", properties: {value: 12.345678}, text: "12.346"},
                {tag: "below one", properties: {value: 0.5}, text: "0.5000"},
                {tag: "four digits are floored", properties: {value: 1234.9}, text: "1234"},
                {tag: "significantNb", properties: {value: 12.345678, significantNb: 7}, text: "12.34568"},
                {tag: "precision", properties: {value: 12.345678, precision: 1}, text: "12.3"},
                {tag: "precision 0", properties: {value: 12.7, precision: 0}, text: "13"},
                {tag: "groups", properties: {value: 1234567.5, precision: 1}, text: "1234567.5"},
                {tag: "integer", properties: {value: 1234567, integerValueField: true}, text: "1.23457e+06"},
                {tag: "integer before precision", properties: {value: 12.5, integerValueField: true, precision: 3}, text: "12.5"}
            ];
        }

        function test_formatting(data) {
            for (const locale of ["C", "en_US", "de_DE", "fr_FR", "de_CH"]) {
                TestSupport.setLocale(locale);
                make(data.properties);
                compare(input.text, data.text, locale);
            }
        }

        function test_negativeNumbersInEveryLocale_data() {
            return [{tag: "C"}, {tag: "de_DE"}, {tag: "sv_SE"}, {tag: "nb_NO"}];
        }

        function test_negativeNumbersInEveryLocale(data) {
            TestSupport.setLocale(data.tag);
            make({value: -12.5, precision: 2, minValue: -100});
            compare(input.text, "-12.50");
            focusByMouse();
            type("-7.25");
            keyClick(Qt.Key_Return);
            compare(takeValue(), -7.25);
            compare(input.text, "-7.25");
        }

        // Numbers with a precision are shown in the digits of the locale; their value is what counts.
        function test_digitsOfEveryLocale_data() {
            const rows = [];
            for (const locale of ["ar_EG", "fa_IR"])
                for (const precision of [-1, 0, 2])
                    rows.push({tag: locale + " " + precision, locale: locale, precision: precision});
            return rows;
        }

        function test_digitsOfEveryLocale(data) {
            TestSupport.setLocale(data.locale);
            make({value: 3, precision: data.precision, minValue: -100});
            focusByMouse();
            type("-7");
            keyClick(Qt.Key_Return);
            compare(takeValue(), -7);
            verify(field.valid);
            // The field reads back what it shows.
            keyClick(Qt.Key_Return);
            compare(takeValue(), -7);
        }

        function test_rangeLimitsAreInside_data() {
            return [
                {tag: "minimum", value: 1, valid: true},
                {tag: "maximum", value: 10, valid: true},
                {tag: "below", value: 0.999, valid: false},
                {tag: "above", value: 10.001, valid: false},
                {tag: "not a number", value: NaN, valid: false}
            ];
        }

        function test_rangeLimitsAreInside(data) {
            make({minValue: 1, maxValue: 10, value: data.value});
            compare(field.rangeValid, data.valid);
            compare(field.valid, data.valid);
            verify(Qt.colorEqual(input.color, data.valid ? Style.TextDarkColor : "red"));
        }

        function test_disabledFieldIsNeverRed() {
            make({value: 0, enabled: false});
            compare(field.valid, false);
            verify(Qt.colorEqual(input.color, Style.TextDarkColor));
            verify(Qt.colorEqual(input.background.color, Style.DisabledColor));
            field.enabled = true;
            verify(Qt.colorEqual(input.color, "red"));
            verify(Qt.colorEqual(input.background.color, Style.BackgroundColor));
        }

        function test_ownersBoundsAreTestedAtRefreshOnly() {
            make({value: 5});
            field.maxValue = 4;
            compare(field.rangeValid, true);
            field.forceRefreshValue();
            compare(field.rangeValid, false);
        }

        function test_newValueOfTheModelIsShown() {
            make({value: 5});
            field.value = 7.5;
            compare(input.text, "7.5000");
            compare(editSpy.count, 0);
            compare(field.valueInput, -1);
        }

        function test_hiddenFieldIsBlank() {
            make({value: 5, fieldVisibility: false});
            compare(input.text, "");
            compare(field.rangeValid, true);
            field.value = 6;
            compare(input.text, "");
            field.fieldVisibility = true;
            compare(input.text, "6.0000");
            field.fieldVisibility = false;
            compare(input.text, "");
        }

        function test_hiddenFieldStillTestsItsRange() {
            make({value: 0, fieldVisibility: false});
            compare(field.rangeValid, false);
        }

        function test_focusSelectsAll() {
            make({value: 12.5});
            input.forceActiveFocus();
            compare(input.selectedText, "12.500");
            compare(input.background.border.width, 2);
            verify(Qt.colorEqual(input.background.border.color, Style.TextFieldFocusBorder));
            other.forceActiveFocus();
            compare(input.background.border.width, 1);
            verify(Qt.colorEqual(input.background.border.color, Style.BordersColor));
        }

        function test_isReachedByTab() {
            make({value: 12.5});
            other.forceActiveFocus();
            keyClick(Qt.Key_Backtab);
            verify(input.activeFocus);
            compare(input.selectedText, "12.500");
        }

        function test_returnSendsTheEdit() {
            make({value: 12.5});
            focusByMouse();
            type("7.25");
            compare(editSpy.count, 0);
            keyClick(Qt.Key_Return);
            compare(editSpy.count, 1);
            compare(takeValue(), 7.25);
            compare(input.text, "7.2500");
            compare(field.formatValid, true);
            compare(field.value, 12.5);
        }

        function test_enterOfTheKeypadSendsTheEdit() {
            make({value: 12.5});
            focusByMouse();
            type("8");
            keyClick(Qt.Key_Enter, Qt.KeypadModifier);
            compare(takeValue(), 8);
        }

        function test_losingFocusSendsTheEdit() {
            make({value: 12.5});
            focusByMouse();
            type("7.25");
            other.forceActiveFocus();
            compare(editSpy.count, 1);
            compare(takeValue(), 7.25);
        }

        function test_returnAgainSendsTheValueAgain() {
            make({value: 12.5});
            focusByMouse();
            type("7.25");
            keyClick(Qt.Key_Return);
            compare(takeValue(), 7.25);
            keyClick(Qt.Key_Return);
            compare(editSpy.count, 1);
            compare(takeValue(), 7.25);
            other.forceActiveFocus();
            compare(editSpy.count, 0);
            compare(field.valueEditDone, false);
        }

        function test_unchangedFieldSendsNothingWhenLeft_data() {
            return [{tag: "C"}, {tag: "en_US"}, {tag: "de_DE"}, {tag: "fr_FR"}, {tag: "de_CH"}];
        }

        function test_unchangedFieldSendsNothingWhenLeft(data) {
            TestSupport.setLocale(data.tag);
            make({value: 12.5, precision: 3});
            input.forceActiveFocus();
            other.forceActiveFocus();
            compare(editSpy.count, 0);
            compare(field.valueInput, -1);
            compare(input.text, "12.500");
        }

        function test_returnOnAnUnchangedFieldSends() {
            make({value: 12.5});
            input.forceActiveFocus();
            keyClick(Qt.Key_Return);
            compare(editSpy.count, 1);
            compare(takeValue(), 12.5);
        }

        function test_editThatRoundsToTheSameTextSendsNothing() {
            make({value: 12.5});
            focusByMouse();
            type("12.50001");
            other.forceActiveFocus();
            compare(editSpy.count, 0);
            compare(input.text, "12.500");
        }

        function test_valueIsWhatTheTextShows() {
            make({value: 12.5});
            focusByMouse();
            type("1234.75");
            keyClick(Qt.Key_Return);
            compare(input.text, "1234");
            compare(takeValue(), 1234);
        }

        function test_decimalSigns_data() {
            const rows = [];
            for (const locale of ["C", "en_US", "de_DE", "fr_FR", "de_CH"]) {
                rows.push({tag: locale + " comma", locale: locale, typed: "12,5"});
                rows.push({tag: locale + " point", locale: locale, typed: "12.5"});
            }
            return rows;
        }

        function test_decimalSigns(data) {
            TestSupport.setLocale(data.locale);
            make({value: 3, precision: 2});
            compare(input.text, "3.00");
            focusByMouse();
            type(data.typed);
            keyClick(Qt.Key_Return);
            compare(takeValue(), 12.5);
            compare(input.text, "12.50");
        }

        function test_groupSeparatorIsTakenOutAtFocus() {
            TestSupport.setLocale("en_US");
            make({value: 12.5});
            input.text = "1,234,567";
            input.forceActiveFocus();
            compare(input.text, "1234,567");
        }

        function test_whatIsNoNumberIsRestored_data() {
            return [
                {tag: "letters", typed: "abc"},
                {tag: "number and letters", typed: "12 Hz"},
                {tag: "two signs", typed: "1.2.3"},
                {tag: "infinite", typed: "inf"},
                {tag: "nan", typed: "nan"},
                {tag: "blank", typed: " "}
            ];
        }

        function test_whatIsNoNumberIsRestored(data) {
            make({value: 12.5});
            focusByMouse();
            type(data.typed);
            TestSupport.expectDebugMessage(" Input field error with text: " + data.typed + " . Restore original text.");
            keyClick(Qt.Key_Return);
            compare(input.text, "12.500");
            compare(field.formatValid, false);
            compare(field.rangeValid, true);
            // The field still has the focus: the old value is sent.
            compare(takeValue(), 12.5);
        }

        function test_restoredTextIsNotSentWhenLeft() {
            make({value: 12.5});
            focusByMouse();
            type("abc");
            TestSupport.expectDebugMessage(" Input field error with text: abc . Restore original text.");
            other.forceActiveFocus();
            compare(input.text, "12.500");
            compare(field.formatValid, false);
            compare(editSpy.count, 0);
            field.forceRefreshValue();
            compare(field.formatValid, true);
        }

        function test_numberAfterLettersIsValidAgain() {
            make({value: 12.5});
            focusByMouse();
            type("x");
            TestSupport.expectDebugMessage(" Input field error with text: x . Restore original text.");
            keyClick(Qt.Key_Return);
            input.selectAll();
            type("3");
            keyClick(Qt.Key_Return);
            compare(field.formatValid, true);
            compare(field.valueInput, 3);
        }

        function test_outOfRangeIsColouredAndSent() {
            make({value: 12.5, minValue: 10, maxValue: 20});
            focusByMouse();
            type("5");
            keyClick(Qt.Key_Return);
            compare(field.rangeValid, false);
            compare(field.valid, false);
            verify(Qt.colorEqual(input.color, "red"));
            compare(input.text, "5.0000");
            compare(takeValue(), 5);
            input.selectAll();
            type("20");
            keyClick(Qt.Key_Return);
            compare(field.valid, true);
            verify(Qt.colorEqual(input.color, Style.TextDarkColor));
        }

        function test_ownerCanJudgeValidity() {
            make({value: 12.5});
            field.valid = false;
            verify(Qt.colorEqual(input.color, "red"));
        }

        function test_fieldWithoutANumberKeepsItsText() {
            make({value: NaN});
            const shown = input.text;
            focusByMouse();
            TestSupport.expectDebugMessage(" Input field error with text: " + shown + " . Restore original text.");
            keyClick(Qt.Key_Return);
            compare(input.text, shown);
            compare(editSpy.count, 0);
        }

        function test_readOnlyFieldCannotBeTypedInto() {
            make({value: 12.5, readOnly: true});
            focusByMouse();
            type("7");
            compare(input.text, "12.500");
        }

        function test_narrowFieldShowsTheNumber() {
            make({value: 25, precision: 2, unit: Unit.DEGREE, label: "Roll", width: 55});
            verify(!input.hasRoomForUnit);
            // The first digit is in sight, where the text ends behind the field.
            field.value = -140;
            compare(input.text, "-140.00");
            verify(input.positionToRectangle(0).x >= 0);
            verify(input.contentWidth <= input.width - 2 * input.leftPadding + 2);
            field.width = 120;
            verify(input.hasRoomForUnit);
            compare(input.font.pointSize, 10);
            verify(input.rightPadding > 12);
        }

        function test_labelNamesTheField() {
            make({value: 1, label: "Display Rate", unit: Unit.HZ});
            compare(input.Accessible.name, "Display Rate");
        }

        function test_toolTipComesAfterASecond() {
            make({value: 1, toolTipText: "Min = 1"});
            compare(findChild(input, "hoverDelay").interval, 1000);
            compare(input.ToolTip.text, "Min = 1");
            mouseMove(input, 5, 5);
            tryCompare(input.ToolTip, "visible", true, 30000);
            mouseMove(root, 390, 290);
            tryCompare(input.ToolTip, "visible", false, 30000);
        }

        // A tool tip that is due on a page that is gone finds no window.
        function test_noToolTipOutsideOfAWindow() {
            make({value: 1, toolTipText: "Min = 1"});
            findChild(input, "hoverDelay").interval = 1;
            mouseMove(input, 5, 5);
            tryCompare(input.ToolTip, "visible", true, 30000);
            field.parent = null;
            compare(input.hovered, true);
            compare(input.ToolTip.visible, false);
        }
    }
}
