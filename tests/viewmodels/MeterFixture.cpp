// SPDX-License-Identifier: GPL-3.0-or-later
#include "MeterFixture.h"

#include "CMeterOperationViewModel.h"

#include <cmath>

MeterPointer makeMeter(MeasureFixture& f)
{
    return std::make_unique<CMeterOperationViewModel>(&f.operation, &f.settings, &f.notifier);
}

void deliver(MeasureFixture& f, const QSharedPointer<CMeasureBlock>& block)
{
    f.operation.OnNewMeasure(block);
}

Sample field(float bx, float by, float bz)
{
    Sample sample;
    sample.bx = bx;
    sample.by = by;
    sample.bz = bz;
    sample.b = std::sqrt(bx * bx + by * by + bz * bz);
    return sample;
}

Sample magnitude(float b)
{
    Sample sample;
    sample.b = b;
    sample.bx = b;
    sample.by = b;
    sample.bz = b;
    sample.bbPrime = b;
    return sample;
}

QVector<float> tableB(CMeterOperationViewModel& meter)
{
    CMeasureBlockData& table = *meter.MeterOperationDatasetViewModel()->TableData();
    QVector<float> values;
    for (int row = 0; row < table.rowCount(); ++row)
        values.append(table.data(table.index(row, 0), CMeasureBlockData::BRole).toFloat());
    return values;
}

QStringList lines(const char* text)
{
    return QString::fromUtf8(text).split(QLatin1Char(' '));
}
