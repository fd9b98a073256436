// SPDX-License-Identifier: MIT
#pragma once

#include "CMapperPlugin.h"

/// A mapper that the application sends from point to point.
class KESTRIX_API CMapperPluginStopAndGo : public CMapperPlugin
{
    Q_OBJECT

public:
    explicit CMapperPluginStopAndGo(QObject* parent = nullptr);

    /// Goes to a place; Ready() follows on arrival.
    virtual void MoveTo(CPosition& position, COrientation& orientation) = 0;

signals:
    /// The mapper has arrived and the probe is at rest.
    void Ready();
};
