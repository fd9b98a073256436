// SPDX-License-Identifier: MIT
#include "SerialBoardSettings.h"

#include "CIniReader.h"

#include <QHash>
#include <QSettings>
#include <QStringList>

#include <algorithm>

namespace {

using Column = CBoardLineParser::Column;

constexpr double kMinTimeoutS = 0.1;
constexpr double kMaxTimeoutS = 60;

// Commas make a list of what a settings file holds.
QStringList words(const QString& key)
{
    const QSettings file(SerialBoardSettings::FilePath(), QSettings::IniFormat);
    return file.value(key).toStringList().join(QLatin1Char(' ')).split(QLatin1Char(' '), Qt::SkipEmptyParts);
}

CUnits::UnitType readUnit(QString text)
{
    text.replace(QChar(0x3BC), QLatin1Char('u')).replace(QChar(0xB5), QLatin1Char('u'));
    static const QHash<QString, CUnits::UnitType> units{
        {QStringLiteral("t"), CUnits::TESLA},        {QStringLiteral("mt"), CUnits::MILLI_TESLA},
        {QStringLiteral("ut"), CUnits::MICRO_TESLA}, {QStringLiteral("nt"), CUnits::NANO_TESLA},
        {QStringLiteral("g"), CUnits::GAUSS},        {QStringLiteral("gauss"), CUnits::GAUSS},
        {QStringLiteral("mg"), CUnits::MILLI_GAUSS}};
    return units.value(text.toLower(), CUnits::UNKNOWN);
}

QVector<Column> readColumns(const QStringList& names)
{
    static const QHash<QString, Column> columns{
        {QStringLiteral("x"), Column::X},    {QStringLiteral("y"), Column::Y},
        {QStringLiteral("z"), Column::Z},    {QStringLiteral("time"), Column::Time},
        {QStringLiteral("t"), Column::Time}, {QStringLiteral("temperature"), Column::Temperature},
        {QStringLiteral("-"), Column::Other}};
    QVector<Column> read;
    for (const QString& name : names)
        read.append(columns.value(name.toLower(), Column::Other));
    for (const Column axis : {Column::X, Column::Y, Column::Z}) {
        if (read.count(axis) != 1)
            return {};
    }
    return read;
}

} // namespace

QString SerialBoardSettings::FilePath()
{
    return CIniReader::PathOf(QStringLiteral("KestrixSerialBoard.ini"));
}

SerialBoardSettings SerialBoardSettings::Load()
{
    SerialBoardSettings settings;
    const CIniReader reader(FilePath());

    settings.port = reader.Text("Port/Name");
    reader.ReadInteger("Port/Speed", settings.speed);
    reader.Read("Port/TimeoutS", settings.timeoutS);
    settings.timeoutS = std::clamp(settings.timeoutS, kMinTimeoutS, kMaxTimeoutS);

    settings.unit = readUnit(reader.Text("Board/Unit"));
    reader.Read("Board/Scale", settings.scale);
    settings.columns = readColumns(words(QStringLiteral("Board/Columns")));
    reader.Read("Board/Range", settings.range);
    settings.range = std::max(0.0, settings.range);
    reader.Read("Board/Uncertainty", settings.uncertainty);
    settings.uncertainty = std::max(0.0, settings.uncertainty);
    settings.manufacturer = reader.Text("Board/Manufacturer");
    settings.model = reader.Text("Board/Model");
    settings.calibrationDate = QDate::fromString(reader.Text("Board/CalibrationDate"), Qt::ISODate);
    return settings;
}
