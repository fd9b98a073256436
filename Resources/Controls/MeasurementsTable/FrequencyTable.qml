// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick 2.15

// The figures of merit of a block in the bands of the exposure limits.
SpectralTable {
    id: table

    property int columnMinWidth: 100

    Accessible.name: qsTr("Figures of merit by frequency band")

    MeasurementsTableColumn {
        role: "FrequencyBand"
        title: qsTr("Freq, Band [Hz]")
        delegate: table.textDelegate
        width: table.columnMinWidth
    }

    MeasurementsTableColumn {
        role: "B"
        title: table.withUnit(qsTr("B"))
        delegate: table.numberDelegate
        width: table.columnMinWidth
    }

    MeasurementsTableColumn {
        role: "BBprime"
        title: table.withUnit(qsTr("B·B'"))
        delegate: table.numberDelegate
        width: table.columnMinWidth
    }

    MeasurementsTableColumn {
        role: "Bx"
        title: table.withUnit(qsTr("Bx"))
        delegate: table.numberDelegate
        width: table.columnMinWidth
    }

    MeasurementsTableColumn {
        role: "By"
        title: table.withUnit(qsTr("By"))
        delegate: table.numberDelegate
        width: table.columnMinWidth
    }

    MeasurementsTableColumn {
        role: "Bz"
        title: table.withUnit(qsTr("Bz"))
        delegate: table.numberDelegate
        width: table.columnMinWidth
    }

    MeasurementsTableColumn {
        role: "ExposureLimit"
        title: table.withUnit(qsTr("Exposure Limit"))
        delegate: table.numberDelegate
        width: table.columnMinWidth + 10
    }
}
