// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "CResultsSerializer.h"

/// Writer of the CSV side file of a record: sections of lines "key;value", then the samples. There is no
/// quoting. An export only: reading always gives false.
class CCSVResultsSerializer : public CResultsSerializer
{
    Q_OBJECT

public:
    using CResultsSerializer::CResultsSerializer;

    /// False without blocks, when nothing is written; else true, whether or not the device took the text.
    bool WriteMapping(const CDataSetMapping& dataset, QIODevice* device) override;
    bool WriteMeasurement(const CDataSetMeasurement& dataset, QIODevice* device) override;
    bool ReadMapping(QIODevice* device, CDataSetMapping& dataset) override;
    bool ReadMeasurement(QIODevice* device, CDataSetMeasurement& dataset) override;
};
