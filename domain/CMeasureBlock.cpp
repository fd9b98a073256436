// SPDX-License-Identifier: MIT
#include "CMeasureBlock.h"

#include "Property.h"

namespace {

void appendNumber(QString& text, tFlux value)
{
    text += QString::number(static_cast<double>(value), 'g', 6);
}

} // namespace

CMeasureBlock::CMeasureBlock(QObject* parent) : QObject(parent) {}

void CMeasureBlock::SetComment(const QString& comment)
{
    storeAndEmitOnChange(this, m_comment, comment, &CMeasureBlock::CommentChanged);
}

QString CMeasureBlock::FormatBlockAsText(const QString& separator) const
{
    QString text;
    for (const QSharedPointer<CFieldIntensityResult>& result : Results) {
        if (!text.isEmpty())
            text += QLatin1Char('\n');
        text += result->Timestamp.toString(QStringLiteral("yyyy.MM.ddTHH:mm:ss"));
        text += QLatin1Char('.');
        text += QStringLiteral("%1").arg(result->TimestampNanoseconds, 9, 10, QLatin1Char('0'));
        for (const tFlux value : {result->B(), result->BBprime(), result->Bx(), result->By(), result->Bz()}) {
            text += separator;
            appendNumber(text, value);
        }
        text += separator;
        text += QString::number(result->Temperature());
        text += separator;
        appendNumber(text, result->dB());
    }
    return text;
}

QStringList CMeasureBlock::ColumnHeadings()
{
    return {QStringLiteral("Timestamp"), QStringLiteral("B"),  QStringLiteral("B.B'"), QStringLiteral("Bx"),
            QStringLiteral("By"),        QStringLiteral("Bz"), QStringLiteral("Temp"), QStringLiteral("dB")};
}
