// SPDX-License-Identifier: GPL-3.0-or-later
#include "IioBench.h"

#include <QtEndian>
#include <QtTest>

#include <cmath>

namespace {

const QString kSettings = QStringLiteral("KestrixIndustrialIo.ini");

} // namespace

IioBench::IioBench(const QByteArray& settings)
{
    writeSettings(kSettings, settings);
    m_driver = std::make_unique<PluginDriver>(QStringLiteral(PLUGIN_PATH));
    if (!m_driver->Start())
        qFatal("The plug-in does not start: %s", qPrintable(m_driver->ErrorString()));
}

IioBench::~IioBench()
{
    removeSettings(kSettings);
}

QSharedPointer<CInstrument> IioBench::Listed(int count)
{
    if (!QTest::qWaitFor([this, count] { return m_driver->Instruments().size() == count; }, kLongWaitMs))
        return {};
    return m_driver->Instruments().value(0);
}

bool IioBench::HasLogged(const char* text) const
{
    return Log().contains(QString::fromLatin1(text));
}

void IioBench::Unload()
{
    m_driver.reset();
}

QByteArray countingScan(int number)
{
    QByteArray bytes;
    for (const int count : {number, -number, 1000 + number}) {
        char stored[2];
        qToLittleEndian(static_cast<qint16>(count), stored);
        bytes.append(stored, 2);
    }
    return bytes;
}

bool isNear(double value, double expected)
{
    return std::abs(value - expected) <= 1e-4 + 1e-5 * std::abs(expected);
}

int firstCountingScan(const QVector<QSharedPointer<CFieldIntensityResult>>& samples, double count)
{
    if (samples.isEmpty())
        return -1;
    const auto first = static_cast<int>(std::lround(static_cast<double>(samples.first()->Bx()) / count));
    for (int i = 0; i < samples.size(); ++i) {
        const CFieldIntensityResult& sample = *samples.at(i);
        const int number = first + i;
        if (!isNear(static_cast<double>(sample.Bx()), number * count) ||
            !isNear(static_cast<double>(sample.By()), -number * count) ||
            !isNear(static_cast<double>(sample.Bz()), (1000 + number) * count))
            return -1;
    }
    return first;
}
