// SPDX-License-Identifier: GPL-3.0-or-later
#include "CMappingParametersViewModel.h"
#include "COperationMapping.h"
#include "LogRecorder.h"
#include "MetaObjectTable.h"
#include "OperationFixture.h"
#include "PropertyLog.h"

#include <QDir>
#include <QSignalSpy>
#include <QtTest>

class tst_CMappingParametersViewModel : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        m_fixture = std::make_unique<OperationFixture>();
        m_operation = std::make_unique<COperationMapping>(&m_fixture->settings, &m_fixture->plugins,
                                                          &m_fixture->supervisor);
    }

    void cleanup()
    {
        m_viewModel.reset();
        m_operation.reset();
        m_fixture->plugins.Terminate();
        m_fixture.reset();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }

    void surface()
    {
        using namespace MetaObjectTable;
        const QMetaObject& meta = CMappingParametersViewModel::staticMetaObject;
        VERIFY_NO_DIFFERENCE(compareProperties(meta, {{"Mappers", "QStringList", ReadOnly},
                                                      {"SelectedMapperIndex", "int", ReadWrite},
                                                      {"Sources", "QStringList", ReadOnly},
                                                      {"SelectedSourceIndex", "int", ReadWrite},
                                                      {"IsCartesianSource", "bool", ReadOnly},
                                                      {"IsMapperOnTheFly", "bool", ReadOnly}}));
        VERIFY_NO_DIFFERENCE(
            compareMethods(meta, QMetaMethod::Slot,
                           {"OnSelectedSourceIndexChanged(int)", "OnSelectedMapperIndexChanged(int)"}));
    }

    void withoutMapper()
    {
        make();
        QVERIFY(m_viewModel->Mappers().isEmpty());
        QCOMPARE(m_viewModel->SelectedMapperIndex(), -1);
        QCOMPARE(m_viewModel->Sources(), QStringList({QStringLiteral("Cartesian"), QStringLiteral("File")}));
        QCOMPARE(m_viewModel->SelectedSourceIndex(), 0);
        QVERIFY(m_viewModel->IsCartesianSource());
        QVERIFY(!m_viewModel->IsMapperOnTheFly());
        QCOMPARE(mapping().SelectedMapper(), nullptr);
        m_viewModel->SetSelectedMapperIndex(0);
        QCOMPARE(mapping().SelectedMapper(), nullptr);
    }

    void choosesTheFirstMapper_data()
    {
        QTest::addColumn<QStringList>("libraries");
        QTest::addColumn<bool>("isOnTheFly");
        QTest::newRow("stop-and-go") << QStringList(QStringLiteral("mapper")) << false;
        QTest::newRow("on-the-fly") << QStringList(QStringLiteral("flying-mapper")) << true;
    }

    void choosesTheFirstMapper()
    {
        QFETCH(const QStringList, libraries);
        QFETCH(const bool, isOnTheFly);
        loadMappers(libraries);
        make();
        QCOMPARE(m_viewModel->SelectedMapperIndex(), 0);
        QCOMPARE(mapping().SelectedMapper(), plugins().first());
        QCOMPARE(m_viewModel->IsMapperOnTheFly(), isOnTheFly);
        QCOMPARE(m_viewModel->Mappers(), QStringList(plugins().first()->Name));
    }

    void choosesAMapper()
    {
        loadMappers({QStringLiteral("mapper"), QStringLiteral("flying-mapper")});
        make();
        QCOMPARE(m_viewModel->Mappers(), QStringList({plugins().at(0)->Name, plugins().at(1)->Name}));
        QSignalSpy selected(&mapping(), &CMappingParameters::SelectedMapperChanged);
        PropertyLog log(m_viewModel.get());
        m_viewModel->SetSelectedMapperIndex(1);
        m_viewModel->SetSelectedMapperIndex(1);
        QCOMPARE(mapping().SelectedMapper(), plugins().at(1));
        QCOMPARE(selected.count(), 1);
        QCOMPARE(log.take(), QStringList({QStringLiteral("IsMapperOnTheFly=true"),
                                          QStringLiteral("SelectedMapperIndex=1")}));
        // No index of the list: nothing else changes.
        for (const int index : {2, -1, 100}) {
            m_viewModel->SetSelectedMapperIndex(index);
            QCOMPARE(mapping().SelectedMapper(), plugins().at(1));
            QVERIFY(m_viewModel->IsMapperOnTheFly());
        }
        m_viewModel->SetSelectedMapperIndex(0);
        QVERIFY(!m_viewModel->IsMapperOnTheFly());
    }

    void aTypeThatIsNoneIsNotOnTheFly()
    {
        loadMappers({QStringLiteral("flying-mapper")});
        plugins().first()->MapperType = 0;
        make();
        QVERIFY(!m_viewModel->IsMapperOnTheFly());
    }

    void theNextPageBeginsAnew()
    {
        loadMappers({QStringLiteral("mapper"), QStringLiteral("flying-mapper")});
        make();
        m_viewModel->SetSelectedMapperIndex(1);
        m_viewModel->SetSelectedSourceIndex(1);
        QSignalSpy chosen(&mapping(), &CMappingParameters::SourceChanged);
        make();
        QCOMPARE(mapping().SelectedMapper(), plugins().at(0));
        QCOMPARE(mapping().MapperSource(), mapping().MapperSourceCartesian());
        QCOMPARE(m_viewModel->SelectedSourceIndex(), 0);
        QCOMPARE(chosen.count(), 0);
    }

    void choosesASource()
    {
        make();
        QStringList events;
        connect(&mapping(), &CMappingParameters::MapperSourceChanged, this,
                [&] { events.append(QStringLiteral("source")); });
        connect(&mapping(), &CMappingParameters::SourceChanged, this,
                [&] { events.append(QStringLiteral("chosen")); });
        connect(m_viewModel.get(), &CMappingParametersViewModel::IsCartesianSourceChanged, this,
                [&] { events.append(QStringLiteral("cartesian")); });
        m_viewModel->SetSelectedSourceIndex(1);
        QCOMPARE(mapping().MapperSource(), mapping().MapperSourceFile());
        QVERIFY(!m_viewModel->IsCartesianSource());
        QCOMPARE(events.join(QLatin1Char(' ')), QStringLiteral("cartesian source chosen"));
        // Whatever is not the first is the file, and each choice is told.
        events.clear();
        m_viewModel->SetSelectedSourceIndex(7);
        QCOMPARE(mapping().MapperSource(), mapping().MapperSourceFile());
        QCOMPARE(events.join(QLatin1Char(' ')), QStringLiteral("chosen"));
        events.clear();
        m_viewModel->SetSelectedSourceIndex(0);
        QCOMPARE(mapping().MapperSource(), mapping().MapperSourceCartesian());
        QCOMPARE(events.join(QLatin1Char(' ')), QStringLiteral("cartesian source chosen"));
    }

    // A plug-in that deletes itself is offered on this page and not on the next one.
    void aMapperThatIsGone()
    {
        loadMappers({QStringLiteral("mapper"), QStringLiteral("flying-mapper")});
        make();
        QVERIFY(QMetaObject::invokeMethod(plugins().first(), "Vanish"));
        QCOMPARE(mapping().SelectedMapper(), nullptr);
        m_viewModel->OnSelectedMapperIndexChanged(0);
        QCOMPARE(mapping().SelectedMapper(), nullptr);
        m_viewModel->SetSelectedMapperIndex(1);
        QCOMPARE(mapping().SelectedMapper()->Name, QStringLiteral("Fake flying mapper"));
        make();
        QCOMPARE(m_viewModel->Mappers(), QStringList(QStringLiteral("Fake flying mapper")));
    }

private:
    void make() { m_viewModel = std::make_unique<CMappingParametersViewModel>(m_operation.get()); }
    CMappingParameters& mapping() { return *m_operation->MappingParameters(); }
    const QList<CMapperPlugin*>& plugins() const { return m_fixture->plugins.MapperPlugins(); }

    void loadMappers(const QStringList& libraries)
    {
        QDir(m_fixture->directory.path()).mkdir(QStringLiteral("mapper"));
        const QString target = m_fixture->directory.filePath(QStringLiteral("mapper"));
        int count = 0;
        for (const QString& kind : libraries) {
            const QString name = QStringLiteral("fake-") + kind + QStringLiteral(".so");
            QVERIFY(QFile::copy(QStringLiteral(KESTRIX_TEST_PLUGINS_DIR "/") + kind + QLatin1Char('/') + name,
                                target + QStringLiteral("/%1.so").arg(++count)));
        }
        m_fixture->settings.SetMapperPluginsPath(target);
        const LogRecorder log;
        m_fixture->plugins.LoadAll();
        QCOMPARE(plugins().size(), libraries.size());
    }

    std::unique_ptr<OperationFixture> m_fixture;
    std::unique_ptr<COperationMapping> m_operation;
    std::unique_ptr<CMappingParametersViewModel> m_viewModel;
};

QTEST_GUILESS_MAIN(tst_CMappingParametersViewModel)
#include "tst_CMappingParametersViewModel.moc"
