// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "COperationViewModel.h"
#include "MeasureFixture.h"

#include <QFile>
#include <QStringList>
#include <QTest>

#include <cmath>

/// A measure operation with limits of exposure and with fields of pure sines.
struct SpectralFixture : MeasureFixture
{
    /// 200 samples a second in blocks of 200: bins 1 Hz apart.
    static constexpr int kRate = 200;

    SpectralFixture()
    {
        parameters().SetAcquisitionRate(kRate);
        parameters().SetBlockSize(kRate);
        parameters().SetFrequencyMin(0);
    }

    /// Block number `index` of a sine of that frequency in Hz, alike in all components.
    static QSharedPointer<CMeasureBlock> sine(double amplitude, double frequency, int index = 0,
                                              int size = kRate)
    {
        QVector<Sample> samples;
        for (int i = 0; i < size; ++i) {
            Sample sample;
            sample.b =
                static_cast<float>(amplitude * std::sin(2.0 * std::acos(-1.0) * frequency * i / kRate));
            sample.bbPrime = sample.bx = sample.by = sample.bz = sample.b;
            sample.timeMs = 1000 * index + 1000 * i / kRate;
            samples.append(sample);
        }
        return makeBlock(samples);
    }

    /// A block whose field stands still.
    static QSharedPointer<CMeasureBlock> level(float value, int index, int size)
    {
        QVector<Sample> samples;
        for (int i = 0; i < size; ++i) {
            Sample sample;
            sample.b = sample.bbPrime = sample.bx = sample.by = sample.bz = value;
            sample.timeMs = 1000 * index + i;
            samples.append(sample);
        }
        return makeBlock(samples);
    }

    void deliver(const QSharedPointer<CMeasureBlock>& block) { operation.OnNewMeasure(block); }

    /// Loads a limits file with these bands of upper frequency in Hz and exposure in microtesla.
    void loadLimits(const QVector<QPair<double, double>>& bands)
    {
        operation.clearLimitsFile();
        QFile file(directory.filePath(QStringLiteral("limits.xml")));
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write("<NorvaneExposureLimitsFile ver=\"1.0\">");
        for (const auto& band : bands)
            file.write(QStringLiteral("<freqRange><upperFreqLimit>%1</upperFreqLimit><exposureLimitValue>%2"
                                      "</exposureLimitValue><valueUnits>µT</valueUnits></freqRange>")
                           .arg(band.first)
                           .arg(band.second)
                           .toUtf8());
        file.write("</NorvaneExposureLimitsFile>");
        file.close();
        operation.OperationParameters()->LimitsParameters()->SetLimitsFilePath(file.fileName());
        QVERIFY(operation.LimitsFileLoaded());
    }

    /// An instrument, and parameters that are not those of the "Default" button.
    void connectOtherThanDefaults()
    {
        const auto instrument = connectInstrument();
        instrument->SetUnitList({CUnits::TESLA, CUnits::MICRO_TESLA});
        instrument->SetTriggerList({CTrigger::CONTINUOUS, CTrigger::TIMER});
        parameters().SetTriggerMode(CTrigger::TIMER);
        parameters().SetAveraging(7);
        parameters().SetDisplayRate(4);
    }

    /// Delivers live blocks 0, 1 and so on and stops with them on screen.
    void deliverAndStop(const QVector<QSharedPointer<CMeasureBlock>>& blocks)
    {
        for (const auto& block : blocks)
            deliver(block);
        manager().StopRecord();
    }
};

/// The help of each section, and none for other indices.
inline void verifyHelpNames(COperationViewModel& page, const QStringList& names)
{
    for (int section = 0; section < names.size(); ++section) {
        page.SetSectionIndex(section);
        QCOMPARE(page.GetHelpName(), names.at(section));
    }
    for (const int other : {names.size(), -1}) {
        page.SetSectionIndex(other);
        QCOMPARE(page.GetHelpName(), QString());
    }
}

/// The log of parameters begins with the fall of the commit flag and has these steps in their order.
inline void verifySteps(const QStringList& log, const QVector<const char*>& steps)
{
    QCOMPARE(log.constFirst(), QStringLiteral("ApplyConfiguration=false"));
    int last = 0;
    for (const char* step : steps) {
        const int position = log.indexOf(QString::fromLatin1(step));
        QVERIFY2(position > last, step);
        last = position;
    }
}
