// SPDX-License-Identifier: GPL-3.0-or-later
#include "CFakeMapperPlugin.h"

#include "FakeOptions.h"

CFakeMapperPlugin::CFakeMapperPlugin(QObject* parent) : CMapperPluginStopAndGo(parent)
{
    setObjectName(QStringLiteral("fakeMapperPlugin"));
    FakeOptions::takeFromEnvironment(*this);
    Name = FakeOptions::value(this, nullptr, "mapperName", QStringLiteral("Fake mapper")).toString();
}

void CFakeMapperPlugin::Start()
{
    FakeOptions::recordCall(*this, QStringLiteral("Start"));
}

void CFakeMapperPlugin::Stop()
{
    FakeOptions::recordCall(*this, QStringLiteral("Stop"));
}

CPosition CFakeMapperPlugin::GetPosition()
{
    return m_position;
}

COrientation CFakeMapperPlugin::GetOrientation()
{
    return m_orientation;
}

void CFakeMapperPlugin::Shutdown()
{
    FakeOptions::recordCall(*this, QStringLiteral("Shutdown"));
}

void CFakeMapperPlugin::MoveTo(CPosition& position, COrientation& orientation)
{
    FakeOptions::recordCall(*this, QStringLiteral("MoveTo"));
    m_position = position;
    m_orientation = orientation;
    emit Ready();
}
