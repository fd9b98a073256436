// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QObject>

/// One axis of a grid, in the length unit of the mapper: the values from `Start` on, `StepSize` apart, that
/// are not above `Stop`.
class CAxisStepSeries : public QObject
{
    Q_OBJECT
    Q_PROPERTY(double Start READ Start WRITE SetStart NOTIFY StartChanged)
    Q_PROPERTY(double Stop READ Stop WRITE SetStop NOTIFY StopChanged)
    Q_PROPERTY(double StepSize READ StepSize WRITE SetStepSize NOTIFY StepSizeChanged)

public:
    explicit CAxisStepSeries(QObject* parent = nullptr);

    double Start() const { return m_start; }
    double Stop() const { return m_stop; }
    double StepSize() const { return m_stepSize; }
    void SetStart(double value);
    void SetStop(double value);
    void SetStepSize(double value);

public slots:
    void OnUpdated();

signals:
    void StartChanged(double value);
    void StopChanged(double value);
    void StepSizeChanged(double value);
    /// One of the three has changed.
    void Updated();

private:
    double m_start = 0;
    double m_stop = 1;
    double m_stepSize = 1;
};
