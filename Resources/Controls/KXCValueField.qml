// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick 2.15
import QtQuick.Controls 2.15
import QtQuick.Layouts 1.15
import QtQuick.Window 2.15
import "../Utils/Style.js" as Style

// The editable number of the whole interface. The owner sets `value`, and reads `valueInput` when `valueEditDone`
// becomes true, which it resets. A value out of range is shown in red and still passed on. The text has a point
// whatever the locale; a comma may be typed as well.
ColumnLayout {
    id: valueField

    property alias label: fieldLabel.text
    property alias readOnly: textField.readOnly
    property double value
    property double valueInput: -1
    property bool valueEditDone: false
    property bool fieldVisibility: true
    property int unit: 0
    property double maxValue: Number.MAX_VALUE
    // The smallest positive number: zero is out of range unless the owner says otherwise.
    property double minValue: Number.MIN_VALUE
    property double precision: -1
    property double significantNb: -1
    property string toolTipText: ""
    property bool valid: rangeValid
    property bool rangeValid: true
    property bool formatValid: true
    property bool integerValueField: false

    function isRangeValid(number) {
        return minValue <= number && number <= maxValue;
    }

    function valueToFormatString(number) {
        const locale = Qt.locale();
        let formatted = "";
        if (integerValueField)
            formatted = Utils.intToString(number);
        else if (precision < 0)
            formatted = Utils.doubleToString(number, significantNb);
        else
            formatted = number.toLocaleString(locale, 'f', precision).split(locale.groupSeparator).join("");
        return formatted.replace(locale.decimalPoint, ".").replace(locale.negativeSign, "-");
    }

    function forceRefreshValue() {
        inner.value = value;
        rangeValid = isRangeValid(value);
        formatValid = true;
        if (fieldVisibility) {
            textField.text = valueToFormatString(value);
            inner.originalText = textField.text;
        } else {
            textField.text = "";
        }
    }

    // Parses the text and puts the number back into it as it is shown; throws on a text that is no number.
    function computeNewValue() {
        const locale = Qt.locale();
        const localText = textField.text.replace(".", locale.decimalPoint).replace(",", locale.decimalPoint);
        const parsed = Number.fromLocaleString(locale, localText);
        if (!Number.isFinite(parsed))
            throw new Error("not a finite number");
        textField.text = valueToFormatString(parsed);
        inner.value = shownNumber();
    }

    // A number with a precision is shown in the digits of the locale, the others in those of the C locale.
    function shownNumber() {
        const number = Number(textField.text);
        if (!isNaN(number))
            return number;
        const locale = Qt.locale();
        return Number.fromLocaleString(locale, textField.text.replace(".", locale.decimalPoint));
    }

    function restoreOriginalText() {
        formatValid = false;
        console.log(" Input field error with text: " + textField.text + " . Restore original text.");
        textField.text = inner.originalText;
        try {
            computeNewValue();
            return true;
        } catch (error) {
            // The model's own value is no number: there is nothing to pass on.
            return false;
        }
    }

    function finishEditing() {
        try {
            computeNewValue();
            formatValid = true;
        } catch (error) {
            if (!restoreOriginalText())
                return;
        }
        rangeValid = isRangeValid(inner.value);
        if (textField.text === inner.originalText) {
            if (!textField.activeFocus)
                return;
        } else {
            inner.originalText = textField.text;
        }
        valueInput = inner.value;
        valueEditDone = true;
    }

    spacing: 0
    onValueChanged: {
        if (inner.completed)
            forceRefreshValue();
    }
    onFieldVisibilityChanged: {
        if (inner.completed)
            forceRefreshValue();
    }
    Component.onCompleted: {
        inner.completed = true;
        forceRefreshValue();
    }

    QtObject {
        id: inner

        property double value: 0
        property string originalText: ""
        property bool completed: false
    }

    TextMetrics {
        id: metrics

        font.family: Style.NumberFontFamily
        font.pointSize: 10
        text: textField.text
    }

    TextField {
        id: textField

        // In a narrow field the number goes before its unit, and its beginning before its end.
        readonly property real room: width - leftPadding - 6
        readonly property bool hasRoomForUnit: unitLabel.text.trim() !== "" && metrics.advanceWidth + unitLabel.width + 4 <= room

        objectName: valueField.objectName + "Text"
        Layout.fillWidth: true
        Layout.minimumWidth: 50
        implicitHeight: 40
        topPadding: fieldLabel.text === "" ? 2 : 16
        bottomPadding: 2
        leftPadding: 6
        rightPadding: hasRoomForUnit ? unitLabel.width + 10 : 6
        autoScroll: activeFocus
        verticalAlignment: TextInput.AlignVCenter
        selectByMouse: true
        selectionColor: Style.TextFieldFocusBorder
        selectedTextColor: Style.BackgroundColor
        placeholderTextColor: Style.TextLightColor
        inputMethodHints: Qt.ImhPreferNumbers
        placeholderText: "-"
        font.family: Style.NumberFontFamily
        font.pointSize: metrics.advanceWidth <= room ? 10 : 7.5
        color: enabled && !valueField.valid ? "red" : Style.TextDarkColor
        Accessible.name: fieldLabel.text
        ToolTip.text: valueField.toolTipText
        ToolTip.visible: hoverDelay.isOver && valueField.toolTipText !== "" && Window.window !== null

        onActiveFocusChanged: {
            if (!activeFocus)
                return;
            inner.originalText = text;
            // Where a point groups the digits, the one in the text is still the decimal point.
            const groupSeparator = Qt.locale().groupSeparator;
            if (groupSeparator !== ".")
                text = text.replace(groupSeparator, "");
            selectAll();
        }
        onEditingFinished: valueField.finishEditing()

        background: Rectangle {
            color: textField.enabled ? Style.BackgroundColor : Style.DisabledColor
            border.width: textField.activeFocus ? 2 : 1
            border.color: textField.activeFocus ? Style.TextFieldFocusBorder : Style.BordersColor
        }

        HoverDelay {
            id: hoverDelay

            hovered: textField.hovered
        }

        KXCLabel {
            id: fieldLabel

            x: 6
            y: 3
            width: parent.width - 12
            pointSize: 8
            textColor: Style.TextLightColor
            wrapMode: Text.NoWrap
            elide: Text.ElideRight
            Accessible.ignored: true
        }

        KXCLabel {
            id: unitLabel

            visible: textField.hasRoomForUnit
            anchors.right: parent.right
            anchors.rightMargin: 6
            anchors.baseline: parent.baseline
            text: Utils.getUnitText(valueField.unit)
            pointSize: 9
            textColor: Style.TextLightColor
            wrapMode: Text.NoWrap
        }
    }
}
