// SPDX-License-Identifier: GPL-3.0-or-later
#include "CFakeMapperPlugin.h"

#include "FakeOptions.h"

#include <QTimer>

CFakeMapperPlugin::CFakeMapperPlugin(QObject* parent) : CMapperPluginStopAndGo(parent)
{
    setObjectName(QStringLiteral("fakeMapperPlugin"));
    FakeOptions::takeFromEnvironment(*this);
    Name = FakeOptions::value(this, nullptr, "mapperName", QStringLiteral("Fake mapper")).toString();
    MapperType = FakeOptions::value(this, nullptr, "mapperType", MapperType).toInt();
}

CFakeMapperPlugin::~CFakeMapperPlugin()
{
    joinThread();
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
    FakeOptions::recordPlace(*this, position, orientation);
    m_position = position;
    m_orientation = orientation;
    // A careless mapper may use what it is lent.
    position.SetX(-1e6);
    orientation.SetYaw(-1e6);

    const QString ready = FakeOptions::value(this, nullptr, "ready", QStringLiteral("once")).toString();
    if (ready == QLatin1String("never"))
        return;
    if (ready == QLatin1String("thread")) {
        joinThread();
        m_thread = std::thread([this] { emit Ready(); });
        return;
    }
    if (ready == QLatin1String("vanish")) {
        QTimer::singleShot(0, this, &CFakeMapperPlugin::Vanish);
        return;
    }
    emit Ready();
    if (ready == QLatin1String("twice"))
        emit Ready();
}

void CFakeMapperPlugin::EmitReady()
{
    emit Ready();
}

void CFakeMapperPlugin::Vanish()
{
    delete this;
}

void CFakeMapperPlugin::joinThread()
{
    if (m_thread.joinable())
        m_thread.join();
}
