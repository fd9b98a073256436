// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick 2.15
import Kestrix.CUnit 1.0
import "qrc:/Resources/Controls/Chart2D"

// The plot as the Meter page sets it up.
MeasurementsChart2D {
    dataModel: TestModel
    verticalAxisLabel: qsTr("Field strength")
    unit: Unit.MICRO_TESLA
    lengthAxeX: TestModel ? TestModel.XTickCount : 0
    xMinTime: TestModel ? TestModel.XminTime : ""
    xMinDate: TestModel ? TestModel.XminDate : ""
    xMaxTime: TestModel ? TestModel.XmaxTime : ""
    xMaxDate: TestModel ? TestModel.XmaxDate : ""
}
