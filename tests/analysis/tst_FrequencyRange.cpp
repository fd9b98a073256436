// SPDX-License-Identifier: GPL-3.0-or-later
#include "FrequencyRange.h"
#include "MetaObjectTable.h"

#include <QSignalSpy>
#include <QtTest>

class tst_FrequencyRange : public QObject
{
    Q_OBJECT

private slots:
    void surface();
    void initialValues();
    void emitsOnChange();
};

void tst_FrequencyRange::surface()
{
    using namespace MetaObjectTable;
    VERIFY_NO_DIFFERENCE(compareProperties(FrequencyRange::staticMetaObject,
                                           {
                                               {"UpperFrequencyLimitValue", "double", ReadWrite},
                                               {"UpperFrequencyLimitUnit", "CUnits::UnitType", ReadWrite},
                                               {"ExposureLimitValue", "double", ReadWrite},
                                               {"ExposureLimitUnit", "CUnits::UnitType", ReadWrite},
                                           }));
}

void tst_FrequencyRange::initialValues()
{
    const FrequencyRange range;
    QCOMPARE(range.UpperFrequencyLimitValue(), 0.0);
    QCOMPARE(range.UpperFrequencyLimitUnit(), CUnits::UNKNOWN);
    QCOMPARE(range.ExposureLimitValue(), 0.0);
    QCOMPARE(range.ExposureLimitUnit(), CUnits::UNKNOWN);
}

void tst_FrequencyRange::emitsOnChange()
{
    FrequencyRange range;
    QSignalSpy frequency(&range, &FrequencyRange::UpperFrequencyLimitValueChanged);
    QSignalSpy frequencyUnit(&range, &FrequencyRange::UpperFrequencyLimitUnitChanged);
    QSignalSpy exposure(&range, &FrequencyRange::ExposureLimitValueChanged);
    QSignalSpy exposureUnit(&range, &FrequencyRange::ExposureLimitUnitChanged);
    for (int i = 0; i < 2; ++i) {
        range.SetUpperFrequencyLimitValue(50);
        range.SetUpperFrequencyLimitUnit(CUnits::HZ);
        range.SetExposureLimitValue(0.25);
        range.SetExposureLimitUnit(CUnits::GAUSS);
    }
    QCOMPARE(frequency.count(), 1);
    QCOMPARE(frequency.first().first().toDouble(), 50.0);
    QCOMPARE(frequencyUnit.count(), 1);
    QCOMPARE(exposure.count(), 1);
    QCOMPARE(exposure.first().first().toDouble(), 0.25);
    QCOMPARE(exposureUnit.count(), 1);
    QCOMPARE(range.UpperFrequencyLimitUnit(), CUnits::HZ);
    QCOMPARE(range.ExposureLimitUnit(), CUnits::GAUSS);
}

QTEST_GUILESS_MAIN(tst_FrequencyRange)

#include "tst_FrequencyRange.moc"
