// SPDX-License-Identifier: MIT
#pragma once

#include "KestrixApi.h"

#include <QObject>

/// Holder of the transports by which an instrument is reached. Zero is none of them.
class KESTRIX_API CInstrumentInterface : public QObject
{
    Q_OBJECT

public:
    enum Interface : int { Unknown = 1, USB = 2, Ethernet = 3, Serial = 4 };
    Q_ENUM(Interface)

    using QObject::QObject;
};
