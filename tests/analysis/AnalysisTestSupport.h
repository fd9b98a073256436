// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "ComputeError.h"

#include <QString>
#include <QTest>

#include <cmath>
#include <random>
#include <string>
#include <vector>

namespace AnalysisTestSupport {

/// Message, place and what() of what `call` throws, "nothing" if it returns.
template <class Call> std::string thrownBy(Call call)
{
    try {
        call();
    } catch (const ComputeError& error) {
        if (error.what() != error.Place() + " : " + error.Message() + "\n")
            return std::string("what() is ") + error.what();
        return error.what();
    }
    return "nothing";
}

/// Noise of amplitude about 1 beside two sines and a constant; the same for a length at each run.
inline std::vector<float> sampleSignal(std::size_t size)
{
    std::mt19937 generator(static_cast<unsigned>(size));
    std::vector<float> signal(size);
    const double pi = std::acos(-1.0);
    for (std::size_t n = 0; n < size; ++n) {
        const double noise = static_cast<double>(generator()) / 2147483648.0 - 1.0;
        const double time = static_cast<double>(n);
        signal[n] = static_cast<float>(3.0 + noise + 5.0 * std::sin(2.0 * pi * 0.05 * time) +
                                       2.0 * std::cos(2.0 * pi * 0.31 * time));
    }
    return signal;
}

/// Sine of `periods` periods over the whole signal.
inline std::vector<float> sine(std::size_t size, double amplitude, double periods, double phase = 0.3)
{
    std::vector<float> signal(size);
    const double pi = std::acos(-1.0);
    for (std::size_t n = 0; n < size; ++n)
        signal[n] = static_cast<float>(
            amplitude *
            std::sin(2.0 * pi * periods * static_cast<double>(n) / static_cast<double>(size) + phase));
    return signal;
}

/// Lengths of every kind of stage of the transform: powers of two, three and five, primes, multiples of 4 and
/// not, products with a large prime.
inline const std::vector<std::size_t> kLengths = {
    2,    3,    4,    5,    6,    7,    8,    9,    10,   11,   12,   13,   15,   16,   17,   25,   27,
    31,   32,   36,   49,   60,   64,   97,   100,  101,  121,  127,  128,  169,  243,  250,  254,  255,
    256,  257,  500,  509,  512,  625,  729,  997,  998,  1000, 1001, 1021, 1022, 1023, 1024, 1025, 1331,
    2000, 2047, 2048, 2049, 2187, 2500, 3125, 3750, 4092, 4093, 4095, 4096, 4097, 4998, 4999, 5000};

/// A row for each of the lengths, in a column "size".
inline void addLengthRows()
{
    QTest::addColumn<qulonglong>("size");
    for (const std::size_t size : kLengths)
        QTest::addRow("%zu", size) << static_cast<qulonglong>(size);
}

/// Largest difference, as a share of `scale`.
inline double worstDifference(const std::vector<float>& found, const std::vector<double>& expected,
                              double scale)
{
    if (found.size() != expected.size())
        return INFINITY;
    double worst = 0.0;
    for (std::size_t i = 0; i < found.size(); ++i) {
        const double difference = std::abs(static_cast<double>(found[i]) - expected[i]) / scale;
        if (!(difference <= worst))
            worst = difference;
    }
    return worst;
}

} // namespace AnalysisTestSupport
