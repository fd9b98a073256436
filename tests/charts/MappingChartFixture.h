// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "CChart2DMappingData.h"
#include "CInstrumentSupervisor.h"
#include "COperationMapping.h"
#include "CPluginsManager.h"
#include "CSettings.h"
#include "ChartFixtures.h"
#include "SettingsDirectoryPath.h"

#include <QCoreApplication>
#include <QDir>
#include <QTimer>

#include <deque>
#include <memory>
#include <random>

using MappingBlock = QSharedPointer<CMeasureBlockMapping>;
using MappingMode = CChart2DMappingData::AveragingModes;

/// The chart of the mapping page over an operation of its own, and blocks to feed it.
struct MappingChartFixture
{
    /// Everything anew, at its defaults, with time along X.
    void start(CSettings::t_Mapping2DPlotHorizontalAxisType axis = CSettings::e_HorizAxisIsTime)
    {
        m_chart.reset();
        m_operation.reset();
        m_supervisor.reset();
        m_pluginsManager.reset();
        QDir(SettingsDirectoryPath).removeRecursively();
        m_settings = std::make_unique<CSettings>(QCoreApplication::applicationDirPath());
        m_settings->SetMapping2DPlotHorizontalAxisType(axis);
        m_settings->SetMappingMaxMeasurementCount(1000000);
        m_pluginsManager = std::make_unique<CPluginsManager>(*m_settings);
        m_supervisor = std::make_unique<CInstrumentSupervisor>(m_settings.get());
        m_operation =
            std::make_unique<COperationMapping>(m_settings.get(), m_pluginsManager.get(), m_supervisor.get());
        parameters().SetAcquisitionRate(10.0);
        m_engine.seed(3);
        m_nextSample = 0;
        makeChart();
    }

    /// A chart whose timer rests, so that only the test redraws.
    void makeChart()
    {
        m_chart = std::make_unique<CChart2DMappingData>(m_operation.get(), m_settings.get());
        m_chart->findChild<QTimer*>()->stop();
    }

    CMeasurementParameters& parameters()
    {
        return *m_operation->OperationParameters()->MeasurementParameters();
    }

    /// A block of random values at a place, a tenth of a second a sample, which follows the block before.
    MappingBlock makeBlock(int samples, double x = 0.0, double y = 0.0, double z = 0.0)
    {
        std::uniform_real_distribution<float> value(-100.0F, 100.0F);
        auto block = MappingBlock::create();
        block->Position.SetX(x);
        block->Position.SetY(y);
        block->Position.SetZ(z);
        for (int i = 0; i < samples; ++i, ++m_nextSample)
            block->Results.append(
                makeResult(m_nextSample * 100000000, {value(m_engine), value(m_engine), value(m_engine),
                                                      value(m_engine), value(m_engine), value(m_engine)}));
        return block;
    }

    std::deque<MappingBlock> makeBlocks(int blocks, int samples)
    {
        std::deque<MappingBlock> all;
        for (int i = 0; i < blocks; ++i)
            all.push_back(makeBlock(samples, i, 10.0 * i, 100.0 * i));
        return all;
    }

    std::unique_ptr<CSettings> m_settings;
    std::unique_ptr<CPluginsManager> m_pluginsManager;
    std::unique_ptr<CInstrumentSupervisor> m_supervisor;
    std::unique_ptr<COperationMapping> m_operation;
    std::unique_ptr<CChart2DMappingData> m_chart;
    std::mt19937 m_engine;
    qint64 m_nextSample = 0;
};
