// SPDX-License-Identifier: GPL-3.0-or-later
#include "CFakeMapperPlugin.h"
#include "COperationMapping.h"
#include "LogRecorder.h"
#include "OperationFixture.h"
#include "PropertyLog.h"

#include <QDomDocument>
#include <QtTest>

namespace {

/// "tag=text" of the elements without children, "tag{...}" of the others.
QString outline(const QDomElement& element)
{
    if (element.firstChildElement().isNull())
        return element.tagName() + QLatin1Char('=') + element.text();
    QStringList children;
    for (QDomElement child = element.firstChildElement(); !child.isNull(); child = child.nextSiblingElement())
        children.append(outline(child));
    return element.tagName() + QLatin1Char('{') + children.join(QLatin1Char(' ')) + QLatin1Char('}');
}

} // namespace

/// What the mapping adds to a parameter file.
class tst_MappingParameterFile : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        m_fixture = std::make_unique<OperationFixture>();
        m_operation = makeOperation();
    }

    void cleanup()
    {
        m_operation.reset();
        m_fixture.reset();
    }

    void writesTheGrid()
    {
        CFakeMapperPlugin mapper;
        mapper.Name = QStringLiteral("A & B");
        m_operation->MappingParameters()->SetSelectedMapper(&mapper);
        grid().X()->SetStart(-1.23456789);
        grid().X()->SetStop(1234567);
        grid().X()->SetStepSize(0.00123);
        grid().Z()->SetStop(5e-10);
        grid().Orientation()->SetRoll(90);
        grid().Orientation()->SetYaw(-12.5);
        QCOMPARE(
            saved(),
            QStringLiteral("MAPPING_PARAMETERS{Mapper=A & B Source=Cartesian "
                           "MAPPING_POSITION_PARAMETERS{X{Start=-1.23457 Stop=1.23457e+06 Step_Size=0.00123} "
                           "Y{Start=0 Stop=1 Step_Size=1} Z{Start=0 Stop=5e-10 Step_Size=1}} "
                           "MAPPING_ORIENTATION_PARAMETERS{Roll=90 Pitch=0 Yaw=-12.5}}"));
    }

    void writesAFileSourceWithoutItsPath()
    {
        m_operation->MappingParameters()->MapperSourceFile()->MappingFile()->SetFilePath(
            QStringLiteral("/p"));
        m_operation->MappingParameters()->SetMapperSource(
            m_operation->MappingParameters()->MapperSourceFile());
        QCOMPARE(saved(), QStringLiteral("MAPPING_PARAMETERS{Mapper= Source=File NorvaneMappingFile=}"));
    }

    void writesNoSource()
    {
        m_operation->MappingParameters()->SetMapperSource(nullptr);
        QCOMPARE(saved(), QStringLiteral("MAPPING_PARAMETERS{Mapper= Source=Error}"));
    }

    void standsBehindTheCommonElements()
    {
        const QString path = m_fixture->directory.filePath(QStringLiteral("p.xml"));
        m_operation->SaveParameters(path);
        QDomDocument document;
        QVERIFY(document.setContent(OperationFixture::readFile(path)));
        QCOMPARE(document.documentElement().lastChildElement().tagName(),
                 QStringLiteral("MAPPING_PARAMETERS"));
        QCOMPARE(document.documentElement().lastChildElement().previousSiblingElement().tagName(),
                 QStringLiteral("ALARM_MAPPING_PARAMETERS"));
    }

    void reads()
    {
        QStringList changes;
        PropertyLog x(grid().X());
        PropertyLog y(grid().Y());
        PropertyLog z(grid().Z());
        PropertyLog orientation(grid().Orientation());
        const LogRecorder log;
        load("<MAPPING_PARAMETERS><Mapper>Other</Mapper><Source>File</Source><MAPPING_POSITION_PARAMETERS>"
             "<X><Start>-1</Start><Stop>2</Stop><Step_Size>0.5</Step_Size></X>"
             "<Z><Step_Size>7</Step_Size><Stop>8</Stop><Start>3</Start><Other>1</Other></Z>"
             "<Y><Start>4</Start><Stop>5</Stop><Step_Size>6</Step_Size></Y></MAPPING_POSITION_PARAMETERS>"
             "<MAPPING_ORIENTATION_PARAMETERS><Yaw>30</Yaw><Roll>10</Roll><Pitch>20</Pitch>"
             "</MAPPING_ORIENTATION_PARAMETERS></MAPPING_PARAMETERS>");
        QCOMPARE(x.take().join(QLatin1Char(' ')), QStringLiteral("Start=-1 Stop=2 StepSize=0.5"));
        QCOMPARE(y.take().join(QLatin1Char(' ')), QStringLiteral("Start=4 Stop=5 StepSize=6"));
        QCOMPARE(z.take().join(QLatin1Char(' ')), QStringLiteral("StepSize=7 Stop=8 Start=3"));
        QCOMPARE(orientation.take().join(QLatin1Char(' ')), QStringLiteral("Yaw=30 Roll=10 Pitch=20"));
        QCOMPARE(
            log.Texts(QtDebugMsg),
            QStringList(
                {QStringLiteral("COperationMapping::ReadCartesianParameters MAPPING_POSITION_PARAMETERS"),
                 QStringLiteral(
                     "COperationMapping::ReadCartesianParameters MAPPING_ORIENTATION_PARAMETERS")}));
        QCOMPARE(m_operation->MappingParameters()->SelectedMapper(), nullptr);
        QCOMPARE(m_operation->MappingParameters()->MapperSource(),
                 m_operation->MappingParameters()->MapperSourceCartesian());
    }

    void ignores_data()
    {
        QTest::addColumn<QByteArray>("content");
        QTest::newRow("other element")
            << QByteArray("<MAPPING><MAPPING_POSITION_PARAMETERS><X><Start>9</Start></X>"
                          "</MAPPING_POSITION_PARAMETERS></MAPPING>");
        QTest::newRow("grid outside of its element") << QByteArray(
            "<MAPPING_POSITION_PARAMETERS><X><Start>9</Start></X></MAPPING_POSITION_PARAMETERS>");
        QTest::newRow("angles among the positions")
            << QByteArray("<MAPPING_PARAMETERS><MAPPING_POSITION_PARAMETERS><Roll>9</Roll>"
                          "<A><Start>9</Start></A></MAPPING_POSITION_PARAMETERS></MAPPING_PARAMETERS>");
        QTest::newRow("axis among the angles")
            << QByteArray("<MAPPING_PARAMETERS><MAPPING_ORIENTATION_PARAMETERS><X><Start>9</Start></X>"
                          "<Other>1</Other></MAPPING_ORIENTATION_PARAMETERS></MAPPING_PARAMETERS>");
        QTest::newRow("file source") << QByteArray("<MAPPING_PARAMETERS><Mapper/><Source>File</Source>"
                                                   "<NorvaneMappingFile/></MAPPING_PARAMETERS>");
        QTest::newRow("nothing") << QByteArray("<MAPPING_PARAMETERS/>");
    }

    void ignores()
    {
        QFETCH(const QByteArray, content);
        const QString before = saved();
        const LogRecorder log;
        load(content);
        QCOMPARE(saved(), before);
    }

    // A file that was made with a file source gives the default grid, and no choice of source.
    void fileSourceComesBackAsDefaults()
    {
        m_operation->MappingParameters()->SetMapperSource(
            m_operation->MappingParameters()->MapperSourceFile());
        grid().X()->SetStop(55);
        const QString path = m_fixture->directory.filePath(QStringLiteral("p.xml"));
        m_operation->SaveParameters(path);
        m_operation = makeOperation();
        QVERIFY(m_operation->LoadParameters(path));
        QCOMPARE(grid().X()->Stop(), 1.0);
        QCOMPARE(m_operation->MappingParameters()->MapperSource(),
                 m_operation->MappingParameters()->MapperSourceCartesian());
    }

    void malformedNumbersAreZero()
    {
        const LogRecorder log;
        load("<MAPPING_PARAMETERS><MAPPING_POSITION_PARAMETERS><X><Stop>many</Stop></X>"
             "</MAPPING_POSITION_PARAMETERS></MAPPING_PARAMETERS>");
        QCOMPARE(grid().X()->Stop(), 0.0);
    }

    void roundTrip()
    {
        grid().X()->SetStart(-7.25);
        grid().Y()->SetStepSize(0.125);
        grid().Z()->SetStop(1e6);
        grid().Orientation()->SetPitch(-33.5);
        const QString before = saved();
        const QString path = m_fixture->directory.filePath(QStringLiteral("p.xml"));
        m_operation = makeOperation();
        QVERIFY(saved() != before);
        const LogRecorder log;
        m_operation->LoadParameters(m_lastPath);
        QCOMPARE(saved(), before);
    }

private:
    std::unique_ptr<COperationMapping> makeOperation() const
    {
        return std::make_unique<COperationMapping>(&m_fixture->settings, &m_fixture->plugins,
                                                   &m_fixture->supervisor);
    }

    CMapperPositionSourceCartesian& grid()
    {
        return *m_operation->MappingParameters()->MapperSourceCartesian();
    }

    void load(const QByteArray& content)
    {
        QVERIFY(m_operation->LoadParameters(m_fixture->write(
            QStringLiteral("in.xml"), "<OPERATION_PARAMETERS>" + content + "</OPERATION_PARAMETERS>")));
    }

    /// Outline of what the operation writes; the file of the last call but one is at `m_lastPath`.
    QString saved()
    {
        m_lastPath = m_path;
        m_path = m_fixture->directory.filePath(QStringLiteral("out%1.xml").arg(++m_count));
        m_operation->SaveParameters(m_path);
        QDomDocument document;
        document.setContent(OperationFixture::readFile(m_path));
        return outline(document.documentElement().firstChildElement(QStringLiteral("MAPPING_PARAMETERS")));
    }

    std::unique_ptr<OperationFixture> m_fixture;
    std::unique_ptr<COperationMapping> m_operation;
    QString m_path;
    QString m_lastPath;
    int m_count = 0;
};

QTEST_GUILESS_MAIN(tst_MappingParameterFile)
#include "tst_MappingParameterFile.moc"
