// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "CMeasureBlock.h"

#include <QObject>

/// The shortest way of a block through Qt: a sender and a receiver that looks at nothing but the number of
/// samples.
class BlockCounter : public QObject
{
    Q_OBJECT

public:
    qint64 samples = 0;

public slots:
    void OnBlock(const QSharedPointer<CMeasureBlock>& block) { samples += block->Results.size(); }

signals:
    void Block(QSharedPointer<CMeasureBlock> block);
};
