// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "CMeasurementOperationViewModel.h"
#include "MeasureFixture.h"

inline const QString kQuitQuestion =
    QStringLiteral("Are you sure you want to quit the current operation?|All the measured data will be lost");

/// A measure page without a content of its own.
class FakeMeasurePage : public CMeasurementOperationViewModel
{
public:
    explicit FakeMeasurePage(MeasureFixture& f)
        : CMeasurementOperationViewModel(QStringLiteral("Fake"), &f.operation, &f.settings)
    {
    }

    QString GetHelpName() const override { return QString(); }

    using CMeasurementOperationViewModel::disconnectFromOperation;
    using CMeasurementOperationViewModel::openReplayRange;
};

/// Two blocks and a stopped record: stored data are on screen.
inline void storeData(MeasureFixture& f)
{
    f.manager().AddMeasureBlock(makeRamp(1, 2, 0, 10));
    f.manager().AddMeasureBlock(makeRamp(3, 2, 20, 10));
    f.manager().StopRecord();
}
