// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "CAcAnalysisOperationViewModel.h"
#include "CPlotTable.h"
#include "PageView.h"
#include "SpectrumPage.h"

#include <QLocale>
#include <QQuickItem>
#include <QTest>
#include <QUrl>

#include <memory>

/// The spectrum and AC analysis pages over an operation with an instrument, one at a time in a window.
struct SpectralPageFixture
{
    void prepare()
    {
        QmlTestSetup::Prepare();
        CPlotTable::RegisterQmlTypes();
    }
    void begin();
    void end();

    void openSpectrum();
    void openAcAnalysis();
    /// By the name of the file
    void open(const QString& page);
    /// A column "page" for open().
    static void bothPages();

    QQuickItem* item(const char* name) const { return m_page->Item(name); }
    bool isVisible(const char* name) const { return m_page->IsVisible(name); }
    QString textOf(const char* name) const { return m_page->TextOf(name); }
    void click(const char* name) { QVERIFY2(m_page->Driver().Click(QLatin1String(name)), name); }
    void choose(const char* name, int index);
    void enter(const char* field, const char* number)
    {
        QVERIFY2(m_page->Driver().Enter(QLatin1String(field), QLatin1String(number)), field);
    }
    void expand(const char* box);
    /// What the file dialog of the limits box does when a file was chosen.
    void chooseFile(const QString& path);
    QString writeFile(const QByteArray& content);
    CLimitsParameters& limits() { return *m_fixture->operation.OperationParameters()->LimitsParameters(); }

    std::unique_ptr<SpectralFixture> m_fixture;
    QSharedPointer<FakeInstrument> m_instrument;
    std::unique_ptr<CSpectrumOperationViewModel> m_spectrum;
    std::unique_ptr<CAcAnalysisOperationViewModel> m_acAnalysis;
    std::unique_ptr<PageView> m_page;
    int m_warningsBefore = 0;
};

inline void SpectralPageFixture::begin()
{
    const auto setBound = [](CBoundedParm* bound, double min, double max) {
        bound->SetMin(min);
        bound->SetMax(max);
    };
    QLocale::setDefault(QLocale::c());
    m_warningsBefore = QmlTestSetup::WarningCount();
    m_fixture = std::make_unique<SpectralFixture>();
    m_instrument = m_fixture->connectInstrument();
    m_instrument->SetUnitList({CUnits::TESLA, CUnits::MICRO_TESLA, CUnits::GAUSS});
    m_instrument->SetTriggerList({CTrigger::CONTINUOUS, CTrigger::IMMEDIATE, CTrigger::TIMER});
    setBound(m_instrument->KestrixAcquisitionRateBound(), 1, 1000);
    setBound(m_instrument->KestrixDisplayRateBound(), 0.5, 50);
    setBound(m_instrument->BlockSizeBound(), 2, 500);
    setBound(m_instrument->AveragingBound(), 1, 100);
    setBound(m_instrument->FrequencyMinBound(), 0, 500);
    setBound(m_instrument->FrequencyMaxBound(), 1, 500);
}

inline void SpectralPageFixture::end()
{
    m_page.reset();
    m_spectrum.reset();
    m_acAnalysis.reset();
    m_instrument.reset();
    m_fixture.reset();
    QCOMPARE(QmlTestSetup::WarningCount(), m_warningsBefore);
}

inline void SpectralPageFixture::openSpectrum()
{
    m_spectrum = SpectrumPage::makePage(*m_fixture);
    m_page = std::make_unique<PageView>(*m_fixture, m_spectrum.get(), QStringLiteral("SpectrumPage"));
}

inline void SpectralPageFixture::openAcAnalysis()
{
    m_acAnalysis = std::make_unique<CAcAnalysisOperationViewModel>(
        &m_fixture->operation, &m_fixture->settings, &m_fixture->notifier);
    m_page = std::make_unique<PageView>(*m_fixture, m_acAnalysis.get(), QStringLiteral("AcAnalysisPage"));
}

inline void SpectralPageFixture::bothPages()
{
    QTest::addColumn<QString>("page");
    QTest::newRow("spectrum") << QStringLiteral("SpectrumPage");
    QTest::newRow("AC analysis") << QStringLiteral("AcAnalysisPage");
}

inline void SpectralPageFixture::open(const QString& page)
{
    if (page == QLatin1String("SpectrumPage"))
        openSpectrum();
    else
        openAcAnalysis();
}

inline void SpectralPageFixture::chooseFile(const QString& path)
{
    QVERIFY(QMetaObject::invokeMethod(item("limitsFileSelector"), "acceptUrl",
                                      Q_ARG(QVariant, QUrl::fromLocalFile(path))));
}

inline QString SpectralPageFixture::writeFile(const QByteArray& content)
{
    QFile file(m_fixture->directory.filePath(QStringLiteral("my limits.xml")));
    if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size())
        qFatal("cannot write %s", qPrintable(file.fileName()));
    return file.fileName();
}

inline void SpectralPageFixture::choose(const char* name, int index)
{
    QVERIFY2(m_page->Driver().Choose(QLatin1String(name), index), name);
    QCoreApplication::processEvents();
}

inline void SpectralPageFixture::expand(const char* box)
{
    if (!item(box)->property("expanded").toBool())
        click((QByteArray(box) + "Title").constData());
}
