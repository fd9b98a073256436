// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "CSpectrumOperationViewModel.h"
#include "SpectralFixture.h"

#include <QVector>

#include <memory>

/// The page over the fixture's operation, and what stands in its models.
namespace SpectrumPage {

using PagePointer = std::unique_ptr<CSpectrumOperationViewModel>;

inline PagePointer makePage(SpectralFixture& f)
{
    return std::make_unique<CSpectrumOperationViewModel>(&f.operation, &f.settings, &f.notifier);
}

inline CChart2DSpectrumData& chartOf(CSpectrumOperationViewModel& page)
{
    return *page.SpectrumOperationDatasetViewModel()->FFTChart2DData();
}

inline CFrequencyPeakListData& tableOf(CSpectrumOperationViewModel& page)
{
    return *page.SpectrumOperationDatasetViewModel()->TableData();
}

/// The frequencies of the peaks table, rounded to Hz.
inline QVector<int> peaks(CSpectrumOperationViewModel& page)
{
    QVector<int> frequencies;
    CFrequencyPeakListData& table = tableOf(page);
    for (int row = 0; row < table.rowCount(); ++row)
        frequencies.append(
            qRound(table.data(table.index(row, 0), CFrequencyPeakListData::FrequencyRole).toDouble()));
    return frequencies;
}

inline void setAlarm(SpectralFixture& f, CAlarm::AlarmState state)
{
    f.operation.OperationParameters()->AlarmParametersSpectrum()->SetState(state);
}

} // namespace SpectrumPage
