// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick 2.15
import QtQuick.Controls 2.15

// Chooses the range of an axis. Each of its two handles takes the keys for itself, and so has names for itself.
RangeSlider {
    id: slider

    property string name: ""

    function nameHandle(handle, end, text) {
        handle.objectName = slider.objectName + end;
        handle.Accessible.role = Accessible.Slider;
        handle.Accessible.name = text.arg(slider.name);
    }

    Accessible.name: name
    Component.onCompleted: {
        nameHandle(first.handle, "First", qsTr("%1, lower end"));
        nameHandle(second.handle, "Second", qsTr("%1, upper end"));
    }
}
