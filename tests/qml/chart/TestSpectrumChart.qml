// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick 2.15
import Kestrix.CUnit 1.0
import "qrc:/Resources/Controls/Chart2D"

// The plot as the Spectrum page sets it up.
SpectrumChart2D {
    dataModel: TestModel
    verticalAxisLabel: qsTr("Field strength")
    horizontalAxisLabel: qsTr("F [Hz]")
    unit: Unit.MICRO_TESLA
    currentField: ActivePageViewModel.field
    limitFileLoaded: ActiveOperation.LimitsFileLoaded
    limitFileConverted: ActiveOperation.LimitsFile.Converted
}
