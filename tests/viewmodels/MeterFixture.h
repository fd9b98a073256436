// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "MeasureFixture.h"

#include <memory>

class CMeterOperationViewModel;

using MeterPointer = std::unique_ptr<CMeterOperationViewModel>;

MeterPointer makeMeter(MeasureFixture& f);
/// A block as the instrument delivers it: dataset first, then the page.
void deliver(MeasureFixture& f, const QSharedPointer<CMeasureBlock>& block);
/// A sample of these components and their norm.
Sample field(float bx, float by, float bz);
/// A sample whose field values are all the same.
Sample magnitude(float b);
/// The column B of the page's table.
QVector<float> tableB(CMeterOperationViewModel& meter);
/// The words of a text that is separated by blanks.
QStringList lines(const char* text);
