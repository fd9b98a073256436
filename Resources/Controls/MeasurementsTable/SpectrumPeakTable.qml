// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick 2.15

// The peaks of a spectrum.
SpectralTable {
    id: table

    property int columnMinWidth: 125
    // All columns have one width.
    property real columnWidth: columnMinWidth

    function widthFrom(presentWidth) {
        if (presentWidth < width / 4)
            return columnMinWidth;
        return columnMinWidth + Math.max(0, width - 4 * columnMinWidth) / 4;
    }

    Accessible.name: qsTr("Peaks")
    onWidthChanged: columnWidth = widthFrom(columnWidth)

    MeasurementsTableColumn {
        role: "Peak"
        title: qsTr("Peak #")
        delegate: table.textDelegate
        width: table.columnWidth
    }

    MeasurementsTableColumn {
        role: "Amplitude"
        title: table.withUnit(qsTr("Amplitude"))
        delegate: table.numberDelegate
        width: table.columnWidth
    }

    MeasurementsTableColumn {
        role: "Frequency"
        title: qsTr("Frequency") + " [Hz]"
        delegate: table.numberDelegate
        width: table.columnWidth
    }

    MeasurementsTableColumn {
        role: "ExposureLimit"
        title: table.withUnit(qsTr("Exposure limit"))
        delegate: table.numberDelegate
        width: table.columnWidth
    }
}
