// SPDX-License-Identifier: GPL-3.0-or-later
// Maps of the simulated magnet, taken as the application takes them, saved, loaded and compared with the
// closed formula of the dipole.

#include "CInstrumentPlugin.h"
#include "CInstrumentSupervisor.h"
#include "CMapperPluginStopAndGo.h"
#include "COperationMapping.h"
#include "CPluginsManager.h"
#include "CSettings.h"
#include "CTriggerPlugin.h"
#include "PluginDriver.h"

#include <QSignalSpy>
#include <QTemporaryDir>
#include <QtTest>

#include <array>
#include <cmath>

namespace {

const QString kInstrumentSettings = QStringLiteral("KestrixSimulatedInstrument.ini");
const QString kMapperSettings = QStringLiteral("KestrixSimulatedMapper.ini");
const QString kTriggerSettings = QStringLiteral("KestrixSimulatedTrigger.ini");

// A moment along no axis, and a sensor without any error of its own.
const QByteArray kInstrument =
    "[Magnet]\nCenterX=5\nCenterY=-4\nCenterZ=-60\nMomentX=0.3\nMomentY=-0.2\nMomentZ=0.9\n"
    "Radius=6\n[Sensor]\nNoise=0\nOffsetX=0\nOffsetY=0\nOffsetZ=0\nSeed=7\n";
const QByteArray kGantry = "[Gantry]\nSpeed=20000\nAngularSpeed=20000\nSettleMs=3\n";

using Vector = std::array<double, 3>;

/// mu0/4pi (3 r (m r) / r^5 - m / r^3), in microtesla, with lengths in millimetres.
Vector dipole(const Vector& place)
{
    const Vector moment{0.3, -0.2, 0.9};
    const Vector r{(place[0] - 5) / 1000, (place[1] + 4) / 1000, (place[2] + 60) / 1000};
    const double square = r[0] * r[0] + r[1] * r[1] + r[2] * r[2];
    const double along = moment[0] * r[0] + moment[1] * r[1] + moment[2] * r[2];
    Vector field{};
    for (size_t i = 0; i < 3; ++i)
        field[i] = 0.1 * (3 * r[i] * along / std::pow(square, 2.5) - moment[i] / std::pow(square, 1.5));
    return field;
}

/// Rows of the turn from the probe's axes to the mapper's.
std::array<Vector, 3> turn(const COrientation& orientation)
{
    const double degree = std::acos(-1.0) / 180;
    const double c1 = std::cos(orientation.Roll() * degree);
    const double s1 = std::sin(orientation.Roll() * degree);
    const double c2 = std::cos(orientation.Pitch() * degree);
    const double s2 = std::sin(orientation.Pitch() * degree);
    const double c3 = std::cos(orientation.Yaw() * degree);
    const double s3 = std::sin(orientation.Yaw() * degree);
    return {{{c1 * c3 - s1 * s2 * s3, -s1 * c2, c1 * s3 + s1 * s2 * c3},
             {s1 * c3 + c1 * s2 * s3, c1 * c2, s1 * s3 - c1 * s2 * c3},
             {-c2 * s3, s2, c2 * c3}}};
}

Vector placeOf(const CMeasureBlockMapping& block)
{
    return {block.Position.X(), block.Position.Y(), block.Position.Z()};
}

double norm(const Vector& vector)
{
    return std::sqrt(vector[0] * vector[0] + vector[1] * vector[1] + vector[2] * vector[2]);
}

/// Largest deviation of the block's samples, turned to the mapper's axes, from the dipole at its place, as
/// part of the field there.
double deviationOf(const CMeasureBlockMapping& block)
{
    const Vector expected = dipole(placeOf(block));
    const auto rows = turn(block.Orientation);
    double largest = 0;
    for (const auto& sample : block.Results) {
        const Vector probe{static_cast<double>(sample->Bx()), static_cast<double>(sample->By()),
                           static_cast<double>(sample->Bz())};
        for (size_t i = 0; i < 3; ++i) {
            const double component = rows[i][0] * probe[0] + rows[i][1] * probe[1] + rows[i][2] * probe[2];
            largest = std::max(largest, std::abs(component - expected[i]) / norm(expected));
        }
        largest = std::max(largest, std::abs(static_cast<double>(sample->B()) / norm(expected) - 1));
    }
    return largest;
}

} // namespace

class tst_SimulatedMap : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        writeSettings(kInstrumentSettings, kInstrument);
        writeSettings(kMapperSettings, kGantry);
        writeSettings(kTriggerSettings, "[Trigger]\nDelayMs=1\nIntervalMs=5\n");
        m_settings = std::make_unique<CSettings>(QString());
        m_settings->SetInstrumentParameterPath(m_directory.path());
        const QString plugins = QStringLiteral(PLUGINS_PATH);
        m_settings->SetInstrumentDriverPluginsPath(plugins + QStringLiteral("/instrument"));
        m_settings->SetMapperPluginsPath(plugins + QStringLiteral("/mapper"));
        m_settings->SetTriggerPluginsPath(plugins + QStringLiteral("/trigger"));
        m_plugins = std::make_unique<CPluginsManager>(*m_settings);
        m_plugins->LoadAll();
        m_supervisor = std::make_unique<CInstrumentSupervisor>(m_settings.get());
        m_operation =
            std::make_unique<COperationMapping>(m_settings.get(), m_plugins.get(), m_supervisor.get());
    }

    void cleanup()
    {
        if (const auto instrument = m_operation->ActiveInstrument())
            instrument->StopMeasurement();
        m_operation.reset();
        m_supervisor.reset();
        m_plugins->Terminate();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        m_plugins.reset();
        m_settings.reset();
        removeSettings(kInstrumentSettings);
        removeSettings(kMapperSettings);
        removeSettings(kTriggerSettings);
    }

    void gridAgainstTheFormula_data()
    {
        QTest::addColumn<CTrigger::TriggerMode>("mode");
        QTest::addColumn<QVector<double>>("angles");
        QTest::newRow("straight") << CTrigger::IMMEDIATE << QVector<double>{0, 0, 0};
        QTest::newRow("turned about one axis") << CTrigger::IMMEDIATE << QVector<double>{0, 0, 90};
        QTest::newRow("turned about all") << CTrigger::IMMEDIATE << QVector<double>{25, -140, 65};
        QTest::newRow("external trigger") << CTrigger::EXTERNAL << QVector<double>{-10, 20, -30};
    }

    void gridAgainstTheFormula()
    {
        QFETCH(const CTrigger::TriggerMode, mode);
        QFETCH(const QVector<double>, angles);
        prepare("Simulated gantry", mode);
        CMapperPositionSourceCartesian& grid = *m_operation->MappingParameters()->MapperSourceCartesian();
        setAxis(grid.X(), -40, 40, 40);
        setAxis(grid.Y(), -30, 30, 30);
        setAxis(grid.Z(), -20, 20, 20);
        grid.Orientation()->SetRoll(angles[0]);
        grid.Orientation()->SetPitch(angles[1]);
        grid.Orientation()->SetYaw(angles[2]);
        constexpr int kPoints = 3 * 3 * 3;
        record();
        QTRY_VERIFY_WITH_TIMEOUT(!m_operation->SessionInProgress() && manager().NumBlocks() == kPoints,
                                 60000);

        const double live = compare(manager(), kPoints, 1e-6);
        const QString path = m_directory.filePath(QStringLiteral("map.qdr.xml"));
        manager().Save(path);
        CRecordingManagerMapping loaded(*m_settings);
        QVERIFY(loaded.Load(path));
        QCOMPARE(loaded.DataSet()->MeasurementParameters()->Units(), CUnits::MICRO_TESLA);
        // Six digits are kept.
        const double reloaded = compare(loaded, kPoints, 1e-5);
        qInfo("%d points, largest deviation as part of the field: live %.2g, saved and loaded %.2g", kPoints,
              live, reloaded);
    }

    void fileOfPoints()
    {
        prepare("Simulated gantry", CTrigger::IMMEDIATE);
        CMappingParameters& mapping = *m_operation->MappingParameters();
        mapping.SetMapperSource(mapping.MapperSourceFile());
        QFile file(m_directory.filePath(QStringLiteral("points.xml")));
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write(
            "<NorvaneMappingFile ver=\"1.0\"><point><X>10</X><Roll>30</Roll></point><point><Y>-20</Y></point>"
            "<point><Z>15</Z><Yaw>180</Yaw></point></NorvaneMappingFile>");
        file.close();
        mapping.MapperSourceFile()->MappingFile()->SetFilePath(file.fileName());
        mapping.MapperSourceFile()->loadMappingFile();
        record();
        QTRY_VERIFY_WITH_TIMEOUT(!m_operation->SessionInProgress() && manager().NumBlocks() == 3, 30000);
        compare(manager(), 3, 1e-6);
        const CMeasureBlockMapping& last = *manager().DataSet()->MeasureBlocks()->back();
        QCOMPARE(placeOf(last), (Vector{10, -20, 15}));
        QCOMPARE(last.Orientation.Yaw(), 180.0);
    }

    // In TIMER mode blocks come by themselves, wherever the probe is.
    void timerModeEnds()
    {
        prepare("Simulated gantry", CTrigger::TIMER);
        parameters().SetDisplayRate(50);
        record();
        QTRY_VERIFY_WITH_TIMEOUT(!m_operation->SessionInProgress(), 30000);
        QTRY_VERIFY(manager().NumBlocks() >= 8);
        QVERIFY(!manager().IsRecording());
    }

    void aStopEndsTheSession()
    {
        writeSettings(kMapperSettings, "[Gantry]\nSpeed=1\n");
        prepare("Simulated gantry", CTrigger::IMMEDIATE);
        record();
        QTRY_COMPARE_WITH_TIMEOUT(manager().NumBlocks(), 1, 30000);
        m_operation->StopSession();
        manager().StopRecord();
        QVERIFY(!m_operation->SessionInProgress());
        const double z = m_operation->MappingParameters()->SelectedMapper()->GetPosition().Z();
        QTest::qWait(50);
        QCOMPARE(m_operation->MappingParameters()->SelectedMapper()->GetPosition().Z(), z);
        QCOMPARE(manager().NumBlocks(), 1);
    }

    // The probe has the field of the place again when no mapper holds it.
    void theFieldOfThePlaceComesBack()
    {
        writeSettings(kInstrumentSettings, kInstrument + "[Field]\nDcX=20\nDcY=0\nDcZ=0\nAcX=0\nAcY=0\n"
                                                         "AcThirdX=0\nAcThirdY=0\nAcFifthX=0\nAcFifthZ=0\n"
                                                         "RotatingAmplitude=0\n");
        prepare("Simulated gantry", CTrigger::IMMEDIATE);
        CMapperPlugin* const mapper = m_operation->MappingParameters()->SelectedMapper();
        QSignalSpy blocks(m_operation.get(), &COperationMapping::NewMeasure);
        m_operation->OnAcquire();
        QTRY_COMPARE(blocks.count(), 1);
        mapper->Start();
        m_operation->OnAcquire();
        QTRY_COMPARE(blocks.count(), 2);
        mapper->Stop();
        m_operation->OnAcquire();
        QTRY_COMPARE(blocks.count(), 3);
        const auto fieldOf = [&](int block) {
            return blocks[block][0].value<QSharedPointer<CMeasureBlockMapping>>()->Results.first()->B();
        };
        QVERIFY(std::abs(fieldOf(0) - 20.0F) < 0.01F);
        QVERIFY(std::abs(static_cast<double>(fieldOf(1)) / norm(dipole({0, 0, 0})) - 1) < 1e-6);
        QVERIFY(std::abs(fieldOf(2) - 20.0F) < 0.01F);
    }

    // Inside the magnet the field is finite and the same everywhere: two thirds of its magnetisation.
    void insideTheMagnet()
    {
        prepare("Simulated gantry", CTrigger::IMMEDIATE);
        parameters().SetAutoRange(true);
        writeSettings(kInstrumentSettings, kInstrument + "[Magnet]\nMomentX=0\nMomentY=0\nMomentZ=0.001\n");
        const auto instrument = m_operation->ActiveInstrument();
        instrument->Disconnect();
        QVERIFY(instrument->Connect());
        CMapperPositionSourceCartesian& grid = *m_operation->MappingParameters()->MapperSourceCartesian();
        setAxis(grid.X(), 5, 5, 1);
        setAxis(grid.Y(), -4, -4, 1);
        setAxis(grid.Z(), -60, -55, 2.5);
        record();
        QTRY_VERIFY_WITH_TIMEOUT(!m_operation->SessionInProgress() && manager().NumBlocks() == 3, 30000);
        for (const auto& block : *manager().DataSet()->MeasureBlocks()) {
            // 2e-7 T m / A times 0.001 A m^2 by (6 mm)^3 is 925.926 uT.
            QVERIFY(std::abs(block->Results.first()->Bz() - 925.926F) < 0.01F);
            QVERIFY(std::abs(block->Results.first()->Bx()) < 1e-6F);
        }
    }

    // The field of a block that is taken on the way lies between those at the place where it was asked for
    // and at the place where the mapper was when it came.
    void onTheFly()
    {
        writeSettings(kMapperSettings,
                      "[Mover]\nFromX=10\nToX=60\nFromY=-4\nToY=-4\nFromZ=-60\nToZ=-60\nLines=1\n"
                      "Spacing=10\nSpeed=50\n");
        writeSettings(kInstrumentSettings,
                      kInstrument + "[Magnet]\nCenterX=-100\nMomentX=0\nMomentY=0\nMomentZ=0.9\n");
        prepare("Simulated mover", CTrigger::IMMEDIATE);
        record();
        QTRY_COMPARE_WITH_TIMEOUT(manager().NumBlocks(), 6, 30000);
        QVERIFY(m_operation->SessionInProgress());
        m_operation->StopSession();
        manager().StopRecord();
        // Beside the magnet, mu0/4pi m / r^3, falling with X.
        const auto fieldAt = [](double x) { return 0.09 / std::pow((x + 100) / 1000, 3); };
        for (size_t i = 0; i < 6; ++i) {
            const CMeasureBlockMapping& block = *manager().DataSet()->MeasureBlocks()->at(i);
            const double asked = 10 + 10 * static_cast<double>(i);
            QVERIFY(block.Position.X() >= asked - 1e-6);
            for (const auto& sample : block.Results) {
                const auto field = static_cast<double>(sample->B());
                QVERIFY2(field <= fieldAt(asked) * (1 + 1e-5), QByteArray::number(field));
                QVERIFY2(field >= fieldAt(block.Position.X()) * (1 - 1e-5), QByteArray::number(field));
            }
        }
    }

private:
    CRecordingManagerMapping& manager() { return *m_operation->RecordingManager(); }
    CMeasurementParameters& parameters()
    {
        return *m_operation->OperationParameters()->MeasurementParameters();
    }

    static void setAxis(CAxisStepSeries* axis, double start, double stop, double step)
    {
        axis->SetStart(start);
        axis->SetStop(stop);
        axis->SetStepSize(step);
    }

    /// Loads the record as the application starts: the plug-ins, the instrument, the operation, the mapper.
    void prepare(const char* mapperName, CTrigger::TriggerMode mode)
    {
        for (CInstrumentPlugin* plugin : m_plugins->InstrumentPlugins()) {
            plugin->Start();
            m_supervisor->AddInstrumentListProvider(plugin->GetInstrumentListProvider());
        }
        QSharedPointer<CInstrument> instrument;
        QTRY_VERIFY(!m_supervisor->AvailableInstruments().isEmpty());
        for (const auto& candidate : m_supervisor->AvailableInstruments()) {
            if (candidate->SerialNumber() == QLatin1String("SIM-0001"))
                instrument = candidate;
        }
        QVERIFY(instrument);
        instrument->SetMeasurementParameters(&parameters());
        m_supervisor->SetActiveInstrument(instrument);
        QVERIFY(m_supervisor->HasActiveInstrument());
        m_operation->Activate();
        for (CMapperPlugin* mapper : m_operation->GetMapperPlugins()) {
            if (mapper->Name == QLatin1String(mapperName))
                m_operation->MappingParameters()->SetSelectedMapper(mapper);
        }
        QVERIFY(m_operation->MappingParameters()->SelectedMapper());
        QCOMPARE(m_operation->GetTriggerPlugins().size(), 1);
        parameters().SetAutoRange(true);
        parameters().SetTriggerPlugin(m_operation->GetTriggerPlugins().first());
        parameters().SetTriggerMode(mode);
        parameters().SetAcquisitionRate(1000);
        parameters().SetBlockSize(4);
        QCOMPARE(parameters().Units(), CUnits::MICRO_TESLA);
    }

    void record()
    {
        manager().ResetRecord();
        m_operation->StartSession();
        QVERIFY(m_operation->SessionInProgress());
    }

    /// The largest deviation of all blocks.
    static double compare(CRecordingManagerMapping& manager, int points, double tolerance)
    {
        double largest = 0;
        if (manager.DataSet()->MeasureBlocks()->size() != static_cast<size_t>(points)) {
            QTest::qFail("wrong number of blocks", __FILE__, __LINE__);
            return largest;
        }
        for (const auto& block : *manager.DataSet()->MeasureBlocks()) {
            if (block->Results.isEmpty())
                QTest::qFail("empty block", __FILE__, __LINE__);
            largest = std::max(largest, deviationOf(*block));
        }
        if (!(largest <= tolerance))
            QTest::qFail(QByteArray::number(largest).constData(), __FILE__, __LINE__);
        return largest;
    }

    QTemporaryDir m_directory;
    std::unique_ptr<CSettings> m_settings;
    std::unique_ptr<CPluginsManager> m_plugins;
    std::unique_ptr<CInstrumentSupervisor> m_supervisor;
    std::unique_ptr<COperationMapping> m_operation;
};

QTEST_MAIN(tst_SimulatedMap)
#include "tst_SimulatedMap.moc"
