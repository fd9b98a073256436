// SPDX-License-Identifier: GPL-3.0-or-later
#include "RecordFormat.h"

#include "CMeasureBlock.h"
#include "COrientation.h"
#include "CPosition.h"
#include "ProductInfo.h"

#include <QDateTime>
#include <QLocale>

namespace {

QString joined(double first, double second, double third)
{
    constexpr int kDigits = 6;
    return QString::number(first, 'g', kDigits) + RecordFormat::kSeparator +
           QString::number(second, 'g', kDigits) + RecordFormat::kSeparator +
           QString::number(third, 'g', kDigits);
}

} // namespace

namespace RecordFormat {

QString source()
{
    return kApplicationName + QStringLiteral(" v") + kApplicationVersion;
}

QString timeOfSave()
{
    // The digits of a file are those of the C locale, whatever the user's are.
    return QLocale::c().toString(QDateTime::currentDateTime(), QStringLiteral("yyyy.MM.ddTHH:mm:ss"));
}

QString columnHeadings()
{
    return CMeasureBlock::ColumnHeadings().join(kSeparator);
}

QString toText(const CPosition& position)
{
    return joined(position.X(), position.Y(), position.Z());
}

QString toText(const COrientation& orientation)
{
    return joined(orientation.Roll(), orientation.Pitch(), orientation.Yaw());
}

} // namespace RecordFormat
