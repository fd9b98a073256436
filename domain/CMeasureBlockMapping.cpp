// SPDX-License-Identifier: MIT
#include "CMeasureBlockMapping.h"

#include "Property.h"

CMeasureBlockMapping::CMeasureBlockMapping(QObject* parent) : CMeasureBlock(parent) {}

void CMeasureBlockMapping::SetRotAppliedOnMeasBlock(bool applied)
{
    storeAndEmitOnChange(this, m_rotAppliedOnMeasBlock, applied,
                         &CMeasureBlockMapping::RotAppliedOnMeasBlockChanged);
}
