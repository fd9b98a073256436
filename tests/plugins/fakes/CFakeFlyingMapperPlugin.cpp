// SPDX-License-Identifier: GPL-3.0-or-later
#include "CFakeFlyingMapperPlugin.h"

#include "FakeOptions.h"

#include <thread>

CFakeFlyingMapperPlugin::CFakeFlyingMapperPlugin(QObject* parent) : CMapperPluginOnTheFly(parent)
{
    setObjectName(QStringLiteral("fakeFlyingMapperPlugin"));
    FakeOptions::takeFromEnvironment(*this);
    Name = FakeOptions::value(this, nullptr, "mapperName", QStringLiteral("Fake flying mapper")).toString();
    MapperType = FakeOptions::value(this, nullptr, "mapperType", MapperType).toInt();
}

void CFakeFlyingMapperPlugin::Start()
{
    FakeOptions::recordCall(*this, QStringLiteral("Start"));
}

void CFakeFlyingMapperPlugin::Stop()
{
    FakeOptions::recordCall(*this, QStringLiteral("Stop"));
}

CPosition CFakeFlyingMapperPlugin::GetPosition()
{
    return m_position;
}

COrientation CFakeFlyingMapperPlugin::GetOrientation()
{
    return m_orientation;
}

void CFakeFlyingMapperPlugin::Shutdown()
{
    FakeOptions::recordCall(*this, QStringLiteral("Shutdown"));
}

void CFakeFlyingMapperPlugin::EmitAcquire(double x)
{
    m_position.SetX(x);
    m_position.SetY(2 * x);
    m_position.SetZ(3 * x);
    m_orientation.SetRoll(4 * x);
    m_orientation.SetPitch(5 * x);
    m_orientation.SetYaw(6 * x);
    CPosition elsewhere;
    elsewhere.SetX(-1e6);
    std::thread([this, elsewhere] { emit Acquire(elsewhere, COrientation()); }).join();
}
