// SPDX-License-Identifier: GPL-3.0-or-later
#include "MetaObjectTable.h"
#include "XmlFile.h"

#include <QtTest>

class SomeXmlFile : public XmlFile
{
public:
    using XmlFile::m_filePath;
    using XmlFile::XmlFile;
};

class tst_XmlFile : public QObject
{
    Q_OBJECT

private slots:
    void holdsAnEmptyTextAndNothingElse()
    {
        const SomeXmlFile file;
        QVERIFY(file.m_filePath.isEmpty());
        VERIFY_NO_DIFFERENCE(MetaObjectTable::compareProperties(XmlFile::staticMetaObject, {}));
    }
};

QTEST_GUILESS_MAIN(tst_XmlFile)
#include "tst_XmlFile.moc"
