// SPDX-License-Identifier: MIT
#include "CBoardLineParser.h"

#include <QHash>
#include <QRegularExpression>
#include <QStringList>

#include <algorithm>
#include <cmath>

namespace {

using Column = CBoardLineParser::Column;

constexpr int kMaxLineLength = 512;
// Lines of four columns after which it is clear whether the first one is a clock.
constexpr int kLinesToTellTime = 4;
// Lines in a row after which a board is believed to print something else than before.
constexpr int kLinesToChange = 4;
// No field has so many of any unit; what is less is a float in all of them.
constexpr double kGreatestValue = 1e20;

const QString kNumber = QStringLiteral("[+-]?(?:\\d+\\.?\\d*|\\.\\d+)(?:[eE][+-]?\\d+)?");
const QString kUnit = QStringLiteral("[unm]?T|[mM]?G|[gG]auss");

// Plain text with "u" for each way to write a micro, or nothing if the line has signs that no board prints.
std::optional<QString> plainText(QByteArray line)
{
    if (line.size() > kMaxLineLength)
        return std::nullopt;
    line.replace("\xC2\xB5", "u").replace("\xCE\xBC", "u").replace('\xB5', 'u');
    line.replace("\xC2\xB0", "").replace("\xB0", "");
    line = line.trimmed();
    const bool isPlain =
        std::all_of(line.cbegin(), line.cend(), [](char c) { return c == '\t' || (c >= ' ' && c <= '~'); });
    if (!isPlain)
        return std::nullopt;
    return QString::fromLatin1(line);
}

CUnits::UnitType unitOf(const QString& text)
{
    static const QHash<QString, CUnits::UnitType> units{
        {QStringLiteral("T"), CUnits::TESLA},        {QStringLiteral("mT"), CUnits::MILLI_TESLA},
        {QStringLiteral("uT"), CUnits::MICRO_TESLA}, {QStringLiteral("nT"), CUnits::NANO_TESLA},
        {QStringLiteral("G"), CUnits::GAUSS},        {QStringLiteral("gauss"), CUnits::GAUSS},
        {QStringLiteral("Gauss"), CUnits::GAUSS},    {QStringLiteral("mG"), CUnits::MILLI_GAUSS}};
    return units.value(text, CUnits::UNKNOWN);
}

// Value of the last digit written.
double stepOf(const QString& number)
{
    const int exponentAt = number.indexOf(QLatin1Char('e'), 0, Qt::CaseInsensitive);
    const int exponent = exponentAt < 0 ? 0 : number.midRef(exponentAt + 1).toInt();
    const QStringRef mantissa = number.leftRef(exponentAt);
    const int point = mantissa.indexOf(QLatin1Char('.'));
    const int decimals = point < 0 ? 0 : mantissa.size() - point - 1;
    return std::pow(10.0, exponent - decimals);
}

QVector<Column> fieldAndTemperature()
{
    return {Column::X, Column::Y, Column::Z, Column::Temperature};
}

// False if the two contradict each other.
bool mergeUnit(CUnits::UnitType& unit, CUnits::UnitType other)
{
    if (unit == CUnits::UNKNOWN)
        unit = other;
    return other == CUnits::UNKNOWN || unit == other;
}

struct Label
{
    Column column = Column::Other;
    bool isMagnetic = false; ///< the name says that it is a field, which tells it from a plain x, y, z
    CUnits::UnitType unit = CUnits::UNKNOWN;
    BoardTimeUnit timeUnit = BoardTimeUnit::Unknown;
};

std::optional<Label> timeLabel(const QString& name)
{
    static const QRegularExpression pattern(
        QStringLiteral("^(?:(?:t|time|timestamp|elapsed)(?:[ "
                       "_(\\[]+(s|sec|seconds|ms|us)[)\\]]*)?|(millis|micros|ms|us))$"));
    static const QHash<QString, BoardTimeUnit> units{{QStringLiteral("s"), BoardTimeUnit::Seconds},
                                                     {QStringLiteral("sec"), BoardTimeUnit::Seconds},
                                                     {QStringLiteral("seconds"), BoardTimeUnit::Seconds},
                                                     {QStringLiteral("ms"), BoardTimeUnit::Milliseconds},
                                                     {QStringLiteral("millis"), BoardTimeUnit::Milliseconds},
                                                     {QStringLiteral("us"), BoardTimeUnit::Microseconds},
                                                     {QStringLiteral("micros"), BoardTimeUnit::Microseconds}};
    // A capital T alone is a temperature.
    const QRegularExpressionMatch match =
        pattern.match(name == QLatin1String("T") ? QString() : name.toLower());
    if (!match.hasMatch())
        return std::nullopt;
    Label label;
    label.column = Column::Time;
    label.timeUnit = units.value(match.captured(1) + match.captured(2), BoardTimeUnit::Unknown);
    return label;
}

Label labelOf(const QString& name)
{
    static const QRegularExpression axis(
        QStringLiteral("^((?:mag(?:netic|neto|netometer)?|field|flux|[bmh])[ _.-]?)?([xyz])"
                       "(?:[ _(\\[/]+(%1)[)\\]]*)?$")
            .arg(kUnit),
        QRegularExpression::CaseInsensitiveOption);
    static const QRegularExpression temperature(
        QStringLiteral("^(?:t|temp|temperature)(?:[ _(\\[]+(?:deg)?c[)\\]]*)?$"),
        QRegularExpression::CaseInsensitiveOption);

    if (const std::optional<Label> time = timeLabel(name))
        return *time;
    Label label;
    if (const auto match = axis.match(name); match.hasMatch()) {
        const QString letter = match.captured(2).toLower();
        label.column = letter == QLatin1String("x")   ? Column::X
                       : letter == QLatin1String("y") ? Column::Y
                                                      : Column::Z;
        label.isMagnetic = match.capturedLength(1) > 0;
        label.unit = unitOf(match.captured(3));
    } else if (temperature.match(name).hasMatch()) {
        label.column = Column::Temperature;
    }
    return label;
}

} // namespace

/// What a labelled line holds.
struct CBoardLineParser::Labelled
{
    struct Axis
    {
        double value = 0;
        bool isMagnetic = false;
    };

    std::array<std::optional<Axis>, 3> axes;
    BoardReading reading;
    bool isContradictory = false;

    void Take(const Label& label, const QString& number, CUnits::UnitType unit)
    {
        const double value = number.toDouble();
        switch (label.column) {
        case Column::X:
        case Column::Y:
        case Column::Z:
            takeAxis(axes[static_cast<std::size_t>(label.column)], {value, label.isMagnetic});
            isContradictory |= !mergeUnit(reading.unit, label.unit) || !mergeUnit(reading.unit, unit);
            reading.step = std::max(reading.step, stepOf(number));
            break;
        case Column::Time:
            reading.deviceTime = value;
            reading.timeUnit = label.timeUnit;
            break;
        case Column::Temperature:
            reading.temperature = value;
            break;
        case Column::Other:
            break;
        }
    }

private:
    void takeAxis(std::optional<Axis>& axis, Axis value)
    {
        // A board with more sensors names which x it means; the same name twice are two lines run together.
        isContradictory |= axis && axis->isMagnetic == value.isMagnetic;
        if (!axis || value.isMagnetic)
            axis = value;
    }
};

CBoardLineParser::CBoardLineParser(QVector<Column> columns) : m_configured(std::move(columns)) {}

std::optional<BoardReading> CBoardLineParser::Feed(const QByteArray& line)
{
    static const QRegularExpression labelled(QStringLiteral("[A-Za-z)\\]\"]\\s*[:=\\[]"));
    const std::optional<QString> text = plainText(line);
    if (!text)
        return reject();
    if (text->isEmpty())
        return std::nullopt;
    return checked(text->contains(labelled) ? readLabelled(text->toLatin1()) : readColumns(text->toLatin1()));
}

void CBoardLineParser::Interrupt()
{
    m_pending = {};
    m_pendingUnit = CUnits::UNKNOWN;
    m_pendingStep = 0;
    m_firstNumbers.clear();
}

std::nullopt_t CBoardLineParser::reject()
{
    ++m_rejectedLines;
    // A broken line among those of one axis each is no sample.
    if (!m_isAxisByAxis)
        ++m_lost;
    Interrupt();
    return std::nullopt;
}

std::optional<BoardReading> CBoardLineParser::checked(std::optional<BoardReading> reading)
{
    if (!reading)
        return reading;
    for (const double value : {reading->field.x, reading->field.y, reading->field.z, reading->step}) {
        if (!(std::abs(value) < kGreatestValue))
            return reject();
    }
    if (reading->unit != CUnits::UNKNOWN) {
        m_isUnitUsual = true;
        m_numWithoutUnit = 0;
    } else if (m_isUnitUsual) {
        // The unit stands at the end: the line was cut before it.
        if (++m_numWithoutUnit < kLinesToChange)
            return reject();
        m_isUnitUsual = false;
    }
    reading->lostBefore = m_lost;
    m_lost = 0;
    return reading;
}

std::optional<BoardReading> CBoardLineParser::readLabelled(const QByteArray& line)
{
    static const QRegularExpression unitField(QStringLiteral("\"?units?\"?\\s*[:=]\\s*\"?(%1)\"?").arg(kUnit),
                                              QRegularExpression::CaseInsensitiveOption);
    static const QRegularExpression field(
        QStringLiteral(
            "\"?([A-Za-z][A-Za-z0-9_.]*(?:\\s*\\([A-Za-z/]+\\))?)\"?\\s*[:=\\[]\\s*(%1)(?![\\d.xX])\\s*\\]?"
            "(?:\\s*(%2)(?![\\w])(?!\\s*[:=\\[]))?")
            .arg(kNumber, kUnit));

    const QString text = QString::fromLatin1(line);
    Labelled found;
    if (const auto match = unitField.match(text); match.hasMatch())
        found.reading.unit = unitOf(match.captured(1));
    for (auto matches = field.globalMatch(text); matches.hasNext();) {
        const QRegularExpressionMatch match = matches.next();
        if (!std::isfinite(match.captured(2).toDouble()))
            return reject();
        found.Take(labelOf(match.captured(1).simplified()), match.captured(2), unitOf(match.captured(3)));
    }
    const auto count =
        std::count_if(found.axes.cbegin(), found.axes.cend(), [](const auto& axis) { return bool(axis); });
    if (count == 0 || found.isContradictory)
        return reject();

    if (count == 3) {
        Interrupt();
        m_isAxisByAxis = false;
        found.reading.field = {found.axes[0]->value, found.axes[1]->value, found.axes[2]->value};
        return found.reading;
    }
    // One axis to a line, in order: anything else is what is left of a broken line.
    const auto next =
        std::find_if(m_pending.cbegin(), m_pending.cend(), [](const auto& axis) { return !axis; });
    const auto axis = static_cast<std::size_t>(next - m_pending.cbegin());
    if (count == 1 && found.axes[0]) {
        Interrupt();
        m_pending[0] = found.axes[0]->value;
        m_pendingUnit = found.reading.unit;
        m_pendingStep = found.reading.step;
        return std::nullopt;
    }
    if (count > 1 || axis == 0 || !found.axes[axis] || !mergeUnit(m_pendingUnit, found.reading.unit))
        return reject();
    m_pending[axis] = found.axes[axis]->value;
    m_pendingStep = std::max(m_pendingStep, found.reading.step);
    if (axis < 2)
        return std::nullopt;
    found.reading.field = {*m_pending[0], *m_pending[1], *m_pending[2]};
    found.reading.unit = m_pendingUnit;
    found.reading.step = m_pendingStep;
    m_isAxisByAxis = true;
    Interrupt();
    return found.reading;
}

std::optional<BoardReading> CBoardLineParser::readColumns(const QByteArray& line)
{
    static const QRegularExpression separators(QStringLiteral("\\s*[,;\\t]\\s*|\\s+"));
    static const QRegularExpression number(QStringLiteral("^%1$").arg(kNumber));
    static const QRegularExpression trailingUnit(QStringLiteral("(?<=[\\d.,;\\s])(%1)$").arg(kUnit));

    QString text = QString::fromLatin1(line);
    CUnits::UnitType unit = CUnits::UNKNOWN;
    if (const auto match = trailingUnit.match(text); match.hasMatch()) {
        unit = unitOf(match.captured(1));
        text = text.left(match.capturedStart()).trimmed();
    }
    QStringList words = text.split(separators);
    // A separator behind the last number.
    if (words.size() > 1 && words.last().isEmpty())
        words.removeLast();

    QVector<double> numbers;
    for (const QString& word : qAsConst(words)) {
        const double value = number.match(word).hasMatch() ? word.toDouble() : std::nan("");
        if (!std::isfinite(value)) {
            if (!numbers.isEmpty() || !readHeader(line))
                return reject();
            return std::nullopt;
        }
        numbers.append(value);
    }
    std::optional<BoardReading> reading = readRow(numbers, unit);
    if (!reading)
        return std::nullopt;
    const QVector<Column>& columns = columnsOf(numbers);
    for (int i = 0; i < columns.size(); ++i) {
        if (columns.at(i) <= Column::Z)
            reading->step = std::max(reading->step, stepOf(words.at(i)));
    }
    return reading;
}

// Several lines that lost their ends, or one that lost its middle, are numbers, too.
bool CBoardLineParser::hasUsualSize(int numColumns)
{
    if (m_usualSize == 0)
        m_usualSize = numColumns;
    if (numColumns == m_usualSize) {
        m_numOfOtherSize = 0;
        return true;
    }
    m_numOfOtherSize = numColumns == m_otherSize ? m_numOfOtherSize + 1 : 1;
    m_otherSize = numColumns;
    if (m_numOfOtherSize < kLinesToChange)
        return false;
    m_usualSize = numColumns;
    m_numOfOtherSize = 0;
    m_fourColumns.clear();
    return true;
}

std::optional<BoardReading> CBoardLineParser::readRow(const QVector<double>& numbers, CUnits::UnitType unit)
{
    const bool isFree = m_configured.isEmpty() && m_header.isEmpty();
    if (isFree && numbers.size() >= 3 && numbers.size() <= 5 && !hasUsualSize(numbers.size()))
        return reject();
    if (HasGuessedClock() && !m_isClockSure && numbers.first() <= m_lastFirstNumber) {
        m_fourColumns.clear();
        m_firstNumbers.clear();
    }
    m_lastFirstNumber = numbers.first();
    const QVector<Column>& columns = columnsOf(numbers);
    if (columns.isEmpty()) {
        // Four columns are read once it is clear what they mean.
        if (numbers.size() != 4 || !m_configured.isEmpty() || !m_header.isEmpty())
            return reject();
        return std::nullopt;
    }
    BoardReading reading;
    reading.unit = unit;
    if (&columns == &m_header) {
        if (!mergeUnit(reading.unit, m_headerUnit))
            return reject();
        reading.timeUnit = m_headerTimeUnit;
    }
    for (int i = 0; i < numbers.size(); ++i) {
        switch (columns.at(i)) {
        case Column::X:
            reading.field.x = numbers.at(i);
            break;
        case Column::Y:
            reading.field.y = numbers.at(i);
            break;
        case Column::Z:
            reading.field.z = numbers.at(i);
            break;
        case Column::Time:
            reading.deviceTime = numbers.at(i);
            break;
        case Column::Temperature:
            reading.temperature = numbers.at(i);
            break;
        case Column::Other:
            break;
        }
    }
    return reading;
}

const QVector<Column>& CBoardLineParser::columnsOf(const QVector<double>& numbers)
{
    static const QVector<Column> unknown;
    static const QVector<Column> three{Column::X, Column::Y, Column::Z};
    static const QVector<Column> five{Column::Time, Column::X, Column::Y, Column::Z, Column::Temperature};

    if (!m_configured.isEmpty())
        return m_configured.size() == numbers.size() ? m_configured : unknown;
    if (!m_header.isEmpty())
        return m_header.size() == numbers.size() ? m_header : unknown;
    if (numbers.size() == 3)
        return three;
    if (numbers.size() == 5)
        return five;
    if (numbers.size() != 4)
        return unknown;
    if (m_fourColumns.isEmpty()) {
        m_firstNumbers.append(numbers.first());
        if (m_firstNumbers.size() < kLinesToTellTime)
            return unknown;
        const bool isClock = std::adjacent_find(m_firstNumbers.cbegin(), m_firstNumbers.cend(),
                                                std::greater_equal<>()) == m_firstNumbers.cend();
        m_fourColumns =
            isClock ? QVector<Column>{Column::Time, Column::X, Column::Y, Column::Z} : fieldAndTemperature();
    }
    return m_fourColumns;
}

bool CBoardLineParser::HasGuessedClock() const
{
    return m_configured.isEmpty() && m_header.isEmpty() && !m_fourColumns.isEmpty() &&
           m_fourColumns.first() == Column::Time;
}

void CBoardLineParser::JudgeGuessedClock(bool isClock)
{
    m_isClockSure = isClock;
    if (!isClock && HasGuessedClock())
        m_fourColumns = fieldAndTemperature();
}

bool CBoardLineParser::readHeader(const QByteArray& line)
{
    static const QRegularExpression separators(QStringLiteral("\\s*[,;\\t]\\s*"));
    static const QRegularExpression blanks(QStringLiteral("\\s+"));

    const QString text = QString::fromLatin1(line);
    const QStringList words = text.split(text.contains(separators) ? separators : blanks);
    QVector<Column> columns;
    CUnits::UnitType unit = CUnits::UNKNOWN;
    BoardTimeUnit timeUnit = BoardTimeUnit::Unknown;
    for (QString word : words) {
        const Label label = labelOf(word.remove(QLatin1Char('"')).trimmed());
        if (!mergeUnit(unit, label.unit))
            return false;
        if (label.column == Column::Time)
            timeUnit = label.timeUnit;
        columns.append(label.column);
    }
    for (const Column axis : {Column::X, Column::Y, Column::Z}) {
        if (columns.count(axis) != 1)
            return false;
    }
    m_header = columns;
    m_headerUnit = unit;
    m_headerTimeUnit = timeUnit;
    m_isUnitUsual = false;
    return true;
}
