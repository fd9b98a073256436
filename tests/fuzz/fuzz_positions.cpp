// SPDX-License-Identifier: GPL-3.0-or-later
// Any bytes as a positions file: nothing may crash, and the points that were read must be read again when
// they are written out in full.

#include "PositionsReader.h"

#include <QBuffer>

#include <cmath>
#include <cstdlib>
#include <vector>

namespace {

using Point = PositionsReader::Point;

std::vector<double> numbersOf(QByteArray text, bool* isGood = nullptr)
{
    QBuffer source(&text);
    source.open(QIODevice::ReadOnly);
    PositionsReader reader(&source);
    std::vector<double> numbers;
    int refusals = 0;
    reader.read(
        QStringLiteral("refused"),
        [&](const Point& point) {
            numbers.insert(numbers.end(), {point.x, point.y, point.z, point.roll, point.pitch, point.yaw});
        },
        [&] { ++refusals; });
    if (refusals > 1 || (refusals == 1 && !reader.hasError()))
        std::abort();
    if (isGood)
        *isGood = !reader.hasError();
    return numbers;
}

QByteArray element(const char* name, double value)
{
    const QByteArray number = std::isnan(value) ? QByteArray("nan") : QByteArray::number(value, 'g', 17);
    return QByteArray("<") + name + '>' + number + "</" + name + '>';
}

bool isSame(double a, double b)
{
    return a == b || (std::isnan(a) && std::isnan(b));
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const unsigned char* data, size_t size)
{
    const std::vector<double> numbers =
        numbersOf(QByteArray(reinterpret_cast<const char*>(data), static_cast<int>(size)));
    QByteArray written = "<NorvaneMappingFile ver=\"1.0\">";
    for (size_t i = 0; i < numbers.size(); i += 6)
        written += "<point>" + element("X", numbers[i]) + element("Y", numbers[i + 1]) +
                   element("Z", numbers[i + 2]) + element("Roll", numbers[i + 3]) +
                   element("Pitch", numbers[i + 4]) + element("Yaw", numbers[i + 5]) + "</point>";
    written += "</NorvaneMappingFile>";
    bool isGood = false;
    const std::vector<double> again = numbersOf(written, &isGood);
    if (!isGood || again.size() != numbers.size())
        std::abort();
    for (size_t i = 0; i < numbers.size(); ++i) {
        if (!isSame(numbers[i], again[i]))
            std::abort();
    }
    return 0;
}
