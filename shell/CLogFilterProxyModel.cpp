// SPDX-License-Identifier: GPL-3.0-or-later
#include "CLogFilterProxyModel.h"

#include "CLogMessageList.h"
#include "Property.h"

CLogFilterProxyModel::CLogFilterProxyModel(QObject* parent) : QSortFilterProxyModel(parent)
{
    connect(this, &CLogFilterProxyModel::MinLevelChanged, this, &CLogFilterProxyModel::OnMinLevelChanged);
}

void CLogFilterProxyModel::SetMinLevel(int value)
{
    storeAndEmitOnChange(this, m_minLevel, value, &CLogFilterProxyModel::MinLevelChanged);
}

void CLogFilterProxyModel::setFilterString(QString string)
{
    setFilterRole(CLogMessageList::MessageRole);
    setFilterCaseSensitivity(Qt::CaseInsensitive);
    setFilterFixedString(string);
}

void CLogFilterProxyModel::OnMinLevelChanged()
{
    invalidateFilter();
}

bool CLogFilterProxyModel::filterAcceptsRow(int sourceRow, const QModelIndex& sourceParent) const
{
    if (!QSortFilterProxyModel::filterAcceptsRow(sourceRow, sourceParent))
        return false;

    const QVariant level = sourceModel()->index(sourceRow, 0, sourceParent).data(CLogMessageList::LevelRole);
    bool isNumber = false;
    const int value = level.toInt(&isNumber);
    return isNumber && value >= m_minLevel;
}
