// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "CFakeMapperPlugin.h"
#include "CMappingOperationViewModel.h"
#include "MeterFixture.h"

#include <memory>

using MappingBlock = QSharedPointer<CMeasureBlockMapping>;
using MappingPage = std::unique_ptr<CMappingOperationViewModel>;

/// A mapping operation with all that it needs, live unit microtesla, a mapper that stays where the test puts
/// it, and room for 100 samples in blocks of two.
struct MappingPageFixture : MeasureFixture
{
    MappingPageFixture() : mapping(&settings, &pluginsManager, &supervisor)
    {
        mapper.setProperty("ready", QStringLiteral("never"));
        // Nobody sends it on; a test that wants that gives it back its type.
        mapper.MapperType = CMapperPlugin::kStopAndGo - 1;
        mappingParameters().SetSelectedMapper(&mapper);
        settings.SetMappingMaxMeasurementCount(100);
        live().SetUnits(CUnits::MICRO_TESLA);
        live().SetUncertaintyUnits(CUnits::MICRO_TESLA);
        live().SetTriggerMode(CTrigger::IMMEDIATE);
        live().SetBlockSize(2);
    }

    CMeasurementParameters& live() { return *mapping.OperationParameters()->MeasurementParameters(); }
    CMappingParameters& mappingParameters() { return *mapping.MappingParameters(); }
    CAlarmParametersMapping& alarm() { return *mapping.OperationParameters()->AlarmParametersMapping(); }
    CRecordingManagerMapping& mappingManager() { return *mapping.RecordingManager(); }
    CDataSetMapping& mappingData() { return *mappingManager().DataSet(); }

    MappingPage makePage()
    {
        return std::make_unique<CMappingOperationViewModel>(&mapping, &settings, &notifier);
    }

    /// A page whose views follow, with a session in progress if there is an instrument.
    MappingPage makeRunningPage()
    {
        auto page = makePage();
        page->resume();
        return page;
    }

    /// Takes a block as if the mapper stood at this place.
    void take(const QVector<Sample>& samples, double x = 0, double y = 0, double z = 0,
              const QString& comment = QString())
    {
        placeMapper(x, y, z, 0, 0, 0);
        mapping.OnNewMeasure(makeBlock(samples, comment));
    }

    void placeMapper(double x, double y, double z, double roll, double pitch, double yaw)
    {
        CPosition position;
        position.SetX(x);
        position.SetY(y);
        position.SetZ(z);
        COrientation orientation;
        orientation.SetRoll(roll);
        orientation.SetPitch(pitch);
        orientation.SetYaw(yaw);
        mapper.MoveTo(position, orientation);
    }

    /// So many blocks at X = 1, 2 and so on, with B ten times as much, and the record stopped.
    void recordRow(CMappingOperationViewModel& page, int blocks)
    {
        page.resume();
        for (int i = 1; i <= blocks; ++i)
            take(ramp(i), i, -i, 2.0 * i, QString::number(i));
        page.stop();
    }

    /// Two samples of a block, the second with B ten times the number.
    static QVector<Sample> ramp(int number)
    {
        Sample first = field(0, 0, 1);
        first.timeMs = 100 * number;
        Sample last = field(0, 0, 10.0F * static_cast<float>(number));
        last.timeMs = 100 * number + 10;
        return {first, last};
    }

    static QVector<double> scales(const CMappingOperationViewModel& page)
    {
        QVector<double> values;
        for (const VectorRecord& vector : page.VectorHistory())
            values.append(vector.scale);
        return values;
    }

    static QVector<double> axes(const CMappingOperationViewModel& page)
    {
        return {page.XStart(), page.XStop(), page.YStart(), page.YStop(), page.ZStart(), page.ZStop()};
    }

    static qulonglong charted(CMappingOperationViewModel& page)
    {
        return page.MappingOperationDatasetViewModel()->Chart2DData()->MeasureResultCount();
    }

    static QVector<float> tableB(CMappingOperationViewModel& page)
    {
        CMeasureBlockData& table = *page.MappingOperationDatasetViewModel()->TableData();
        QVector<float> values;
        for (int row = 0; row < table.rowCount(); ++row)
            values.append(table.data(table.index(row, 0), CMeasureBlockData::BRole).toFloat());
        return values;
    }

    COperationMapping mapping;
    CFakeMapperPlugin mapper;
};
