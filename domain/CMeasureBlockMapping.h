// SPDX-License-Identifier: MIT
#pragma once

#include "CMeasureBlock.h"
#include "COrientation.h"
#include "CPosition.h"

/// A block with the place and the orientation of the probe at which it was taken.
class KESTRIX_API CMeasureBlockMapping : public CMeasureBlock
{
    Q_OBJECT
    Q_PROPERTY(bool RotAppliedOnMeasBlock READ RotAppliedOnMeasBlock WRITE SetRotAppliedOnMeasBlock NOTIFY
                   RotAppliedOnMeasBlockChanged)

public:
    explicit CMeasureBlockMapping(QObject* parent = nullptr);

    /// Whether the components have been rotated into the mapper's frame already. False as constructed.
    bool RotAppliedOnMeasBlock() const { return m_rotAppliedOnMeasBlock; }
    void SetRotAppliedOnMeasBlock(bool applied);

    CPosition Position;
    COrientation Orientation;

signals:
    void RotAppliedOnMeasBlockChanged(bool applied);

private:
    bool m_rotAppliedOnMeasBlock = false;
};

Q_DECLARE_METATYPE(QSharedPointer<CMeasureBlockMapping>)
