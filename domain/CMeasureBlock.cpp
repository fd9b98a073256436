// SPDX-License-Identifier: MIT
#include "CMeasureBlock.h"

#include "Property.h"
#include "SixDigitText.h"

#include <QLocale>

namespace {

void appendTimestamp(TextBuffer& text, const CTimestampableResult& result)
{
    const QDate date = result.Timestamp.date();
    int year = 0;
    int month = 0;
    int day = 0;
    date.getDate(&year, &month, &day);
    // Outside the common range, and for an invalid time, the general routine has rules of its own.
    if (!result.Timestamp.isValid() || year < 1 || year > 9999) {
        const QString general =
            QLocale::c().toString(result.Timestamp, QStringLiteral("yyyy.MM.ddTHH:mm:ss"));
        text.append(general.constData(), general.size());
    } else {
        const QTime time = result.Timestamp.time();
        appendInteger(text, static_cast<quint32>(year), 4);
        text.append(QLatin1Char('.'));
        appendInteger(text, static_cast<quint32>(month), 2);
        text.append(QLatin1Char('.'));
        appendInteger(text, static_cast<quint32>(day), 2);
        text.append(QLatin1Char('T'));
        appendInteger(text, static_cast<quint32>(time.hour()), 2);
        text.append(QLatin1Char(':'));
        appendInteger(text, static_cast<quint32>(time.minute()), 2);
        text.append(QLatin1Char(':'));
        appendInteger(text, static_cast<quint32>(time.second()), 2);
    }
    text.append(QLatin1Char('.'));
    appendInteger(text, result.TimestampNanoseconds, 9);
}

} // namespace

CMeasureBlock::CMeasureBlock(QObject* parent) : QObject(parent) {}

void CMeasureBlock::SetComment(const QString& comment)
{
    storeAndEmitOnChange(this, m_comment, comment, &CMeasureBlock::CommentChanged);
}

QString CMeasureBlock::FormatBlockAsText(const QString& separator) const
{
    constexpr int kUsualLineLength = 90;
    QString text;
    text.reserve(Results.size() * kUsualLineLength);
    TextBuffer line;
    for (const QSharedPointer<CFieldIntensityResult>& result : Results) {
        line.clear();
        if (!text.isEmpty())
            line.append(QLatin1Char('\n'));
        appendTimestamp(line, *result);
        for (const tFlux value : {result->B(), result->BBprime(), result->Bx(), result->By(), result->Bz()}) {
            line.append(separator.constData(), separator.size());
            appendSixDigits(line, value);
        }
        line.append(separator.constData(), separator.size());
        appendInteger(line, result->Temperature(), 1);
        line.append(separator.constData(), separator.size());
        appendSixDigits(line, result->dB());
        text.append(line.constData(), line.size());
    }
    return text;
}

QStringList CMeasureBlock::ColumnHeadings()
{
    return {QStringLiteral("Timestamp"), QStringLiteral("B"),  QStringLiteral("B.B'"), QStringLiteral("Bx"),
            QStringLiteral("By"),        QStringLiteral("Bz"), QStringLiteral("Temp"), QStringLiteral("dB")};
}
