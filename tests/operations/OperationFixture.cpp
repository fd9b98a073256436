// SPDX-License-Identifier: GPL-3.0-or-later
#include "OperationFixture.h"

#include "SettingsDirectoryPath.h"

#include <QDir>
#include <QDomElement>
#include <QFile>
#include <QXmlStreamWriter>

OperationFixture::OperationFixture()
    : settings(QString()), plugins(settings), provider({QStringLiteral("1"), QStringLiteral("2")}),
      supervisor(&settings)
{
    QDir(SettingsDirectoryPath).removeRecursively();
    QDir().mkpath(SettingsDirectoryPath);
    supervisor.AddInstrumentListProvider(&provider);
    supervisor.RefreshAvailableInstruments();
}

OperationFixture::~OperationFixture()
{
    QDir(SettingsDirectoryPath).removeRecursively();
}

void OperationFixture::connectInstrument(int index)
{
    supervisor.SetActiveInstrument(instrument(index));
}

QString OperationFixture::write(const QString& name, const QByteArray& content) const
{
    const QString path = directory.filePath(name);
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly | QIODevice::Truncate) || file.write(content) != content.size())
        qFatal("Cannot write the test's file");
    return path;
}

QString OperationFixture::settingsFilePath()
{
    return SettingsDirectoryPath + QStringLiteral("/KestrixMeasureSettings.xml");
}

QByteArray OperationFixture::readFile(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

CTestOperation::CTestOperation(CInstrumentSupervisor* supervisor, const QString& name)
    : COperation(supervisor)
{
    SetName(name);
}

void CTestOperation::StopSession()
{
    calls.append(QStringLiteral("StopSession"));
    COperation::StopSession();
}

void CTestOperation::SaveExtraParameters(QXmlStreamWriter& writer) const
{
    writer.writeTextElement(QStringLiteral("EXTRA"), QStringLiteral("more"));
}

void CTestOperation::LoadExtraParameters(const QDomElement& element)
{
    extraElements.append(element.tagName() + QLatin1Char('=') + element.text());
}
