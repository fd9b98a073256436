// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "CFakeFlyingMapperPlugin.h"
#include "CFakeMapperPlugin.h"
#include "COperationMapping.h"
#include "FakeOptions.h"
#include "LogRecorder.h"
#include "OperationFixture.h"

#include <QCoreApplication>

#include <memory>

/// A mapping operation with mappers of both kinds, made anew for each test. The stop-and-go mapper does not
/// report by itself.
class MappingFixture
{
protected:
    void setUp()
    {
        m_fixture = std::make_unique<OperationFixture>();
        m_operation = std::make_unique<COperationMapping>(&m_fixture->settings, &m_fixture->plugins,
                                                          &m_fixture->supervisor);
        m_mapper = std::make_unique<CFakeMapperPlugin>();
        m_mapper->setProperty("ready", QStringLiteral("never"));
        m_flyingMapper = std::make_unique<CFakeFlyingMapperPlugin>();
        m_trigger.setProperty("calls", QVariant());
    }

    void tearDown()
    {
        QCoreApplication::instance()->setProperty("journal", QVariant());
        m_operation.reset();
        m_mapper.reset();
        m_flyingMapper.reset();
        m_fixture.reset();
    }

    /// An active operation with an instrument and a mapper.
    void prepare(CMapperPlugin* mapper)
    {
        m_fixture->connectInstrument(0);
        m_operation->Activate();
        mapping().SetSelectedMapper(mapper);
        instrument()->setProperty("calls", QVariant());
    }

    /// So many points in a row along X, at 1, 2, and so on.
    void setRow(int points)
    {
        CMapperPositionSourceCartesian& grid = *mapping().MapperSourceCartesian();
        grid.X()->SetStart(1);
        grid.X()->SetStop(points);
        grid.Y()->SetStop(0);
        grid.Z()->SetStop(0);
    }

    CMeasurementParameters& parameters()
    {
        return *m_operation->OperationParameters()->MeasurementParameters();
    }
    CMappingParameters& mapping() { return *m_operation->MappingParameters(); }
    CRecordingManagerMapping& manager() { return *m_operation->RecordingManager(); }
    QSharedPointer<CFakeInstrument> instrument() const { return m_fixture->instrument(0); }

    static QStringList callsOf(const QObject& fake) { return fake.property("calls").toStringList(); }
    static QStringList placesOf(const QObject& mapper) { return mapper.property("places").toStringList(); }
    static QString endOfList() { return QStringLiteral("DEBUG End of the MapperSource list"); }

    std::unique_ptr<OperationFixture> m_fixture;
    std::unique_ptr<COperationMapping> m_operation;
    std::unique_ptr<CFakeMapperPlugin> m_mapper;
    std::unique_ptr<CFakeFlyingMapperPlugin> m_flyingMapper;
    CFakeTriggerPlugin m_trigger;
};
