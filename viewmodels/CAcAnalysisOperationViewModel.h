// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "CAcAnalysisOperationDatasetViewModel.h"
#include "CAlarmParametersAcAnalysisViewModel.h"
#include "CMeasureBlock.h"
#include "CMeasurementOperationViewModel.h"
#include "CMeasurementParametersViewModel.h"

#include <QSharedPointer>
#include <QStringList>

#include <deque>

class CUserNotifier;

/// The AC analysis page. Its plot has one point for each block, a figure of merit of the block's samples; its
/// table has the same figure of the block on screen in the frequency bands of the exposure limits, with which
/// it is compared.
///
/// A block of fewer than two samples has no figures: it gives no point and leaves the table alone.
class CAcAnalysisOperationViewModel : public CMeasurementOperationViewModel
{
    Q_OBJECT
    Q_PROPERTY(CMeasurementParametersViewModel* MeasurementParametersViewModel READ
                   MeasurementParametersViewModel CONSTANT)
    Q_PROPERTY(
        CAlarmParametersAcAnalysisViewModel* AlarmParametersViewModel READ AlarmParametersViewModel CONSTANT)
    Q_PROPERTY(CAcAnalysisOperationDatasetViewModel* AcAnalysisOperationDatasetViewModel READ
                   AcAnalysisOperationDatasetViewModel CONSTANT)
    Q_PROPERTY(QStringList FigureOfMeritNames READ FigureOfMeritNames NOTIFY FigureOfMeritNamesChanged)
    Q_PROPERTY(int SelectedFigureOfMeritIndex READ SelectedFigureOfMeritIndex WRITE
                   SetSelectedFigureOfMeritIndex NOTIFY SelectedFigureOfMeritIndexChanged)

public:
    /// Operation, settings and notifier must outlive the view model.
    CAcAnalysisOperationViewModel(COperationMeasure* operation, CSettings* settings, CUserNotifier* notifier,
                                  QObject* parent = nullptr);

    QString GetHelpName() const override;
    void PageLeft() override;

    /// Rates and choices for a first look at a field, in effect with an instrument only.
    Q_INVOKABLE void setDefaultParameters();

    CMeasurementParametersViewModel* MeasurementParametersViewModel()
    {
        return &m_measurementParametersViewModel;
    }
    CAlarmParametersAcAnalysisViewModel* AlarmParametersViewModel() { return &m_alarmParametersViewModel; }
    CAcAnalysisOperationDatasetViewModel* AcAnalysisOperationDatasetViewModel()
    {
        return &m_datasetViewModel;
    }
    QStringList FigureOfMeritNames() const { return m_figureOfMeritNames; }
    /// In `FigureOfMeritNames`: 0 RMS, 1 peak-to-peak, 2 standard deviation.
    int SelectedFigureOfMeritIndex() const { return m_selectedFigureOfMeritIndex; }

    void SetSelectedFigureOfMeritIndex(int index);

public slots:
    void OnNewMeasure(QSharedPointer<CMeasureBlock> block);
    void OnOperationParameterUnitChanged();
    void OnDataSetCleared();
    void OnPlayingBackChanged(bool isPlayingBack);
    void OnSelectedFigureOfMeritIndexChanged();
    void OnLimitFileLoaded(bool isFileLoaded);
    void OnDatasetLoaded();

signals:
    void FigureOfMeritNamesChanged(const QStringList& names);
    void SelectedFigureOfMeritIndexChanged(int index);

private:
    using Blocks = std::deque<BlockPointer>;

    void connectSignals();
    void loadAll();
    void loadUpTo(int index, bool wholeDataset);
    void updateTable();
    void clearAll();

    CMeasurementParametersViewModel m_measurementParametersViewModel;
    CAlarmParametersAcAnalysisViewModel m_alarmParametersViewModel;
    CAcAnalysisOperationDatasetViewModel m_datasetViewModel;

    const QStringList m_figureOfMeritNames;
    int m_selectedFigureOfMeritIndex = 0;
    bool m_fullRedraw = false; ///< the plot is to be filled anew from the dataset
};
