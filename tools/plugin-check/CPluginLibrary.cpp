// SPDX-License-Identifier: GPL-3.0-or-later
#include "CPluginLibrary.h"

#include <QFile>
#include <QFileInfo>
#include <QRegularExpression>

namespace {

const char* const kKinds[] = {"instrument", "mapper", "trigger"};

} // namespace

CPluginLibrary::CPluginLibrary(const QString& path)
    : m_path(QFileInfo(path).absoluteFilePath()), m_library(std::make_unique<QLibrary>(m_path))
{
}

bool CPluginLibrary::Load(QString& error)
{
    m_library->setLoadHints(QLibrary::ResolveAllSymbolsHint);
    if (m_library->load())
        return true;
    error = m_library->errorString();
    // The application resolves a symbol at its first use: it would load what fails here. Hints cannot be
    // taken back, so this takes another object, made when the first one is gone: those of one file share
    // them.
    m_library.reset();
    m_library = std::make_unique<QLibrary>(m_path);
    return m_library->load();
}

QString CPluginLibrary::ContractVersion() const
{
    QFile file(m_path);
    if (!file.open(QIODevice::ReadOnly))
        return QString();
    // The names of the libraries that it needs stand in it as text, with their version on most systems.
    const QByteArray bytes = file.readAll();
    const QString content = QString::fromLatin1(bytes.constData(), bytes.size());
    static const QRegularExpression pattern(
        QStringLiteral("libkestrix-plugin-api(?:\\.so\\.(\\d+)|\\.(\\d+)\\.dylib)"));
    const QRegularExpressionMatch match = pattern.match(content);
    return match.captured(1) + match.captured(2);
}

QStringList CPluginLibrary::Kinds()
{
    QStringList kinds;
    for (const char* kind : kKinds) {
        if (m_library->resolve(FactoryNameOf(QLatin1String(kind))))
            kinds.append(QLatin1String(kind));
    }
    return kinds;
}

const char* CPluginLibrary::FactoryNameOf(const QString& kind)
{
    if (kind == QLatin1String("instrument"))
        return "CreateInstrumentPlugin";
    return kind == QLatin1String("mapper") ? "CreateMapperPlugin" : "CreateTriggerPlugin";
}
