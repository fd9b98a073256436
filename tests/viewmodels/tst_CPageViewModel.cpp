// SPDX-License-Identifier: GPL-3.0-or-later
#include "COperationViewModel.h"
#include "CPageViewModel.h"
#include "MetaObjectTable.h"
#include "PropertyLog.h"

#include <QtTest>

namespace {

class FakePage : public COperationViewModel
{
public:
    FakePage() : COperationViewModel(QStringLiteral("Fake")) {}

    QString GetHelpName() const override { return QStringLiteral("fake"); }

    using COperationViewModel::replaceDisplayUncertaintyUnits;
};

} // namespace

class tst_CPageViewModel : public QObject
{
    Q_OBJECT

private slots:
    void pageSurface();
    void operationSurface();
    void initialValues();
    void settersEmitOnChange();
    void replacedUncertaintyUnits();
};

void tst_CPageViewModel::pageSurface()
{
    using namespace MetaObjectTable;
    VERIFY_NO_DIFFERENCE(
        compareProperties(CPageViewModel::staticMetaObject,
                          {{"Name", "QString", Constant}, {"HasUnsavedParameter", "bool", ReadWrite}}));
}

void tst_CPageViewModel::operationSurface()
{
    using namespace MetaObjectTable;
    VERIFY_NO_DIFFERENCE(compareProperties(COperationViewModel::staticMetaObject,
                                           {{"DisplayUnits", "CUnits::UnitType", ReadWrite},
                                            {"DisplayUncertaintyUnits", "CUnits::UnitType", ReadWrite},
                                            {"SectionIndex", "int", ReadWrite}}));
    QVERIFY(COperationViewModel::staticMetaObject.indexOfSignal("DatasetLoaded()") >= 0);
}

void tst_CPageViewModel::initialValues()
{
    FakePage page;
    QCOMPARE(page.Name(), QStringLiteral("Fake"));
    QCOMPARE(page.HasUnsavedParameter(), false);
    QCOMPARE(page.SectionIndex(), 0);
    QCOMPARE(page.DisplayUnits(), CUnits::UNKNOWN);
    QCOMPARE(page.DisplayUncertaintyUnits(), CUnits::UNKNOWN);
    // Both are empty unless a page says otherwise.
    page.PageEntered();
    page.PageLeft();
}

void tst_CPageViewModel::settersEmitOnChange()
{
    FakePage page;
    PropertyLog log(&page);
    page.SetHasUnsavedParameter(true);
    page.SetHasUnsavedParameter(true);
    page.SetHasUnsavedParameter(false);
    page.SetSectionIndex(2);
    page.SetSectionIndex(2);
    page.SetDisplayUnits(CUnits::GAUSS);
    page.SetDisplayUnits(CUnits::GAUSS);
    page.SetDisplayUncertaintyUnits(CUnits::PERCENT);
    page.SetDisplayUncertaintyUnits(CUnits::PERCENT);
    QCOMPARE(log.take(), (QStringList{QStringLiteral("HasUnsavedParameter=true"),
                                      QStringLiteral("HasUnsavedParameter=false"),
                                      QStringLiteral("SectionIndex=2"), QStringLiteral("DisplayUnits=GAUSS"),
                                      QStringLiteral("DisplayUncertaintyUnits=PERCENT")}));
}

void tst_CPageViewModel::replacedUncertaintyUnits()
{
    FakePage page;
    page.SetDisplayUncertaintyUnits(CUnits::PERCENT);
    PropertyLog log(&page);
    page.replaceDisplayUncertaintyUnits(CUnits::PERCENT);
    QCOMPARE(log.count(QStringLiteral("DisplayUncertaintyUnits")), 1);
    page.replaceDisplayUncertaintyUnits(CUnits::UNKNOWN);
    QCOMPARE(log.count(QStringLiteral("DisplayUncertaintyUnits")), 1);
    QCOMPARE(page.DisplayUncertaintyUnits(), CUnits::UNKNOWN);
}

QTEST_GUILESS_MAIN(tst_CPageViewModel)
#include "tst_CPageViewModel.moc"
