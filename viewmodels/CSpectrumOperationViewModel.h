// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "CAlarmParametersSpectrumViewModel.h"
#include "CMeasureBlock.h"
#include "CMeasurementOperationViewModel.h"
#include "CMeasurementParametersViewModel.h"
#include "CSpectrumAlarm.h"
#include "CSpectrumOperationDatasetViewModel.h"

#include <QSharedPointer>
#include <QStringList>

class CMeasurementParameters;
class CUserNotifier;

/// The spectrum page. Turns each block of the measure operation, live or replayed, into the amplitude
/// spectrum of one field component and the table of its peaks, and compares the spectrum with the exposure
/// limits.
///
/// Rates and lowest frequency are those of the dataset, so that a loaded record is analysed with its own. A
/// block of fewer than two samples has no spectrum and leaves on the page what is there.
class CSpectrumOperationViewModel : public CMeasurementOperationViewModel
{
    Q_OBJECT
    Q_PROPERTY(CMeasurementParametersViewModel* MeasurementParametersViewModel READ
                   MeasurementParametersViewModel CONSTANT)
    Q_PROPERTY(
        CAlarmParametersSpectrumViewModel* AlarmParametersViewModel READ AlarmParametersViewModel CONSTANT)
    Q_PROPERTY(CSpectrumOperationDatasetViewModel* SpectrumOperationDatasetViewModel READ
                   SpectrumOperationDatasetViewModel CONSTANT)
    Q_PROPERTY(QStringList FieldNames READ FieldNames NOTIFY FieldNamesChanged)
    Q_PROPERTY(int SelectedFieldIndex READ SelectedFieldIndex WRITE SetSelectedFieldIndex NOTIFY
                   SelectedFieldIndexChanged)
    Q_PROPERTY(double Threshold READ Threshold WRITE SetThreshold NOTIFY ThresholdChanged)

public:
    /// Operation, settings and notifier must outlive the view model.
    CSpectrumOperationViewModel(COperationMeasure* operation, CSettings* settings, CUserNotifier* notifier,
                                QObject* parent = nullptr);

    QString GetHelpName() const override;
    void PageLeft() override;

    /// Rates and choices for a first look at a field, in effect with an instrument only.
    Q_INVOKABLE void setDefaultParameters();

    CMeasurementParametersViewModel* MeasurementParametersViewModel()
    {
        return &m_measurementParametersViewModel;
    }
    CAlarmParametersSpectrumViewModel* AlarmParametersViewModel() { return &m_alarmParametersViewModel; }
    CSpectrumOperationDatasetViewModel* SpectrumOperationDatasetViewModel() { return &m_datasetViewModel; }
    QStringList FieldNames() const { return m_fieldNames; }         ///< components that can be analysed
    int SelectedFieldIndex() const { return m_selectedFieldIndex; } ///< in `FieldNames`
    double Threshold() const { return m_threshold; }                ///< of a peak above the noise, dB

    void SetSelectedFieldIndex(int index);
    void SetThreshold(double threshold);

public slots:
    /// Shows the block that is on screen, without the alarm: for a plot that has just been built.
    void loadData();
    /// Empties plot and table.
    void unloadData();
    void OnNewMeasure(QSharedPointer<CMeasureBlock> block);
    void OnOperationParameterUnitChanged();
    void OnDataSetCleared();
    void OnPlayingBackChanged(bool isPlayingBack);
    void OnLimitsFileLoaded();
    void OnLimitsFileConverted(bool isConverted);
    void OnSelectedFieldIndexChanged();
    void OnThresholdChanged();
    void OnDatasetLoaded();

signals:
    void FieldNamesChanged(const QStringList& names);
    void SelectedFieldIndexChanged(int index);
    void ThresholdChanged(double threshold);

private:
    void connectSignals();
    const CMeasurementParameters& parametersOfDataSet() const;
    bool analyse(const BlockPointer& block);
    void updatePeaks();
    void checkAlarm();

    CMeasurementParametersViewModel m_measurementParametersViewModel;
    CAlarmParametersSpectrumViewModel m_alarmParametersViewModel;
    CSpectrumOperationDatasetViewModel m_datasetViewModel;
    CSpectrumAlarm m_alarm;

    const QStringList m_fieldNames;
    int m_selectedFieldIndex;
    double m_threshold;
};
