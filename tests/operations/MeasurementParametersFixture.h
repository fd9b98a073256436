// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "CMeasurementParametersViewModel.h"
#include "COperationMeasure.h"
#include "OperationFixture.h"

#include <QString>
#include <QStringList>
#include <QVariant>

#include <memory>

/// A view model of measurement parameters on a real operation with a made instrument.
class MeasurementParametersFixture
{
protected:
    using ViewModel = CMeasurementParametersViewModel;
    using ViewModelPointer = std::unique_ptr<ViewModel>;
    using Units = QList<CUnits::UnitType>;

    /// Instrument 1 is connected: ranges 0.001, 0.1 and 1 T, units T to ADC, all triggers; unit in force is
    /// mT.
    void begin()
    {
        m_fixture = std::make_unique<OperationFixture>();
        m_operation = std::make_unique<COperationMeasure>(&m_fixture->settings, &m_fixture->plugins,
                                                          &m_fixture->supervisor);
        m_fixture->connectInstrument(0);
        parameters().SetUnits(CUnits::MILLI_TESLA);
        parameters().SetDisplayUnits(CUnits::MILLI_TESLA);
        parameters().SetUncertaintyUnits(CUnits::MILLI_TESLA);
        parameters().SetTriggerMode(CTrigger::CONTINUOUS);
        parameters().SetAutoRange(true);
    }

    void end()
    {
        m_operation.reset();
        m_fixture.reset();
    }

    static QStringList words(const char* text)
    {
        return QString::fromUtf8(text).split(QLatin1Char(' '), Qt::SkipEmptyParts);
    }

    static QString text(const QVariantList& ranges)
    {
        QStringList entries;
        for (const QVariant& range : ranges) {
            const QVariantMap map = range.toMap();
            entries.append(map.value(QStringLiteral("first")).toString() +
                           map.value(QStringLiteral("second")).toString());
        }
        return entries.join(QLatin1Char(' '));
    }

    CMeasurementParameters& parameters()
    {
        return *m_operation->OperationParameters()->MeasurementParameters();
    }
    CFakeInstrument& instrument() { return *m_fixture->instrument(0); }
    ViewModelPointer make(bool excludeContinuous = false)
    {
        return std::make_unique<ViewModel>(m_operation.get(), excludeContinuous);
    }
    void addBlock() { m_operation->RecordingManager()->AddMeasureBlock(CFakeInstrument::MakeBlock(2)); }

    std::unique_ptr<OperationFixture> m_fixture;
    std::unique_ptr<COperationMeasure> m_operation;
};
