// SPDX-License-Identifier: GPL-3.0-or-later
#include "COperationParameters.h"
#include "MetaObjectTable.h"

#include <QSignalSpy>
#include <QtTest>

using namespace MetaObjectTable;

/// The parameter groups of an operation, except those with a test of their own.
class tst_OperationParameters : public QObject
{
    Q_OBJECT

private slots:
    void groups();
    void groupsAreMembers();
    void limits();
    void assigningTheLimitsPathAlwaysEmits();
    void alarmSurfaces();
    void alarmInitialValues();
    void alarmSetters_data();
    void alarmSetters();
};

void tst_OperationParameters::groups()
{
    VERIFY_NO_DIFFERENCE(
        compareProperties(COperationParameters::staticMetaObject,
                          {
                              {"MeasurementParameters", "CMeasurementParameters*", Constant},
                              {"MappingParameters", "CMappingParameters*", Constant},
                              {"LimitsParameters", "CLimitsParameters*", Constant},
                              {"ReplayParameters", "CReplayParameters*", Constant},
                              {"AlarmParametersMeter", "CAlarmParametersMeter*", Constant},
                              {"AlarmParametersSpectrum", "CAlarmParametersSpectrum*", Constant},
                              {"AlarmParametersAcAnalysis", "CAlarmParametersAcAnalysis*", Constant},
                              {"AlarmParametersMapping", "CAlarmParametersMapping*", Constant},
                          }));
}

void tst_OperationParameters::groupsAreMembers()
{
    COperationParameters first;
    COperationParameters second;
    const QMetaObject& meta = COperationParameters::staticMetaObject;
    for (int i = meta.propertyOffset(); i < meta.propertyCount(); ++i) {
        QObject* group = meta.property(i).read(&first).value<QObject*>();
        QVERIFY(group);
        QCOMPARE(meta.property(i).read(&first).value<QObject*>(), group);
        QVERIFY(meta.property(i).read(&second).value<QObject*>() != group);
    }
}

void tst_OperationParameters::limits()
{
    VERIFY_NO_DIFFERENCE(
        compareProperties(CLimitsParameters::staticMetaObject, {{"LimitsFilePath", "QString", ReadWrite},
                                                                {"LimitsFileName", "QString", ReadWrite}}));
    CLimitsParameters limits;
    QVERIFY(limits.LimitsFilePath().isEmpty());
    QVERIFY(limits.LimitsFileName().isEmpty());
    QSignalSpy pathSpy(&limits, &CLimitsParameters::LimitsFilePathChanged);
    QSignalSpy nameSpy(&limits, &CLimitsParameters::LimitsFileNameChanged);
    for (int i = 0; i < 2; ++i) {
        limits.SetLimitsFilePath(QStringLiteral("/a"));
        limits.SetLimitsFileName(QStringLiteral("b"));
    }
    QCOMPARE(pathSpy.count(), 1);
    QCOMPARE(pathSpy.first().first().toString(), QStringLiteral("/a"));
    QCOMPARE(nameSpy.count(), 1);
    QCOMPARE(nameSpy.first().first().toString(), QStringLiteral("b"));
}

void tst_OperationParameters::assigningTheLimitsPathAlwaysEmits()
{
    CLimitsParameters limits;
    QSignalSpy pathSpy(&limits, &CLimitsParameters::LimitsFilePathChanged);
    limits.AssignLimitsFilePath(QString());
    limits.AssignLimitsFilePath(QStringLiteral("/a"));
    limits.AssignLimitsFilePath(QStringLiteral("/a"));
    QCOMPARE(pathSpy.count(), 3);
    QCOMPARE(limits.LimitsFilePath(), QStringLiteral("/a"));
}

void tst_OperationParameters::alarmSurfaces()
{
    const QVector<Property> bounded{
        {"State", "CAlarm::AlarmState", ReadWrite},
        {"Axis", "CAxis::AxisType", ReadWrite},
        {"Minimum", "double", ReadWrite},
        {"Maximum", "double", ReadWrite},
        {"DisplayAlarmUnits", "CUnits::UnitType", ReadWrite},
    };
    VERIFY_NO_DIFFERENCE(compareProperties(CAlarmParametersMeter::staticMetaObject, bounded));
    VERIFY_NO_DIFFERENCE(compareProperties(CAlarmParametersMapping::staticMetaObject, bounded));
    VERIFY_NO_DIFFERENCE(compareProperties(CAlarmParametersSpectrum::staticMetaObject, bounded.mid(0, 1)));
    VERIFY_NO_DIFFERENCE(compareProperties(CAlarmParametersAcAnalysis::staticMetaObject, bounded.mid(0, 2)));
}

void tst_OperationParameters::alarmInitialValues()
{
    COperationParameters parameters;
    for (const QObject* alarm : std::initializer_list<QObject*>{
             parameters.AlarmParametersMeter(), parameters.AlarmParametersSpectrum(),
             parameters.AlarmParametersAcAnalysis(), parameters.AlarmParametersMapping()}) {
        QCOMPARE(alarm->property("State").toInt(), 1);
        if (alarm->metaObject()->indexOfProperty("Axis") >= 0)
            QCOMPARE(alarm->property("Axis").toInt(), 1);
        if (alarm->metaObject()->indexOfProperty("Minimum") >= 0) {
            QCOMPARE(alarm->property("Minimum").toDouble(), 0.0);
            QCOMPARE(alarm->property("Maximum").toDouble(), 0.0);
            QCOMPARE(alarm->property("DisplayAlarmUnits").toInt(), 1);
        }
    }
}

void tst_OperationParameters::alarmSetters_data()
{
    QTest::addColumn<QByteArray>("group");
    QTest::addColumn<QByteArray>("property");
    QTest::addColumn<QVariant>("value");
    QTest::addColumn<int>("numEmitted");
    for (const char* group : {"AlarmParametersMeter", "AlarmParametersMapping"}) {
        for (const char* bound : {"Minimum", "Maximum"})
            QTest::addRow("%s %s", group, bound)
                << QByteArray(group) << QByteArray(bound) << QVariant(2.5) << 1;
        QTest::addRow("%s units", group) << QByteArray(group) << QByteArray("DisplayAlarmUnits")
                                         << QVariant::fromValue(CUnits::GAUSS) << 3;
    }
    for (const char* group : {"AlarmParametersMeter", "AlarmParametersMapping", "AlarmParametersAcAnalysis"})
        QTest::addRow("%s axis", group)
            << QByteArray(group) << QByteArray("Axis") << QVariant::fromValue(CAxis::By) << 1;
    for (const char* group : {"AlarmParametersMeter", "AlarmParametersMapping", "AlarmParametersAcAnalysis",
                              "AlarmParametersSpectrum"})
        QTest::addRow("%s state", group)
            << QByteArray(group) << QByteArray("State") << QVariant::fromValue(CAlarm::Audio) << 1;
}

void tst_OperationParameters::alarmSetters()
{
    QFETCH(const QByteArray, group);
    QFETCH(const QByteArray, property);
    QFETCH(const QVariant, value);
    QFETCH(const int, numEmitted);
    COperationParameters parameters;
    QObject* alarm = parameters.property(group.constData()).value<QObject*>();
    const int index = alarm->metaObject()->indexOfProperty(property.constData());
    QSignalSpy spy(alarm, alarm->metaObject()->property(index).notifySignal());
    for (int i = 0; i < 3; ++i)
        QVERIFY(alarm->setProperty(property.constData(), value));
    QCOMPARE(spy.count(), numEmitted);
    QCOMPARE(alarm->property(property.constData()), value);
    QCOMPARE(spy.first().first(), value);
}

QTEST_GUILESS_MAIN(tst_OperationParameters)

#include "tst_OperationParameters.moc"
