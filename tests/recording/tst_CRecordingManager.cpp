// SPDX-License-Identifier: GPL-3.0-or-later
#include "CRecordingManagerMapping.h"
#include "CRecordingManagerMeasure.h"
#include "CSettings.h"
#include "MetaObjectTable.h"
#include "RecordTestSupport.h"

#include <QFile>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QtTest>

using namespace RecordTestSupport;

class tst_CRecordingManager : public QObject
{
    Q_OBJECT

private slots:
    void surface()
    {
        using namespace MetaObjectTable;
        VERIFY_NO_DIFFERENCE(compareProperties(CRecordingManager::staticMetaObject,
                                               {{"XMLResultsSerializer", "CXMLResultsSerializer*", ReadOnly},
                                                {"CSVResultsSerializer", "CCSVResultsSerializer*", ReadOnly},
                                                {"ReplayIndex", "int", ReadWrite},
                                                {"NextReplayIndex", "int", ReadWrite},
                                                {"StartReplayIndex", "int", ReadWrite},
                                                {"EndReplayIndex", "int", ReadWrite},
                                                {"NumBlocks", "int", ReadWrite},
                                                {"TimeWarp", "double", ReadWrite},
                                                {"ReplayBlockDelayMillisecond", "int", ReadWrite},
                                                {"ReplayStepByStep", "bool", ReadWrite},
                                                {"IsHolding", "bool", ReadWrite},
                                                {"HasUnsavedData", "bool", ReadWrite},
                                                {"IsPlayingBack", "bool", ReadWrite},
                                                {"IsDataLoaded", "bool", ReadWrite},
                                                {"IsRecording", "bool", ReadWrite},
                                                {"IsIdle", "bool", ReadWrite},
                                                {"IsIdleWithData", "bool", ReadWrite},
                                                {"IsDataSetEmpty", "bool", ReadWrite},
                                                {"IsOperationMeasure", "bool", ReadWrite},
                                                {"IsProcessingBlock", "bool", ReadWrite},
                                                {"MeasComment", "QString", ReadWrite},
                                                {"BodyComment", "QString", ReadWrite}}));
        VERIFY_NO_DIFFERENCE(
            compareMethods(CRecordingManager::staticMetaObject, QMetaMethod::Slot,
                           {"StartReplay()", "PauseReplay()", "StopReplay()", "PlayNextStep()",
                            "ResetRecord()", "StopRecord()", "Save(QString)", "Load(QString)",
                            "AddMeasureBlock(QSharedPointer<CMeasureBlock>)", "OnBlockProcessed()",
                            "playCurrentBlock(int)"}));
        VERIFY_NO_DIFFERENCE(compareProperties(CRecordingManagerMeasure::staticMetaObject,
                                               {{"DataSet", "CDataSetMeasurement*", Constant},
                                                {"MinReplaySmallBlockDelayMillisecond", "int", ReadWrite}}));
        VERIFY_NO_DIFFERENCE(compareMethods(CRecordingManagerMeasure::staticMetaObject, QMetaMethod::Signal,
                                            {"MinReplaySmallBlockDelayMillisecondChanged(int)",
                                             "ReplayMeasureBlock(QSharedPointer<CMeasureBlock>)"}));
        VERIFY_NO_DIFFERENCE(compareProperties(CRecordingManagerMapping::staticMetaObject,
                                               {{"DataSet", "CDataSetMapping*", Constant}}));
        VERIFY_NO_DIFFERENCE(compareMethods(CRecordingManagerMapping::staticMetaObject, QMetaMethod::Signal,
                                            {"ReplayMeasureBlock(QSharedPointer<CMeasureBlockMapping>)"}));
        for (const char* slot : {"OnDataSetCleared()", "OnBodyCommentChanged()"}) {
            QVERIFY(CRecordingManagerMeasure::staticMetaObject.indexOfSlot(slot) >= 0);
            QVERIFY(CRecordingManagerMapping::staticMetaObject.indexOfSlot(slot) >= 0);
        }
        QVERIFY(CRecordingManagerMeasure::staticMetaObject.indexOfSlot("OnIsHoldingChanged(bool)") >= 0);
        QVERIFY(CRecordingManagerMeasure::staticMetaObject.indexOfSlot("l_OnStopReplayTimerTimeout()") >= 0);
    }

    void initialValues()
    {
        CRecordingManagerMeasure manager(m_settings);
        QVERIFY(manager.XMLResultsSerializer() && manager.CSVResultsSerializer());
        QCOMPARE(manager.ReplayIndex(), 0);
        QCOMPARE(manager.NextReplayIndex(), 0);
        QCOMPARE(manager.StartReplayIndex(), 0);
        QCOMPARE(manager.EndReplayIndex(), 0);
        QCOMPARE(manager.NumBlocks(), 0);
        QCOMPARE(manager.TimeWarp(), 1.0);
        QCOMPARE(manager.ReplayBlockDelayMillisecond(), 1000);
        QVERIFY(!manager.ReplayStepByStep());
        QVERIFY(manager.IsHolding());
        QVERIFY(!manager.HasUnsavedData());
        QVERIFY(!manager.IsPlayingBack());
        QVERIFY(!manager.IsDataLoaded());
        QVERIFY(!manager.IsRecording());
        QVERIFY(manager.IsIdle());
        QVERIFY(!manager.IsIdleWithData());
        QVERIFY(manager.IsDataSetEmpty());
        QVERIFY(manager.IsOperationMeasure());
        QVERIFY(!manager.IsProcessingBlock());
        QVERIFY(manager.MeasComment().isEmpty() && manager.BodyComment().isEmpty());
        QCOMPARE(manager.MinReplaySmallBlockDelayMillisecond(), 100);
        QVERIFY(!CRecordingManagerMapping(m_settings).IsOperationMeasure());
    }

    void settersEmitOnChangeButIsRecordingAlways()
    {
        CRecordingManagerMeasure manager(m_settings);
        const QMetaObject* meta = manager.metaObject();
        for (int i = QObject::staticMetaObject.propertyCount(); i < meta->propertyCount(); ++i) {
            const QMetaProperty property = meta->property(i);
            if (!property.isWritable())
                continue;
            QVariant other;
            if (property.type() == QVariant::Bool)
                other = !property.read(&manager).toBool();
            else if (property.type() == QVariant::String)
                other = QStringLiteral("text");
            else
                other = 7;
            other.convert(property.userType());
            QSignalSpy spy(&manager, property.notifySignal());
            QVERIFY(property.write(&manager, other));
            QVERIFY(property.write(&manager, other));
            const bool isRecording = qstrcmp(property.name(), "IsRecording") == 0;
            QVERIFY2(spy.count() == (isRecording ? 2 : 1), property.name());
            QCOMPARE(spy[0][0], other);
        }
    }

    void addKeepsBlocksAndCounts()
    {
        CRecordingManagerMeasure manager(m_settings);
        QSignalSpy index(&manager, &CRecordingManager::ReplayIndexChanged);
        const auto first = blockOf(2);
        manager.AddMeasureBlock(first);
        QVERIFY(!manager.HasUnsavedData()); // no record is running
        QVERIFY(!manager.IsDataSetEmpty());
        QCOMPARE(manager.NumBlocks(), 1);
        QCOMPARE(manager.ReplayIndex(), 0);
        QCOMPARE(index.count(), 0);
        QCOMPARE(manager.DataSet()->MeasureBlocks()->front(), first);
        manager.SetIsRecording(true);
        manager.AddMeasureBlock(blockOf(2));
        QVERIFY(manager.HasUnsavedData());
        QCOMPARE(manager.NumBlocks(), 2);
        QCOMPARE(manager.ReplayIndex(), 1);
        QCOMPARE(index.count(), 1);
        manager.AddMeasureBlock(nullptr);
        QCOMPARE(manager.NumBlocks(), 2);
    }

    void addPutsTheCommentInFront()
    {
        CRecordingManagerMeasure manager(m_settings);
        const auto block = blockOf(1);
        block->SetComment(QStringLiteral("own"));
        QSignalSpy changed(block.data(), &CMeasureBlock::CommentChanged);
        manager.AddMeasureBlock(block);
        QCOMPARE(changed.count(), 0);
        manager.SetMeasComment(QStringLiteral("pre "));
        manager.AddMeasureBlock(block);
        QCOMPARE(block->Comment(), QStringLiteral("pre own"));
        QCOMPARE(changed.count(), 1);
    }

    void addFollowsTheLimit()
    {
        m_settings.SetMeasurementMaxMeasurementCount(4);
        CRecordingManagerMeasure manager(m_settings);
        for (int i = 0; i < 5; ++i)
            manager.AddMeasureBlock(blockOf(2));
        m_settings.SetMeasurementMaxMeasurementCount(120000);
        QCOMPARE(manager.NumBlocks(), 2);
        QCOMPARE(manager.ReplayIndex(), 1);
    }

    void mappingTakesMappingBlocksOnly()
    {
        CRecordingManagerMapping manager(m_settings);
        manager.AddMeasureBlock(blockOf(1));
        manager.AddMeasureBlock(nullptr);
        QCOMPARE(manager.NumBlocks(), 0);
        manager.AddMeasureBlock(blockOf<CMeasureBlockMapping>(1));
        QCOMPARE(manager.NumBlocks(), 1);
    }

    void record()
    {
        CRecordingManagerMeasure manager(m_settings);
        manager.AddMeasureBlock(blockOf(1));
        manager.SetBodyComment(QStringLiteral("body"));
        QCOMPARE(manager.DataSet()->Comment(), QStringLiteral("body"));
        manager.SetIsDataLoaded(true);
        manager.SetHasUnsavedData(true);
        manager.SetIsPlayingBack(true);
        manager.SetEndReplayIndex(3);
        QSignalSpy recording(&manager, &CRecordingManager::IsRecordingChanged);
        manager.ResetRecord();
        QVERIFY(!manager.IsDataLoaded() && !manager.HasUnsavedData() && !manager.IsPlayingBack());
        QVERIFY(manager.IsRecording() && manager.IsDataSetEmpty());
        QCOMPARE(manager.NumBlocks(), 0);
        QCOMPARE(manager.EndReplayIndex(), 0);
        QVERIFY(manager.DataSet()->Comment().isEmpty()); // the clear comes behind the copy
        manager.ResetRecord();
        QCOMPARE(recording.count(), 2);

        manager.AddMeasureBlock(blockOf(1));
        manager.SetNextReplayIndex(1);
        manager.StopRecord();
        QVERIFY(!manager.IsRecording() && manager.IsIdleWithData() && manager.HasUnsavedData());
        QCOMPARE(manager.NextReplayIndex(), 0);
        manager.SetBodyComment(QStringLiteral("later"));
        QCOMPARE(manager.DataSet()->Comment(), QStringLiteral("later"));
    }

    void resetRecordCopiesTheCommentFirst()
    {
        CRecordingManagerMeasure manager(m_settings);
        manager.SetBodyComment(QStringLiteral("body"));
        manager.DataSet()->SetComment(QStringLiteral("other"));
        QSignalSpy comment(manager.DataSet(), &CDataset::CommentChanged);
        manager.ResetRecord();
        QCOMPARE(comment.count(), 2);
        QCOMPARE(comment[0][0].toString(), QStringLiteral("body"));
        QCOMPARE(comment[1][0].toString(), QString());
    }

    void stopRecordWithoutBlocks()
    {
        CRecordingManagerMeasure manager(m_settings);
        manager.ResetRecord();
        manager.SetIsIdleWithData(true);
        manager.StopRecord();
        QVERIFY(!manager.IsIdleWithData());
    }

    void clearedDataset()
    {
        CRecordingManagerMeasure measure(m_settings);
        CRecordingManagerMapping mapping(m_settings);
        const auto prepare = [](CRecordingManager& manager) {
            manager.SetNumBlocks(9);
            manager.SetReplayIndex(3);
            manager.SetNextReplayIndex(4);
            manager.SetStartReplayIndex(1);
            manager.SetEndReplayIndex(5);
            manager.SetHasUnsavedData(true);
            manager.SetIsDataSetEmpty(false);
            manager.SetIsProcessingBlock(true);
        };
        prepare(measure);
        prepare(mapping);
        QSignalSpy processing(&measure, &CRecordingManager::IsProcessingBlockChanged);
        QSignalSpy index(&measure, &CRecordingManager::ReplayIndexChanged);
        measure.DataSet()->Clear();
        mapping.DataSet()->Clear();
        for (const CRecordingManager* manager :
             {static_cast<CRecordingManager*>(&measure), static_cast<CRecordingManager*>(&mapping)}) {
            QVERIFY(manager->IsDataSetEmpty() && !manager->IsProcessingBlock());
            QCOMPARE(manager->NumBlocks() + manager->ReplayIndex() + manager->NextReplayIndex() +
                         manager->StartReplayIndex() + manager->EndReplayIndex(),
                     0);
        }
        QVERIFY(measure.HasUnsavedData());
        QVERIFY(!mapping.HasUnsavedData());
        QCOMPARE(processing.count(), 0);
        QCOMPARE(index.count(), 1);
        measure.DataSet()->Clear();
        QCOMPARE(index.count(), 1);
    }

    void saveAndItsLog()
    {
        CRecordingManagerMeasure manager(m_settings);
        manager.SetIsRecording(true);
        manager.AddMeasureBlock(blockOf(1));
        const QString path = m_directory.filePath(QStringLiteral("a.qdr.xml"));
        QTest::ignoreMessage(QtInfoMsg, qPrintable(QStringLiteral("Data saved in file ") + path));
        manager.Save(path);
        QVERIFY(!manager.HasUnsavedData());
        QCOMPARE(manager.DataSet()->FilePath(), QStringLiteral("a.qdr.xml"));
        QVERIFY(!QFile::exists(m_directory.filePath(QStringLiteral("a.qdr.csv"))));
    }

    void saveTellsTheFileNameEachTime()
    {
        CRecordingManagerMeasure manager(m_settings);
        manager.AddMeasureBlock(blockOf(1));
        QSignalSpy path(manager.DataSet(), &CDataset::FilePathChanged);
        for (int i = 0; i < 2; ++i)
            manager.Save(m_directory.filePath(QStringLiteral("again.qdr.xml")));
        QCOMPARE(path.count(), 2);
        QCOMPARE(path[1][0].toString(), QStringLiteral("again.qdr.xml"));
    }

    void saveReplacesAnOldFileWhole()
    {
        const QString path = m_directory.filePath(QStringLiteral("old.qdr.xml"));
        QFile file(path);
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write(QByteArray(100000, 'x'));
        file.close();
        CRecordingManagerMeasure manager(m_settings);
        manager.AddMeasureBlock(blockOf(1));
        manager.Save(path);
        QVERIFY(manager.Load(path));
        QVERIFY(QFileInfo(path).size() < 10000);
    }

    void saveToNoPathDoesNothing()
    {
        CRecordingManagerMeasure manager(m_settings);
        manager.SetHasUnsavedData(true);
        QSignalSpy path(manager.DataSet(), &CDataset::FilePathChanged);
        manager.Save(QString());
        QVERIFY(manager.HasUnsavedData());
        QCOMPARE(path.count(), 0);
    }

    void saveOfNothing()
    {
        CRecordingManagerMeasure manager(m_settings);
        const QString path = m_directory.filePath(QStringLiteral("empty.xml"));
        QTest::ignoreMessage(QtWarningMsg, qPrintable(QStringLiteral("Error while saving file ") + path));
        manager.Save(path);
        QVERIFY(manager.HasUnsavedData());
        QVERIFY(QFile::exists(path));
        QCOMPARE(QFileInfo(path).size(), qint64(0));
    }

    void saveToAFullDisk()
    {
        const QString path = QStringLiteral("/dev/full");
        if (!QFile::exists(path))
            QSKIP("this system has no /dev/full");
        CRecordingManagerMeasure manager(m_settings);
        manager.SetIsRecording(true);
        manager.AddMeasureBlock(blockOf(1));
        QTest::ignoreMessage(QtWarningMsg, "Error while saving file /dev/full");
        manager.Save(path);
        QVERIFY(manager.HasUnsavedData());
    }

    void saveToAnImpossiblePath()
    {
        CRecordingManagerMeasure manager(m_settings);
        manager.AddMeasureBlock(blockOf(1));
        manager.SetHasUnsavedData(true);
        const QString path = m_directory.filePath(QStringLiteral("no/such/folder/a.qdr.xml"));
        QTest::ignoreMessage(QtDebugMsg, qPrintable(QStringLiteral("Error: Cannot create file : ") + path));
        manager.Save(path);
        QVERIFY(manager.HasUnsavedData());
        QVERIFY(manager.DataSet()->FilePath().isEmpty());
    }

    void sideFile()
    {
        m_settings.SetSaveRecordingsAsCsv(true);
        CRecordingManagerMeasure manager(m_settings);
        manager.SetIsRecording(true);
        manager.AddMeasureBlock(blockOf(3));
        manager.Save(m_directory.filePath(QStringLiteral("s.qdr.xml")));
        QVERIFY(!manager.HasUnsavedData());
        QFile file(m_directory.filePath(QStringLiteral("s.qdr.csv")));
        QVERIFY(file.open(QIODevice::ReadOnly));
        QCOMPARE(file.readAll().count('\n'), 11 + 1 + 3 + 1);
    }

    void sideFileOfAMapping()
    {
        m_settings.SetSaveRecordingsAsCsv(true);
        CRecordingManagerMapping manager(m_settings);
        manager.SetIsRecording(true);
        manager.AddMeasureBlock(blockOf<CMeasureBlockMapping>(3));
        manager.AddMeasureBlock(blockOf<CMeasureBlockMapping>(2));
        manager.Save(m_directory.filePath(QStringLiteral("m.qdr.xml")));
        QVERIFY(!manager.HasUnsavedData());
        QVERIFY(QFileInfo::exists(m_directory.filePath(QStringLiteral("m.qdr.xml"))));
        QFile file(m_directory.filePath(QStringLiteral("m.qdr.csv")));
        QVERIFY(file.open(QIODevice::ReadOnly));
        const QByteArray text = file.readAll();
        QVERIFY(text.contains("\nDescription;Magnetic Field Mapping File, Norvane\n"));
        QCOMPARE(text.count("\nPosition (x y z);0;0;0\nOrientation (roll pitch yaw);0;0;0\nTimestamp;"), 2);
        // Of each block three lines in front of its rows and an empty one behind.
        QCOMPARE(text.count('\n'), 11 + (3 + 3 + 1) + (3 + 2 + 1));
    }

    void sideFileAloneDecidesWhenTheRecordCannotBeOpened()
    {
        m_settings.SetSaveRecordingsAsCsv(true);
        // A folder stands where the record should be, the side file's place is free.
        const QString path = m_directory.filePath(QStringLiteral("taken.xml"));
        QVERIFY(QDir().mkpath(path));
        CRecordingManagerMeasure manager(m_settings);
        manager.SetIsRecording(true);
        manager.AddMeasureBlock(blockOf(1));
        QTest::ignoreMessage(QtDebugMsg, qPrintable(QStringLiteral("Error: Cannot create file : ") + path));
        manager.Save(path);
        QVERIFY(!manager.HasUnsavedData());
        QVERIFY(QFileInfo(m_directory.filePath(QStringLiteral("taken.csv"))).size() > 0);
    }

    void sideFileThatCannotBeOpenedIsLoggedUnderTheRecordsPath()
    {
        m_settings.SetSaveRecordingsAsCsv(true);
        const QString path = m_directory.filePath(QStringLiteral("blocked.xml"));
        QVERIFY(QDir().mkpath(m_directory.filePath(QStringLiteral("blocked.csv"))));
        CRecordingManagerMeasure manager(m_settings);
        manager.AddMeasureBlock(blockOf(1));
        manager.SetHasUnsavedData(true);
        QTest::ignoreMessage(QtInfoMsg, qPrintable(QStringLiteral("Data saved in file ") + path));
        QTest::ignoreMessage(QtDebugMsg, qPrintable(QStringLiteral("Error: Cannot create file : ") + path));
        manager.Save(path);
        QVERIFY(!manager.HasUnsavedData());
    }

    void sideFileOfNothingIsEmpty()
    {
        m_settings.SetSaveRecordingsAsCsv(true);
        CRecordingManagerMeasure manager(m_settings);
        manager.Save(m_directory.filePath(QStringLiteral("nothing.qdr.xml")));
        QVERIFY(manager.HasUnsavedData());
        QCOMPARE(QFileInfo(m_directory.filePath(QStringLiteral("nothing.qdr.csv"))).size(), qint64(0));
    }

    void sideFileDecidesAlsoOverAFailedRecord()
    {
        if (!QFile::exists(QStringLiteral("/dev/full")))
            QSKIP("this system has no /dev/full");
        m_settings.SetSaveRecordingsAsCsv(true);
        const QString path = m_directory.filePath(QStringLiteral("full.xml"));
        QVERIFY(QFile::link(QStringLiteral("/dev/full"), path));
        CRecordingManagerMeasure manager(m_settings);
        manager.SetIsRecording(true);
        manager.AddMeasureBlock(blockOf(1));
        QSignalSpy unsaved(&manager, &CRecordingManager::HasUnsavedDataChanged);
        QTest::ignoreMessage(QtWarningMsg, qPrintable(QStringLiteral("Error while saving file ") + path));
        manager.Save(path);
        QCOMPARE(unsaved.count(), 1);
        QVERIFY(!manager.HasUnsavedData());
    }

    void load()
    {
        const QString path = writeFile(
            "l.qdr.xml", RecordTestSupport::record(measurementsWithFlux("2024.03.01T10:11:12.5;1")));
        CRecordingManagerMeasure manager(m_settings);
        manager.AddMeasureBlock(blockOf(1));
        manager.AddMeasureBlock(blockOf(1));
        QSignalSpy cleared(manager.DataSet(), &CDataset::ClearedChanged);
        QVERIFY(manager.Load(path));
        QCOMPARE(cleared.count(), 1);
        QCOMPARE(manager.NumBlocks(), 1);
        QCOMPARE(manager.ReplayIndex(), 0);
        QVERIFY(manager.HasUnsavedData() && manager.IsIdleWithData() && manager.IsDataLoaded() &&
                !manager.IsDataSetEmpty());
        QCOMPARE(manager.DataSet()->FilePath(), QStringLiteral("l.qdr.xml"));
    }

    void loadOfAnEmptyRecord()
    {
        const QString path = writeFile("e.xml", RecordTestSupport::record(""));
        CRecordingManagerMeasure manager(m_settings);
        manager.AddMeasureBlock(blockOf(1));
        manager.SetHasUnsavedData(true);
        manager.SetIsIdleWithData(true);
        QVERIFY(manager.Load(path));
        QVERIFY(manager.IsDataSetEmpty() && manager.IsDataLoaded() && !manager.HasUnsavedData() &&
                !manager.IsIdleWithData());
    }

    void loadThatFailsInTheMiddle()
    {
        const QString path = writeFile(
            "m.xml",
            RecordTestSupport::record("<measurements><position>1;2;3</position></measurements><measurements>"
                                      "<position>1</position></measurements>",
                                      "1.2", "MAPPING"));
        CRecordingManagerMapping manager(m_settings);
        QVERIFY(!manager.Load(path));
        QCOMPARE(manager.NumBlocks(), 2);
        QVERIFY(manager.HasUnsavedData() && manager.IsIdleWithData() && manager.IsDataLoaded() &&
                !manager.IsDataSetEmpty());
    }

    void loadOfWhatIsNoRecord()
    {
        const QString path = writeFile("n.xml", "<other/>");
        CRecordingManagerMeasure manager(m_settings);
        manager.AddMeasureBlock(blockOf(1));
        QVERIFY(!manager.Load(path));
        QVERIFY(manager.IsDataLoaded() && manager.IsDataSetEmpty() && !manager.HasUnsavedData());
        QCOMPARE(manager.XMLResultsSerializer()->ErrorMessage(),
                 QStringLiteral("The file is not a valid Norvane XML measurement file"));
    }

    void loadOfNoFileChangesNothing()
    {
        CRecordingManagerMeasure manager(m_settings);
        manager.SetIsRecording(true);
        manager.AddMeasureBlock(blockOf(1));
        const QString path = m_directory.filePath(QStringLiteral("missing.xml"));
        QTest::ignoreMessage(QtDebugMsg, qPrintable(QStringLiteral("Error: Cannot open file : ") + path));
        QVERIFY(!manager.Load(path));
        QVERIFY(manager.HasUnsavedData() && !manager.IsDataLoaded());
        QCOMPARE(manager.NumBlocks(), 1);
    }

    void loadIsNotTrimmedByTheLimitUntilTheNextBlock()
    {
        const QString path =
            writeFile("t.xml", RecordTestSupport::record(measurementsWithFlux("2024.03.01T10:11:12.5;1") +
                                                         measurementsWithFlux("2024.03.01T10:11:12.5;1")));
        m_settings.SetMeasurementMaxMeasurementCount(1);
        CRecordingManagerMeasure manager(m_settings);
        const bool isRead = manager.Load(path);
        const int loaded = manager.NumBlocks();
        manager.AddMeasureBlock(blockOf(1));
        m_settings.SetMeasurementMaxMeasurementCount(120000);
        QVERIFY(isRead);
        QCOMPARE(loaded, 2);
        QCOMPARE(manager.NumBlocks(), 1);
    }

    void loadOfAMapIsNotTrimmedByTheLimitUntilTheNextBlock()
    {
        const QByteArray block = "<measurements><flux>2024.03.01T10:11:12.5;1\n2024.03.01T10:11:13.5;1</flux>"
                                 "</measurements>";
        const QString path =
            writeFile("map.xml", RecordTestSupport::record("<parameters>" + QByteArray("x=0 ").repeated(10) +
                                                               "BlockSize=2</parameters>" + block.repeated(3),
                                                           "1.2", "MAPPING"));
        // Two samples, which is one block.
        m_settings.SetMappingMaxMeasurementCount(2);
        CRecordingManagerMapping manager(m_settings);
        QVERIFY(manager.Load(path));
        QCOMPARE(manager.NumBlocks(), 3);
        QCOMPARE(manager.DataSet()->MeasureBlocks()->size(), std::size_t(3));
        manager.AddMeasureBlock(blockOf<CMeasureBlockMapping>(2));
        QCOMPARE(manager.NumBlocks(), 1);
    }

    void loadsKeepTheLiveParametersApart()
    {
        const QString path =
            writeFile("p.xml", RecordTestSupport::record("<parameters>Units=G Range=1</parameters>"));
        CMeasurementParameters live;
        live.SetUnits(CUnits::NANO_TESLA);
        CRecordingManagerMeasure manager(m_settings);
        manager.DataSet()->SetMeasurementParameters(&live);
        QVERIFY(manager.Load(path));
        QVERIFY(manager.DataSet()->MeasurementParameters() != &live);
        QCOMPARE(manager.DataSet()->MeasurementParameters()->Units(), CUnits::GAUSS);
        QCOMPARE(live.Units(), CUnits::NANO_TESLA);
        QVERIFY(manager.Load(path));
        QVERIFY(manager.Load(path));
    }

    void cleanup()
    {
        m_settings.SetSaveRecordingsAsCsv(false);
        m_settings.SetMeasurementMaxMeasurementCount(120000);
        m_settings.SetMappingMaxMeasurementCount(1000000);
    }

private:
    QString writeFile(const char* name, const QByteArray& content)
    {
        const QString path = m_directory.filePath(QLatin1String(name));
        QFile file(path);
        return file.open(QIODevice::WriteOnly) && file.write(content) == content.size() ? path : QString();
    }

    QTemporaryDir m_directory;
    CSettings m_settings{QString()};
};

QTEST_GUILESS_MAIN(tst_CRecordingManager)
#include "tst_CRecordingManager.moc"
