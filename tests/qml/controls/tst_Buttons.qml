// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick 2.15
import QtQuick.Controls 2.15
import QtTest 1.15
import "qrc:/Resources/Controls"
import "qrc:/Resources/Utils/Style.js" as Style
import "qrc:/Resources/Widgets/ParametersBoxes"

Item {
    id: root

    readonly property url picture: "qrc:/Resources/Images/Play.svg"

    width: 500
    height: 300

    Component {
        id: actionButton

        ActionButton {
            text: "Resume"
            imageSource: root.picture
        }
    }

    Component {
        id: textButton

        TextButton {
            text: "Save"
        }
    }

    Component {
        id: graphToolButton

        GraphToolButton {
            label: "Zoom in"
            imageSource: root.picture
        }
    }

    Component {
        id: statusBarButton

        StatusBarButton {
            toolTipText: "Help"
            imageSource: root.picture
        }
    }

    Component {
        id: menuButton

        MenuButton {
            text: "Meter"
            imageSource: root.picture
        }
    }

    Component {
        id: smallMenuButton

        SmallMenuButton {
            text: "Meter"
            imageSource: root.picture
        }
    }

    Component {
        id: boxButton

        ParametersBoxButton {
            text: "Default"
        }
    }

    Component {
        id: tabButton

        KXCTabButton {
            text: "Table"
        }
    }

    SignalSpy {
        id: clickSpy

        signalName: "clicked"
    }

    TestCase {
        function allButtons() {
            return [
                {tag: "ActionButton", component: actionButton, width: 150, height: 50, name: "Resume"},
                {tag: "TextButton", component: textButton, width: 100, height: 50, name: "Save"},
                {tag: "GraphToolButton", component: graphToolButton, width: 30, height: 30, name: "Zoom in"},
                {tag: "StatusBarButton", component: statusBarButton, width: 30, height: 30, name: "Help"},
                {tag: "MenuButton", component: menuButton, width: Style.MainMenuWidth, height: Style.MainMenuButtonHeight, name: "Meter"},
                {tag: "SmallMenuButton", component: smallMenuButton, width: Style.SmallMainMenuClosedWidth, height: Style.SmallMainMenuButtonHeight, name: "Meter"},
                {tag: "ParametersBoxButton", component: boxButton, width: 80, height: 30, name: "Default"},
                {tag: "KXCTabButton", component: tabButton, width: Style.TabWidth, height: 30, name: "Table"}
            ];
        }

        function make(component, properties) {
            const button = createTemporaryObject(component, root, properties ? properties : {});
            verify(button);
            clickSpy.target = button;
            clickSpy.clear();
            return button;
        }

        function childOfType(item, typeName) {
            for (let i = 0; i < item.children.length; ++i) {
                const child = item.children[i];
                if (child.toString().indexOf(typeName) === 0)
                    return child;
                const found = childOfType(child, typeName);
                if (found !== null)
                    return found;
            }
            return null;
        }

        name: "Buttons"
        when: windowShown

        function test_sizeAndName_data() {
            return allButtons();
        }

        function test_sizeAndName(data) {
            const button = make(data.component);
            compare(button.width, data.width);
            compare(button.height, data.height);
            compare(button.Accessible.name, data.name);
        }

        function test_mouse_data() {
            return allButtons();
        }

        function test_mouse(data) {
            const button = make(data.component);
            mouseClick(button);
            compare(clickSpy.count, 1);
        }

        function test_handCursor_data() {
            return allButtons();
        }

        function test_handCursor(data) {
            const area = childOfType(make(data.component), "HandCursorArea");
            verify(area !== null);
            compare(area.cursorShape, Qt.PointingHandCursor);
            compare(area.width, data.width);
            compare(area.height, data.height);
        }

        function test_keyboard_data() {
            return allButtons();
        }

        function test_keyboard(data) {
            const button = make(data.component);
            verify(button.activeFocusOnTab);
            button.forceActiveFocus(Qt.TabFocusReason);
            verify(button.visualFocus);
            keyClick(Qt.Key_Space);
            compare(clickSpy.count, 1);
        }

        function test_focusIsSeen_data() {
            return allButtons();
        }

        function test_focusIsSeen(data) {
            const button = make(data.component);
            const before = grabImage(button);
            button.forceActiveFocus(Qt.TabFocusReason);
            const after = grabImage(button);
            verify(Qt.colorEqual(after.pixel(0, 0), Style.TextFieldFocusBorder), String(after.pixel(0, 0)));
            verify(!Qt.colorEqual(before.pixel(0, 0), Style.TextFieldFocusBorder));
        }

        function test_actionButtonImage() {
            const button = make(actionButton, {height: 40});
            const square = button.contentItem.children[0];
            const image = square.children[0];
            compare(square.width, 40);
            compare(square.height, 40);
            compare(square.mapToItem(button, 0, 0).x, 0);
            compare(image.width, 20);
            compare(image.height, 20);
            compare(image.status, Image.Ready);
            verify(Qt.colorEqual(square.color, Style.ActionButtonImageBg));
            compare(button.contentItem.children[1].font.pointSize, 12);
            button.down = true;
            verify(Qt.colorEqual(square.color, Style.ActionButtonImageBgPressed));
            verify(Qt.colorEqual(button.background.color, Style.ActionButtonTextBgPressed));
        }

        function test_disabledActionButton() {
            const button = make(actionButton);
            const label = button.contentItem.children[1];
            verify(Qt.colorEqual(label.color, Style.TextDarkColor));
            const darkest = image => {
                let minimum = 1;
                for (let x = 15; x < 35; ++x)
                    minimum = Math.min(minimum, image.pixel(x, 25).hslLightness);
                return minimum;
            };
            const enabledTone = darkest(grabImage(button));
            button.enabled = false;
            const disabledTone = darkest(grabImage(button));
            verify(Qt.colorEqual(label.color, Style.ActionButtonDisabledText));
            verify(Qt.colorEqual(button.background.color, Style.ActionButtonDisabledBg));
            // Half white over the image.
            verify(Math.abs(disabledTone - (enabledTone + 1) / 2) < 0.02, enabledTone + " " + disabledTone);
            mouseClick(button);
            compare(clickSpy.count, 0);
        }

        function test_lightTextButton() {
            const button = make(textButton);
            compare(button.light, false);
            compare(button.contentItem.font.pointSize, 10);
            const dark = String(button.background.color);
            button.light = true;
            verify(!Qt.colorEqual(button.background.color, dark));
            button.down = true;
            verify(Qt.colorEqual(button.background.color, Style.PageButtonDownColor));
        }

        function test_graphToolButton() {
            const button = make(graphToolButton);
            const image = button.contentItem.children[0];
            compare(image.width, 24);
            compare(image.height, 24);
            compare(button.ToolTip.text, "Zoom in");
            compare(findChild(button, "hoverDelay").interval, 1000);
        }

        function test_statusBarButton() {
            const button = make(statusBarButton);
            compare(button.sourceSize, 20);
            const image = button.contentItem.children[0];
            compare(image.sourceSize, Qt.size(20, 20));
            compare(image.width, 20);
            compare(button.ToolTip.text, "Help");
            compare(findChild(button, "hoverDelay").interval, 1000);
            compare(button.ToolTip.timeout, 5000);
            const larger = make(statusBarButton, {sourceSize: 30});
            compare(larger.contentItem.children[0].width, 30);
        }

        function test_pressedStatusBarButtonIsGray() {
            const button = make(statusBarButton);
            const plain = grabImage(button);
            button.down = true;
            const pressed = grabImage(button);
            verify(!plain.equals(pressed));
            verify(Qt.colorEqual(pressed.pixel(13, 15), "darkgray"), String(pressed.pixel(13, 15)));
        }

        function test_tabButton() {
            const tab = make(tabButton);
            compare(tab.light, false);
            verify(Qt.colorEqual(tab.background.color, Style.InactiveTabColor));
            tab.checked = true;
            verify(Qt.colorEqual(tab.background.color, Style.BackgroundColor));
            tab.light = true;
            verify(Qt.colorEqual(tab.background.color, Style.lightColor));
            tab.checked = false;
            mousePress(tab);
            verify(Qt.colorEqual(tab.background.color, Style.lightColor));
            mouseRelease(tab);
        }

        function test_boxButton() {
            const button = make(boxButton);
            verify(Qt.colorEqual(button.background.color, Style.ParametersBoxButtonColor));
            mousePress(button);
            verify(Qt.colorEqual(button.background.color, Style.ParametersBoxButtonDownColor));
            mouseRelease(button);
        }

        function test_smallMenuButton() {
            const button = make(smallMenuButton);
            const label = button.contentItem.children[1];
            compare(label.visible, false);
            button.isExpanded = true;
            compare(button.width, Style.SmallMainMenuExpandedWidth);
            compare(label.visible, true);
            compare(button.enabled, true);
            button.isCurrent = true;
            compare(button.enabled, false);
        }
    }
}
