// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick 2.15
import "../Controls/Chart2D"

// The plot of the field on a page of an operation.
MeasurementsChart2D {
    property QtObject chartData: null

    dataModel: chartData
    verticalAxisLabel: qsTr("Field strength")
    unit: ActivePageViewModel.DisplayUnits
    lengthAxeX: chartData.XTickCount
    xMinTime: chartData.XminTime
    xMinDate: chartData.XminDate
    xMaxTime: chartData.XmaxTime
    xMaxDate: chartData.XmaxDate
}
