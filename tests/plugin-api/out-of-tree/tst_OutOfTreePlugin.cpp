// SPDX-License-Identifier: GPL-3.0-or-later
#include "CInstrumentPlugin.h"

#include <QDirIterator>
#include <QFile>
#include <QLibrary>
#include <QSignalSpy>
#include <QtTest>

#include <memory>

class TestOutOfTreePlugin : public QObject
{
    Q_OBJECT

private slots:
    void packageNamesNoFolderOfTheBuild();
    void pluginLoadsAndMeasures();
};

void TestOutOfTreePlugin::packageNamesNoFolderOfTheBuild()
{
    int count = 0;
    QDirIterator files(QStringLiteral(PACKAGE_PATH), {QStringLiteral("*.cmake"), QStringLiteral("*.h")},
                       QDir::Files, QDirIterator::Subdirectories);
    while (files.hasNext()) {
        QFile file(files.next());
        QVERIFY(file.open(QIODevice::ReadOnly));
        const QByteArray content = file.readAll();
        QVERIFY2(!content.contains(SOURCE_PATH) && !content.contains(BUILD_PATH),
                 qPrintable(file.fileName()));
        ++count;
    }
    QVERIFY(count > 25);
}

void TestOutOfTreePlugin::pluginLoadsAndMeasures()
{
    QLibrary library(QStringLiteral(PLUGIN_PATH));
    QVERIFY2(library.load(), qPrintable(library.errorString()));
    using Factory = CInstrumentPlugin* (*)();
    const auto create = reinterpret_cast<Factory>(library.resolve("CreateInstrumentPlugin"));
    QVERIFY(create);

    const std::unique_ptr<CInstrumentPlugin> plugin(create());
    QVERIFY(plugin);
    // The library and this program share the classes of the contract, not copies of them.
    QVERIFY(qobject_cast<CPlugin*>(static_cast<QObject*>(plugin.get())));

    plugin->Start();
    CInstrumentListProvider* provider = plugin->GetInstrumentListProvider();
    QVERIFY(provider);
    QSignalSpy updated(provider, &CInstrumentListProvider::InstrumentListUpdated);
    QVERIFY(updated.wait());
    const QList<QSharedPointer<CInstrument>> instruments = provider->GetInstrumentList();
    QCOMPARE(instruments.size(), 1);
    CInstrument& instrument = *instruments.constFirst();
    QCOMPARE(provider->GetInstrumentList().constFirst().data(), &instrument);
    QCOMPARE(instrument.Name(), QStringLiteral("Example instrument"));

    QVERIFY(instrument.Connect());
    QVERIFY(instrument.IsConnected());
    QCOMPARE(instrument.UnitList(),
             (QList<CUnits::UnitType>{CUnits::MICRO_TESLA, CUnits::NANO_TESLA, CUnits::GAUSS}));

    CMeasurementParameters parameters;
    parameters.SetTriggerMode(CTrigger::CONTINUOUS);
    parameters.SetAcquisitionRate(100);
    parameters.SetDisplayRate(20);
    parameters.SetUnits(CUnits::NANO_TESLA);
    instrument.SetMeasurementParameters(&parameters);

    QVector<QSharedPointer<CMeasureBlock>> blocks;
    connect(&instrument, &CInstrument::OnNewMeasureBlock, this,
            [&blocks](const QSharedPointer<CMeasureBlock>& block) { blocks.append(block); });
    instrument.StartMeasurement();
    QVERIFY(instrument.IsRunning());
    QTRY_VERIFY(blocks.size() >= 2);
    instrument.StopMeasurement();
    QVERIFY(!instrument.IsRunning());

    const CMeasureBlock& block = *blocks.constFirst();
    QCOMPARE(block.Results.size(), 5);
    QCOMPARE(block.Results.constFirst()->Bz(), 40000.0F);
    const auto nanoseconds = [&block](int sample) {
        const CFieldIntensityResult& result = *block.Results.at(sample);
        return result.Timestamp.toSecsSinceEpoch() * 1000000000 + result.TimestampNanoseconds;
    };
    QCOMPARE(nanoseconds(4) - nanoseconds(0), 40000000);

    // It comes once more at the end of the program.
    plugin->Stop();
    plugin->Stop();
    QVERIFY(!instrument.IsConnected());
}

QTEST_GUILESS_MAIN(TestOutOfTreePlugin)
#include "tst_OutOfTreePlugin.moc"
