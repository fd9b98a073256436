// SPDX-License-Identifier: GPL-3.0-or-later
#include "CFakeInstrument.h"
#include "CInstrumentsList.h"

#include <QAbstractItemModelTester>
#include <QSignalSpy>
#include <QtTest>

class tst_CInstrumentsList : public QObject
{
    Q_OBJECT

private slots:
    void roles();
    void showsAnInstrument();
    void showsChangedValues();
    void answersNothingOutsideTheList();
    void appendsAtTheEnd();
    void clearResets();
};

void tst_CInstrumentsList::roles()
{
    const QHash<int, QByteArray> expected{{257, "DisplayLabel"}, {258, "RessourceName"}, {259, "Interface"}};
    QCOMPARE(CInstrumentsList().roleNames(), expected);
}

void tst_CInstrumentsList::showsAnInstrument()
{
    CInstrumentsList list;
    const QAbstractItemModelTester tester(&list, QAbstractItemModelTester::FailureReportingMode::QtTest);
    const auto instrument = QSharedPointer<CFakeInstrument>::create(QStringLiteral("17"));
    instrument->SetName(QStringLiteral("Probe"));
    instrument->SetRessourceName(QStringLiteral("tcp://1"));
    instrument->SetInterface(CInstrumentInterface::Ethernet);
    list.Append(instrument);

    const QModelIndex index = list.index(0);
    QCOMPARE(list.data(index, 257), QVariant(QStringLiteral("Probe - 17")));
    QCOMPARE(list.data(index, 258), QVariant(QStringLiteral("tcp://1")));
    QCOMPARE(list.data(index, 259), QVariant(3));
    QCOMPARE(list.data(index, 259).userType(), static_cast<int>(QMetaType::Int));
    for (const int role : {int(Qt::DisplayRole), int(Qt::UserRole), 260})
        QVERIFY(!list.data(index, role).isValid());
}

void tst_CInstrumentsList::showsChangedValues()
{
    CInstrumentsList list;
    const auto instrument = QSharedPointer<CFakeInstrument>::create(QStringLiteral("17"));
    list.Append(instrument);
    instrument->SetName(QStringLiteral("Other"));
    QCOMPARE(list.data(list.index(0), 257), QVariant(QStringLiteral("Other - 17")));
}

void tst_CInstrumentsList::answersNothingOutsideTheList()
{
    CInstrumentsList list;
    QVERIFY(!list.data(QModelIndex(), 257).isValid());
    list.Append(QSharedPointer<CFakeInstrument>::create(QStringLiteral("1")));
    list.Append(QSharedPointer<CFakeInstrument>::create(QStringLiteral("2")));
    const QModelIndex second = list.index(1);
    QVERIFY(list.data(second, 257).isValid());
    list.Clear();
    QVERIFY(!list.data(second, 257).isValid());
}

void tst_CInstrumentsList::appendsAtTheEnd()
{
    CInstrumentsList list;
    const QAbstractItemModelTester tester(&list, QAbstractItemModelTester::FailureReportingMode::QtTest);
    QSignalSpy inserted(&list, &QAbstractItemModel::rowsInserted);
    for (int i = 0; i < 3; ++i) {
        list.Append(QSharedPointer<CFakeInstrument>::create(QString::number(i)));
        QCOMPARE(list.rowCount(), i + 1);
        QCOMPARE(inserted.count(), i + 1);
        QCOMPARE(inserted.last().at(1).toInt(), i);
        QCOMPARE(inserted.last().at(2).toInt(), i);
    }
    QCOMPARE(list.data(list.index(2), 257), QVariant(QStringLiteral("Fake - 2")));
    QCOMPARE(list.rowCount(list.index(0)), 0);
}

void tst_CInstrumentsList::clearResets()
{
    CInstrumentsList list;
    const QAbstractItemModelTester tester(&list, QAbstractItemModelTester::FailureReportingMode::QtTest);
    const auto instrument = QSharedPointer<CFakeInstrument>::create(QStringLiteral("1"));
    list.Append(instrument);
    QSignalSpy reset(&list, &QAbstractItemModel::modelReset);
    list.Clear();
    QCOMPARE(reset.count(), 1);
    QCOMPARE(list.rowCount(), 0);
}

QTEST_GUILESS_MAIN(tst_CInstrumentsList)

#include "tst_CInstrumentsList.moc"
