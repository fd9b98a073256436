// SPDX-License-Identifier: GPL-3.0-or-later
#include "ReferenceAnalysis.h"

#include <algorithm>
#include <cmath>
#include <complex>

namespace {

const double kPi = std::acos(-1.0);

struct Waves
{
    explicit Waves(std::size_t size) : cosine(size), sine(size)
    {
        for (std::size_t i = 0; i < size; ++i) {
            const double angle = 2.0 * kPi * static_cast<double>(i) / static_cast<double>(size);
            cosine[i] = std::cos(angle);
            sine[i] = std::sin(angle);
        }
    }

    std::vector<double> cosine;
    std::vector<double> sine;
};

/// Sum of x[n] exp(-2 π i k n / N).
std::complex<double> bin(const std::vector<double>& signal, const Waves& waves, std::size_t k)
{
    double real = 0.0;
    double imaginary = 0.0;
    std::size_t phase = 0;
    const std::size_t size = signal.size();
    const double* const cosine = waves.cosine.data();
    const double* const sine = waves.sine.data();
    for (const double value : signal) {
        real += value * cosine[phase];
        imaginary -= value * sine[phase];
        phase += k;
        if (phase >= size)
            phase -= size;
    }
    return {real, imaginary};
}

double meanOf(const std::vector<double>& signal)
{
    double sum = 0.0;
    for (const double value : signal)
        sum += value;
    return sum / static_cast<double>(signal.size());
}

} // namespace

namespace ReferenceAnalysis {

std::vector<double> widened(const std::vector<float>& values)
{
    return {values.begin(), values.end()};
}

std::vector<double> spectrum(const std::vector<float>& signal)
{
    const std::size_t size = signal.size();
    std::vector<double> windowed(size);
    for (std::size_t n = 0; n < size; ++n) {
        // The textbook's form of the same window.
        const double angle = 2.0 * kPi * static_cast<double>(n) / static_cast<double>(size - 1);
        windowed[n] = static_cast<double>(signal[n]) * 0.5 * (1.0 - std::cos(angle));
    }
    const Waves waves(size);
    std::vector<double> amplitudes;
    for (std::size_t k = 0; k <= size / 2; ++k)
        amplitudes.push_back(2.0 * std::abs(bin(windowed, waves, k)) / static_cast<double>(size));
    return amplitudes;
}

std::vector<double> bandPass(const std::vector<float>& signal, std::size_t begin, std::size_t end)
{
    const std::size_t size = signal.size();
    const std::vector<double> wide = widened(signal);
    const Waves waves(size);
    std::vector<double> result(size, 0.0);
    for (std::size_t k = begin; k < end && k <= size / 2; ++k) {
        const bool hasMirrorImage = k != 0 && 2 * k != size;
        const std::complex<double> amplitude =
            bin(wide, waves, k) * ((hasMirrorImage ? 2.0 : 1.0) / static_cast<double>(size));
        std::size_t phase = 0;
        for (double& value : result) {
            value += amplitude.real() * waves.cosine[phase] - amplitude.imag() * waves.sine[phase];
            phase = (phase + k) % size;
        }
    }
    return result;
}

double rms(const std::vector<double>& signal)
{
    double sum = 0.0;
    for (const double value : signal)
        sum += value * value;
    return std::sqrt(sum / static_cast<double>(signal.size()));
}

double peakToPeak(const std::vector<double>& signal)
{
    const auto [min, max] = std::minmax_element(signal.begin(), signal.end());
    return *max - *min;
}

double standardDeviation(const std::vector<double>& signal)
{
    const double mean = meanOf(signal);
    double sum = 0.0;
    for (const double value : signal)
        sum += (value - mean) * (value - mean);
    return std::sqrt(sum / static_cast<double>(signal.size() - 1));
}

std::vector<std::pair<double, double>> peaks(const std::vector<float>& spectrum, double resolution,
                                             double thresholdDb)
{
    std::vector<double> sorted = widened(spectrum);
    std::sort(sorted.begin(), sorted.end());
    const std::size_t size = sorted.size();
    const double median = size % 2 == 0 ? sorted[size / 2] : (sorted[size / 2 - 1] + sorted[size / 2]) / 2.0;
    const double threshold = median * std::pow(10.0, thresholdDb / 20.0);

    std::vector<std::pair<double, double>> found;
    for (std::size_t begin = 0; begin + 2 < size; ++begin) {
        const bool isStart = static_cast<double>(spectrum[begin]) > threshold &&
                             (begin == 0 || !(static_cast<double>(spectrum[begin - 1]) > threshold));
        if (!isStart)
            continue;
        std::size_t top = begin;
        std::size_t end = begin;
        for (; end<size&& static_cast<double>(spectrum[end])> threshold; ++end) {
            if (spectrum[end] > spectrum[top])
                top = end;
        }
        auto position = static_cast<double>(top);
        auto height = static_cast<double>(spectrum[top]);
        if (top > begin && top + 1 < end) {
            // Vertex of the parabola y = a x² + b x + c through the three bins.
            const auto left = static_cast<double>(spectrum[top - 1]);
            const auto right = static_cast<double>(spectrum[top + 1]);
            const double a = (left + right) / 2.0 - height;
            const double b = (right - left) / 2.0;
            position -= b / (2.0 * a);
            height -= b * b / (4.0 * a);
        }
        const double frequency = position * resolution;
        found.emplace_back(frequency, frequency > 0.0 ? 2.0 * height : height);
    }
    return found;
}

} // namespace ReferenceAnalysis
