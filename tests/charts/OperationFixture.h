// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "CDataSetMeasurement.h"
#include "CInstrumentSupervisor.h"
#include "CMeasureBlock.h"
#include "COperationMeasure.h"
#include "CPluginsManager.h"
#include "CRecordingManagerMeasure.h"
#include "CSettings.h"
#include "ChartFixtures.h"
#include "SettingsDirectoryPath.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>

#include <deque>
#include <memory>
#include <random>

using Block = QSharedPointer<CMeasureBlock>;

/// A measure operation without an instrument, on settings of their defaults, and blocks to feed it.
struct OperationFixture
{
    /// Everything anew, at its defaults.
    void start()
    {
        m_operation.reset();
        m_record.reset();
        m_supervisor.reset();
        m_pluginsManager.reset();
        QDir(SettingsDirectoryPath).removeRecursively();
        m_settings = std::make_unique<CSettings>(QCoreApplication::applicationDirPath());
        m_pluginsManager = std::make_unique<CPluginsManager>(*m_settings);
        m_supervisor = std::make_unique<CInstrumentSupervisor>(m_settings.get());
        m_operation =
            std::make_unique<COperationMeasure>(m_settings.get(), m_pluginsManager.get(), m_supervisor.get());
        m_engine.seed(3);
        m_nextSample = 0;
        m_spacingNs = 100000000;
    }

    CMeasurementParameters& parameters()
    {
        return *m_operation->OperationParameters()->MeasurementParameters();
    }
    CRecordingManagerMeasure& manager() { return *m_operation->RecordingManager(); }
    CDataSetMeasurement& dataSet() { return *manager().DataSet(); }

    /// Gives the dataset parameters of its own, as a loaded record has them, with exactly these values.
    void recordParameters(double rate, int blockSize, double frequencyMin, double frequencyMax)
    {
        m_record = std::make_unique<CMeasurementParameters>();
        // Without the coupling of the rates
        m_record->disconnect(m_record.get());
        m_record->SetAcquisitionRate(rate);
        m_record->SetBlockSize(blockSize);
        m_record->SetFrequencyMin(frequencyMin);
        m_record->SetFrequencyMax(frequencyMax);
        dataSet().SetMeasurementParameters(m_record.get());
    }

    /// Loads a limits file with these bands of upper frequency in Hz and exposure in the display unit.
    void loadLimits(const QVector<QPair<double, double>>& bands)
    {
        m_operation->clearLimitsFile();
        parameters().SetDisplayUnits(CUnits::TESLA);
        QFile file(m_directory.filePath(QStringLiteral("limits.xml")));
        QVERIFY(file.open(QIODevice::WriteOnly));
        QString text = QStringLiteral("<NorvaneExposureLimitsFile ver=\"1.0\">");
        for (const auto& band : bands)
            text += QStringLiteral("<freqRange><upperFreqLimit>%1</upperFreqLimit><exposureLimitValue>%2"
                                   "</exposureLimitValue><valueUnits>T</valueUnits></freqRange>")
                        .arg(band.first, 0, 'g', 12)
                        .arg(band.second, 0, 'g', 12);
        file.write((text + QStringLiteral("</NorvaneExposureLimitsFile>")).toUtf8());
        file.close();
        m_operation->OperationParameters()->LimitsParameters()->SetLimitsFilePath(file.fileName());
        QVERIFY(m_operation->LimitsFileLoaded());
        QCOMPARE(m_operation->getLimitsCount(), bands.size());
    }

    /// A block of random values, whose samples follow those of the block before.
    Block makeBlock(int samples)
    {
        std::uniform_real_distribution<float> value(-100.0F, 100.0F);
        auto block = Block::create();
        for (int i = 0; i < samples; ++i, ++m_nextSample)
            block->Results.append(
                makeResult(m_nextSample * m_spacingNs, {value(m_engine), value(m_engine), value(m_engine),
                                                        value(m_engine), value(m_engine), value(m_engine)}));
        return block;
    }

    std::deque<Block> makeBlocks(int blocks, int samples)
    {
        std::deque<Block> all;
        for (int i = 0; i < blocks; ++i)
            all.push_back(makeBlock(samples));
        return all;
    }

    std::unique_ptr<CSettings> m_settings;
    std::unique_ptr<CPluginsManager> m_pluginsManager;
    std::unique_ptr<CInstrumentSupervisor> m_supervisor;
    std::unique_ptr<CMeasurementParameters> m_record;
    std::unique_ptr<COperationMeasure> m_operation;
    QTemporaryDir m_directory;
    std::mt19937 m_engine;
    qint64 m_nextSample = 0;
    qint64 m_spacingNs = 100000000;
};
