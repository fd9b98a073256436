// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "PluginDriver.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>
#include <QtTest>

#include <cmath>
#include <memory>

/// A folder of recordings and the plug-in that plays them.
class FileReplayFixture
{
protected:
    const QString kSettings = QStringLiteral("KestrixFileReplay.ini");

    std::unique_ptr<QTemporaryDir> m_folder;
    std::unique_ptr<PluginDriver> m_driver;

    void begin() { m_folder = std::make_unique<QTemporaryDir>(); }
    void end()
    {
        m_driver.reset();
        removeSettings(kSettings);
    }

    static double value(tFlux flux) { return static_cast<double>(flux); }

    static bool isClose(double a, double b) { return std::abs(a - b) <= 1e-6 * std::abs(b); }

    static QByteArray iagaText(const QByteArray& axes, const QByteArray& rows)
    {
        return " Format                 IAGA-2002                                    |\n"
               " Geodetic Latitude      310086.6051                                  |\n"
               " # a comment                                                         |\n"
               "DATE       TIME         DOY     WIC" +
               axes.mid(0, 1) + "      WIC" + axes.mid(1, 1) + "      WIC" + axes.mid(2, 1) + "      WIC" +
               axes.mid(3, 1) + "   |\n" + rows;
    }

    static QByteArray recordText(const QByteArray& version, const QByteArray& rows)
    {
        return "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<NorvaneXmlRecord ver=\"1.0\">\n"
               "<header><src>Kestrix v1.2.4</src></header>\n"
               "<body type=\"tQDR_BODY_KESTRIX\" ver=\"1.1\"><comment></comment><instrument>x</instrument>\n"
               "<dataset type=\"tQDR_DATASET_KESTRIX_MEASUREMENT\" ver=\"" +
               version +
               "\"><headings colsep=\";\">Timestamp</headings>\n"
               "<parameters>Units=mT Range=0 AutoRange=1 TriggerMode=Continuous AcqRate=4 DispRate=2 Avg=1 "
               "FreqMin=0 FreqMax=2 Bins=1 BlockSize=2</parameters>\n"
               "<measurements><comment></comment><flux>" +
               rows + "</flux></measurements></dataset></body></NorvaneXmlRecord>\n";
    }

    void write(const QString& name, const QByteArray& text) const
    {
        const QString path = m_folder->filePath(name);
        QDir().mkpath(QFileInfo(path).absolutePath());
        QFile file(path);
        QVERIFY(file.open(QIODevice::WriteOnly));
        QCOMPARE(file.write(text), text.size());
    }

    void start(const QByteArray& keys = "Speed=0\n")
    {
        writeSettings(kSettings, "[Replay]\nFolder=" + m_folder->path().toUtf8() + '\n' + keys);
        m_driver = std::make_unique<PluginDriver>(QStringLiteral(PLUGIN_PATH));
        QVERIFY2(m_driver->Start(), qPrintable(m_driver->ErrorString()));
    }

    QStringList serialNumbers() const
    {
        QStringList numbers;
        const auto instruments = m_driver->Instruments();
        for (const auto& instrument : instruments)
            numbers.append(instrument->SerialNumber());
        return numbers;
    }

    // Plays a file to its end.
    void play(Session& session) const
    {
        session.blocks.clear();
        session.instrument->StartMeasurement();
        QTRY_VERIFY_WITH_TIMEOUT(!session.instrument->IsRunning(), 20000);
    }
};
