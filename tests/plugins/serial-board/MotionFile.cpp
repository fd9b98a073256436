// SPDX-License-Identifier: GPL-3.0-or-later
#include "MotionFile.h"

#include <QDir>
#include <QFile>

#include <cmath>

namespace {

QByteArray number(double value, int decimals = 3)
{
    return QByteArray::number(value, 'f', decimals);
}

QByteArray three(const FieldVector& field, const char* separator, int decimals = 3)
{
    return number(field.x, decimals) + separator + number(field.y, decimals) + separator +
           number(field.z, decimals);
}

} // namespace

QVector<FieldVector> readMotionFile(int count)
{
    const QByteArray fromEnvironment = qgetenv("KESTRIX_SHARED_DATA");
    const QString folder = fromEnvironment.isEmpty() ? QStringLiteral(SHARED_DATA_PATH)
                                                     : QString::fromLocal8Bit(fromEnvironment);
    QFile file(folder + QStringLiteral("/broad-motion-286hz/30_disturbed_stationary_magnet_C.csv"));
    QVector<FieldVector> rows;
    if (!file.open(QIODevice::ReadOnly))
        return rows;
    file.readLine();
    while (rows.size() < count && !file.atEnd()) {
        const QList<QByteArray> cells = file.readLine().split(',');
        rows.append({cells.at(1).toDouble(), cells.at(2).toDouble(), cells.at(3).toDouble()});
    }
    return rows;
}

QVector<NamedFormat> allFormats()
{
    QVector<NamedFormat> formats;
    formats.append({"labels",
                    [](const FieldVector& f, double) {
                        return "X: " + number(f.x) + "  Y: " + number(f.y) + "  Z: " + number(f.z) +
                               "  uT\r\n";
                    },
                    "Magnetometer ready\r\n", 1, true});
    formats.append({"commas and empty lines",
                    [](const FieldVector& f, double) {
                        return "X: " + number(f.x) + ", Y: " + number(f.y) + ", Z: " + number(f.z) +
                               " uT\n\n";
                    },
                    {},
                    1,
                    true});
    formats.append({"axis by axis",
                    [](const FieldVector& f, double) {
                        return "X: " + number(f.x) + " uT\nY: " + number(f.y) + " uT\nZ: " + number(f.z) +
                               " uT\n";
                    },
                    {},
                    1,
                    true});
    formats.append({"unit at each value",
                    [](const FieldVector& f, double) {
                        return "X = " + number(f.x / 1e3, 6) + " mT; Y = " + number(f.y / 1e3, 6) +
                               " mT; Z = " + number(f.z / 1e3, 6) + " mT\n";
                    },
                    {},
                    1e3,
                    true});
    formats.append({"bare", [](const FieldVector& f, double) { return three(f, " ; ") + '\n'; }});
    formats.append({"brackets", [](const FieldVector& f, double) {
                        return "magX[" + number(f.x) + "] magY[" + number(f.y) + "] magZ[" + number(f.z) +
                               "] temperature(C)[25.0]\n";
                    }});
    formats.append({"header, time in ms, temperature",
                    [](const FieldVector& f, double timeS) {
                        return QByteArray::number(std::floor(timeS * 1e3), 'f', 0) + ',' + three(f, ",") +
                               ",25.0\n";
                    },
                    "time,x (uT),y (uT),z (uT),temp\n", 1, true, true});
    formats.append({"tabs, time in us that wraps",
                    [](const FieldVector& f, double timeS) {
                        // Half a second after the start, while the line is learnt or read.
                        const double us =
                            std::fmod(std::floor(timeS * 1e6) + 4294967296.0 - 5e5, 4294967296.0);
                        return QByteArray::number(us, 'f', 0) + '\t' + three(f, "\t") + '\n';
                    },
                    {},
                    1,
                    false,
                    true});
    formats.append({"plotter", [](const FieldVector& f, double) {
                        return "x:" + number(f.x) + ",y:" + number(f.y) + ",z:" + number(f.z) + '\n';
                    }});
    formats.append({"JSON with time in s",
                    [](const FieldVector& f, double timeS) {
                        return "{\"t\": " + number(timeS, 6) + ", \"x\": " + number(f.x) +
                               ", \"y\": " + number(f.y) + ", \"z\": " + number(f.z) + "}\n";
                    },
                    {},
                    1,
                    false,
                    true});
    formats.append({"JSON, bare keys, gauss",
                    [](const FieldVector& f, double) {
                        return "{unit:\"mG\",x:" + number(f.x * 10, 2) + ",y:" + number(f.y * 10, 2) +
                               ",z:" + number(f.z * 10, 2) + "}\n";
                    },
                    {},
                    0.1,
                    true});
    return formats;
}
