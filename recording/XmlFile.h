// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QObject>
#include <QString>

/// Base of the classes that read a small XML file.
class XmlFile : public QObject
{
    Q_OBJECT

public:
    using QObject::QObject;

protected:
    QString m_filePath; ///< path of the file to read; empty until given
};
