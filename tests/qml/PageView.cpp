// SPDX-License-Identifier: GPL-3.0-or-later
#include "PageView.h"

#include "PatientWait.h"

#include <QMap>
#include <QQmlContext>
#include <QQuickItem>
#include <QTest>

namespace {

constexpr int kRowHeight = 30;

QString textIn(const QQuickItem* item)
{
    return item->property("text").toString();
}

/// The visible texts below an item.
QList<QQuickItem*> textsBelow(QQuickItem* parent)
{
    QList<QQuickItem*> texts;
    const QList<QQuickItem*> items = parent->childItems();
    for (QQuickItem* item : items) {
        if (!item->isVisible())
            continue;
        if (item->inherits("QQuickText") && !textIn(item).isEmpty())
            texts << item;
        texts << textsBelow(item);
    }
    return texts;
}

} // namespace

PageView::PageView(MeasureFixture& fixture, QObject* pageViewModel, const QString& page)
    : m_view(std::make_unique<QQuickView>())
{
    m_mainViewModel.insert(QStringLiteral("SmallWindowSize"), false);
    m_mainViewModel.insert(QStringLiteral("ParameterMenuExpanded"), false);
    m_mainViewModel.insert(QStringLiteral("PageMenuExpanded"), false);
    m_mainViewModel.insert(QStringLiteral("MainWindowHeight"), 900);
    m_setup.setUp(m_view->engine());
    QQmlContext* context = m_view->rootContext();
    context->setContextProperty(QStringLiteral("QtVerSix"), false);
    context->setContextProperty(QStringLiteral("Settings"), &fixture.settings);
    context->setContextProperty(QStringLiteral("MainViewModel"), &m_mainViewModel);
    context->setContextProperty(QStringLiteral("ActiveOperation"), &fixture.operation);
    context->setContextProperty(QStringLiteral("ActivePageViewModel"), pageViewModel);
    m_view->setResizeMode(QQuickView::SizeRootObjectToView);
    m_view->setSource(QUrl(QStringLiteral("qrc:/Resources/Pages/%1.qml").arg(page)));
    if (m_view->status() != QQuickView::Ready)
        qFatal("no page %s", qPrintable(page));
    m_view->resize(1000, 900);
    m_view->show();
    if (!QTest::qWaitForWindowActive(m_view.get(), kLongWaitMs))
        qFatal("the window is not shown");
    m_driver = std::make_unique<WindowDriver>(m_view.get());
}

PageView::~PageView() = default;

QQuickItem* PageView::Item(const char* name) const
{
    QQuickItem* const item = QmlTestSetup::FindItem(m_view->contentItem(), name);
    if (!item)
        qFatal("no item %s", name);
    return item;
}

bool PageView::IsVisible(const char* name) const
{
    return m_driver->IsVisible(QString::fromLatin1(name));
}

QRectF PageView::PlaceOf(const char* name) const
{
    const QQuickItem* item = Item(name);
    return item->mapRectToScene(QRectF(0, 0, item->width(), item->height()));
}

QString PageView::TextOf(const char* name) const
{
    return Item(name)->property("text").toString();
}

QVector<QStringList> PageView::CellsOf(const char* table) const
{
    QQuickItem* const tableItem = Item(table);
    // By the middle of their row and their left end
    QMap<int, QMap<qreal, QString>> rows;
    const QList<QQuickItem*> texts = textsBelow(tableItem);
    for (const QQuickItem* text : texts) {
        const QPointF place = tableItem->mapFromItem(text, QPointF(0, text->height() / 2));
        rows[int(place.y()) / kRowHeight].insert(place.x(), textIn(text));
    }
    QVector<QStringList> cells;
    for (const QMap<qreal, QString>& row : qAsConst(rows))
        cells.append(row.values());
    return cells;
}

QStringList PageView::WideTextsOf(const char* table) const
{
    QStringList wide;
    const QList<QQuickItem*> texts = textsBelow(Item(table));
    for (const QQuickItem* text : texts) {
        if (text->property("paintedWidth").toReal() > text->width())
            wide << textIn(text);
    }
    return wide;
}

void PageView::SetSmall(bool isSmall)
{
    m_mainViewModel.insert(QStringLiteral("SmallWindowSize"), isSmall);
    m_mainViewModel.insert(QStringLiteral("ParameterMenuExpanded"), isSmall);
}
