// SPDX-License-Identifier: GPL-3.0-or-later
#include "CLimitsParameters.h"

#include "Property.h"

void CLimitsParameters::SetLimitsFilePath(const QString& path)
{
    storeAndEmitOnChange(this, m_limitsFilePath, path, &CLimitsParameters::LimitsFilePathChanged);
}

void CLimitsParameters::SetLimitsFileName(const QString& name)
{
    storeAndEmitOnChange(this, m_limitsFileName, name, &CLimitsParameters::LimitsFileNameChanged);
}

void CLimitsParameters::AssignLimitsFilePath(const QString& path)
{
    storeAndEmit(this, m_limitsFilePath, path, &CLimitsParameters::LimitsFilePathChanged);
}
