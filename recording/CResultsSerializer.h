// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QObject>

class CDataSetMapping;
class CDataSetMeasurement;
class QIODevice;

/// Writes a dataset to a file format and reads it back. Devices are open already and stay open; the result
/// tells success. Main thread only.
class CResultsSerializer : public QObject
{
    Q_OBJECT

public:
    using QObject::QObject;

    virtual bool WriteMapping(const CDataSetMapping& dataset, QIODevice* device) = 0;
    virtual bool WriteMeasurement(const CDataSetMeasurement& dataset, QIODevice* device) = 0;
    /// The dataset has been cleared by the caller. After a failure it holds what was read before.
    virtual bool ReadMapping(QIODevice* device, CDataSetMapping& dataset) = 0;
    virtual bool ReadMeasurement(QIODevice* device, CDataSetMeasurement& dataset) = 0;
};
