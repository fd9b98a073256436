// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "CChart2DFieldsData.h"

#include <QStringList>

class CSettings;

/// A field plot that can smooth what it shows by an average: which one, over how many samples, and how that
/// is kept in the settings. What the average is like is the business of the derived class, in `UpdateFilter`;
/// a change makes all that is filtered anew.
class CChart2DAveragedData : public CChart2DFieldsData
{
    Q_OBJECT
    Q_PROPERTY(uint AveragingCount READ AveragingCount WRITE SetAveragingCount NOTIFY AveragingCountChanged)
    Q_PROPERTY(
        AveragingModes AveragingMode READ AveragingMode WRITE SetAveragingMode NOTIFY AveragingModeChanged)
    Q_PROPERTY(int AveragingModeIndex READ AveragingModeIndex WRITE SetAveragingModeIndex NOTIFY
                   AveragingModeIndexChanged)
    Q_PROPERTY(QStringList AveragingModeNames READ AveragingModeNames CONSTANT)

public:
    enum AveragingModes { Off = 0, Exponential = 1, Moving = 2 };
    Q_ENUM(AveragingModes)

    uint AveragingCount() const { return m_averagingCount; } ///< samples in an average
    AveragingModes AveragingMode() const { return m_averagingMode; }
    int AveragingModeIndex() const { return m_averagingModeIndex; } ///< index in AveragingModeNames
    QStringList AveragingModeNames() const { return m_averagingModeNames; }

    void SetAveragingCount(uint value);
    void SetAveragingMode(AveragingModes value);
    void SetAveragingModeIndex(int value);

    /// Stores count and mode with the application's settings.
    Q_INVOKABLE void saveAveragingParameter();

    unsigned ComputeDeltaX() override;

public slots:
    void onAveragingModeIndexChange();
    void onAveragingCountIndexChange();

signals:
    void AveragingCountChanged(uint value);
    void AveragingModeChanged(CChart2DAveragedData::AveragingModes value);
    void AveragingModeIndexChanged(int value);

protected:
    /// Starts with the averaging that `settings` hold. Both must outlive the chart.
    CChart2DAveragedData(CMeasurementParameters* parameters, CSettings* settings, QObject* parent);

private:
    CSettings* m_settings;
    uint m_averagingCount = 1;
    AveragingModes m_averagingMode = Off;
    int m_averagingModeIndex = 0;
    const QStringList m_averagingModeNames;
};
