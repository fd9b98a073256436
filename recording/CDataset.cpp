// SPDX-License-Identifier: GPL-3.0-or-later
#include "CDataset.h"

#include "Property.h"

#include <utility>

CDataset::CDataset(const CSettings& settings, QObject* parent) : QObject(parent), SettingsRef(settings)
{
    connect(this, &CDataset::MeasurementParametersChanged, this, &CDataset::OnMeasurementParametersUpdated);
}

CDataset::~CDataset() = default;

void CDataset::SetComment(const QString& comment)
{
    storeAndEmitOnChange(this, m_comment, comment, &CDataset::CommentChanged);
}

void CDataset::SetResultsCount(quint64 count)
{
    storeAndEmitOnChange(this, m_resultsCount, count, &CDataset::ResultsCountChanged);
}

void CDataset::SetCleared(bool cleared)
{
    storeAndEmit(this, m_cleared, cleared, &CDataset::ClearedChanged);
}

void CDataset::SetMeasurementParameters(CMeasurementParameters* parameters)
{
    storeAndEmit(this, m_measurementParameters, parameters, &CDataset::MeasurementParametersChanged);
}

void CDataset::SetInstrumentName(const QString& name)
{
    storeAndEmitOnChange(this, m_instrumentName, name, &CDataset::InstrumentNameChanged);
}

void CDataset::SetDate(const QString& date)
{
    storeAndEmitOnChange(this, m_date, date, &CDataset::DateChanged);
}

void CDataset::SetFilePath(const QString& fileName)
{
    storeAndEmitOnChange(this, m_filePath, fileName, &CDataset::FilePathChanged);
}

void CDataset::AdoptMeasurementParameters(std::unique_ptr<CMeasurementParameters> parameters,
                                          Replaced replaced)
{
    std::swap(m_loadedParameters, parameters);
    SetMeasurementParameters(m_loadedParameters.get());
    // As a child a retired set goes with the dataset if there is no event loop any more.
    if (parameters && replaced == Replaced::Retire) {
        parameters->setParent(this);
        parameters.release()->deleteLater();
    }
}

void CDataset::OnMeasurementParametersUpdated()
{
    if (m_measurementParameters)
        emit MeasurementParametersUpdated(m_measurementParameters->Units());
}

void CDataset::AssignFilePath(const QString& fileName)
{
    storeAndEmit(this, m_filePath, fileName, &CDataset::FilePathChanged);
}

void CDataset::AssignInstrumentName(const QString& name)
{
    storeAndEmit(this, m_instrumentName, name, &CDataset::InstrumentNameChanged);
}

void CDataset::AssignDate(const QString& date)
{
    storeAndEmit(this, m_date, date, &CDataset::DateChanged);
}

void CDataset::assignResultsCount(quint64 count)
{
    storeAndEmit(this, m_resultsCount, count, &CDataset::ResultsCountChanged);
}
