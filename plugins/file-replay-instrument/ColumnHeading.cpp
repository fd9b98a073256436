// SPDX-License-Identifier: MIT
#include "ColumnHeading.h"

#include <QHash>
#include <QRegularExpression>
#include <QSet>
#include <QVector>

namespace {

using ColumnHeading::Columns;
using ColumnHeading::FieldColumn;
using ColumnHeading::TimeColumn;
using ColumnHeading::TimeKind;

constexpr int kMaxHeadingLength = 200;

struct NamedColumn
{
    QString name; ///< lower case, letters and digits only
    FieldColumn column;
};

CUnits::UnitType unitFromText(const QString& text)
{
    QString unit = text;
    // A micro is written as the sign, as the Greek letter, or as "u".
    unit.replace(QChar(0x03BC), QChar(0x00B5)).replace(QLatin1Char('u'), QChar(0x00B5));
    return TextToUnit(unit);
}

std::optional<TimeColumn> timeColumn(const QString& heading, int index)
{
    static const QRegularExpression separators(QStringLiteral("[\\s_()\\[\\]./-]+"));
    static const QSet<QString> names{QStringLiteral("t"),         QStringLiteral("time"),
                                     QStringLiteral("timestamp"), QStringLiteral("datetime"),
                                     QStringLiteral("date"),      QStringLiteral("utc"),
                                     QStringLiteral("epoch"),     QStringLiteral("elapsed"),
                                     QStringLiteral("seconds"),   QStringLiteral("iso8601")};
    static const QHash<QString, TimeKind> kinds{
        {QStringLiteral("s"), TimeKind::Seconds},
        {QStringLiteral("sec"), TimeKind::Seconds},
        {QStringLiteral("seconds"), TimeKind::Seconds},
        {QStringLiteral("ms"), TimeKind::Milliseconds},
        {QStringLiteral("us"), TimeKind::Microseconds},
        {QString(QChar(0x00B5)) + QLatin1Char('s'), TimeKind::Microseconds},
        {QString(QChar(0x03BC)) + QLatin1Char('s'), TimeKind::Microseconds},
        {QStringLiteral("microseconds"), TimeKind::Microseconds},
        {QStringLiteral("ns"), TimeKind::Nanoseconds},
    };
    static const QSet<QString> utcNames{QStringLiteral("utc"), QStringLiteral("gmt"), QStringLiteral("ut")};
    static const QSet<QString> neutral{QStringLiteral("iso"),  QStringLiteral("8601"),
                                       QStringLiteral("time"), QStringLiteral("local"),
                                       QStringLiteral("unix"), QStringLiteral("iso8601")};

    const QStringList words = heading.toLower().split(separators, Qt::SkipEmptyParts);
    if (words.isEmpty() || !names.contains(words.first()))
        return std::nullopt;
    TimeColumn column;
    column.index = index;
    column.isUtc = utcNames.contains(words.first());
    const QStringList qualifiers = words.mid(1);
    for (const QString& word : qualifiers) {
        if (utcNames.contains(word))
            column.isUtc = true;
        else if (kinds.contains(word))
            column.kind = kinds.value(word);
        else if (!neutral.contains(word))
            return std::nullopt;
    }
    return column;
}

std::optional<NamedColumn> fieldColumn(const QString& heading, int index)
{
    static const QRegularExpression pattern(
        QStringLiteral("^(.+?)[\\s_(\\[/,-]+(T|mT|[\\x{00B5}\\x{03BC}u]T|nT|kG|mG|G)[)\\]\\s]*$"));
    static const QRegularExpression otherSigns(QStringLiteral("[^a-z0-9]"));
    if (heading.size() > kMaxHeadingLength)
        return std::nullopt;
    const QRegularExpressionMatch match = pattern.match(heading);
    if (!match.hasMatch())
        return std::nullopt;
    return NamedColumn{match.captured(1).toLower().remove(otherSigns),
                       {index, unitFromText(match.captured(2))}};
}

bool isMagnitude(const QString& name)
{
    static const QSet<QString> names{QStringLiteral("b"),      QStringLiteral("f"),
                                     QStringLiteral("norm"),   QStringLiteral("total"),
                                     QStringLiteral("bnorm"),  QStringLiteral("btotal"),
                                     QStringLiteral("absb"),   QStringLiteral("magnitude"),
                                     QStringLiteral("scalar"), QStringLiteral("bmag")};
    return names.contains(name);
}

// The three columns whose names end in the letters of `axes`.
std::optional<std::array<FieldColumn, 3>> columnsOfAxes(const QVector<NamedColumn>& candidates,
                                                        const QString& axes)
{
    std::array<FieldColumn, 3> found;
    for (int axis = 0; axis < 3; ++axis) {
        for (const NamedColumn& candidate : candidates) {
            if (found[axis].index < 0 && candidate.name.endsWith(axes.at(axis)))
                found[axis] = candidate.column;
        }
        if (found[axis].index < 0)
            return std::nullopt;
    }
    return found;
}

} // namespace

std::optional<Columns> ColumnHeading::find(const QStringList& headings)
{
    Columns columns;
    QVector<NamedColumn> candidates;
    for (int i = 0; i < headings.size(); ++i) {
        const QString heading = headings.at(i).trimmed();
        const std::optional<TimeColumn> time = timeColumn(heading, i);
        if (time && columns.time.index < 0) {
            columns.time = *time;
        } else if (const std::optional<NamedColumn> field = fieldColumn(heading, i)) {
            if (!isMagnitude(field->name))
                candidates.append(*field);
            else if (columns.magnitude.index < 0)
                columns.magnitude = field->column;
        }
    }
    if (columns.time.index < 0 || candidates.size() < 3)
        return std::nullopt;

    for (const char* axes : {"xyz", "uvw", "hez", "nez", "123"}) {
        if (const auto components = columnsOfAxes(candidates, QLatin1String(axes))) {
            columns.components = *components;
            return columns;
        }
    }
    columns.components = {candidates.at(0).column, candidates.at(1).column, candidates.at(2).column};
    return columns;
}
