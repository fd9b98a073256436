// SPDX-License-Identifier: GPL-3.0-or-later
#include "SpectralAnalysis.h"

#include "ComputeError.h"
#include "SignalStatistics.h"

// Compiles slowly: nothing else includes it.
#include <unsupported/Eigen/FFT>

#include <algorithm>
#include <cmath>
#include <complex>
#include <limits>

namespace {

constexpr float kPi = 3.1415927F;
constexpr const char* kBandsPlace = "ComputeACFigureOfMeritPerBand";

using Statistic = bool (*)(const std::vector<float>& signal, float& result);

Statistic statisticOf(int figureOfMeritIndex)
{
    switch (figureOfMeritIndex) {
    case 0:
        return &ComputeRMSValue;
    case 1:
        return &ComputeP2PValue;
    case 2:
        return &ComputeStdDevValue;
    default:
        return nullptr;
    }
}

/// Rounds half away from zero. A sampling rate that is not a number, or no finite one, must not leave the
/// range of the index.
unsigned binAt(float position)
{
    const float bin = std::round(position);
    if (!(bin > 0.0F))
        return 0;
    // The power of two after the largest index; the index itself is no float.
    if (bin >= 4294967296.0F)
        return std::numeric_limits<unsigned>::max();
    return static_cast<unsigned>(bin);
}

/// The bins of one band: those of positive frequencies, and their mirror images.
struct BinRanges
{
    unsigned low = 0;     ///< first bin
    unsigned lowEnd = 0;  ///< past the last bin
    unsigned high = 0;    ///< first mirrored bin
    unsigned highEnd = 0; ///< past the last mirrored bin

    bool isEmpty() const { return !(low < lowEnd && high < highEnd); }
};

void copyBins(const std::vector<std::complex<float>>& from, std::vector<std::complex<float>>& to,
              std::size_t begin, std::size_t end)
{
    end = std::min(end, from.size());
    for (std::size_t bin = begin; bin < end; ++bin)
        to[bin] = from[bin];
}

void checkBands(const std::vector<float>& signal, const std::vector<float>& frequencies)
{
    if (signal.size() < 2)
        throw ComputeError("Need signal with at least 2 samples", kBandsPlace);
    if (frequencies.empty())
        throw ComputeError("Need at least one frequency range", kBandsPlace);
    float previous = 0.0F;
    for (const float frequency : frequencies) {
        // So written a value that is not a number fails too.
        if (!(frequency > previous))
            throw ComputeError("Frequencies ust be in ascending order", kBandsPlace);
        previous = frequency;
    }
}

} // namespace

bool ComputeSpectrum(const std::vector<float>& signal, std::vector<float>& spectrum)
{
    spectrum.clear();
    const std::size_t size = signal.size();
    if (size < 2)
        throw ComputeError("Need signal with at least 2 samples", "ComputeSpectrum");

    const auto last = static_cast<float>(size - 1);
    std::vector<float> windowed(size);
    for (std::size_t n = 0; n < size; ++n) {
        const float sine = std::sin(static_cast<float>(n) * kPi / last);
        windowed[n] = signal[n] * (sine * sine);
    }

    Eigen::FFT<float> fft;
    fft.SetFlag(Eigen::FFT<float>::HalfSpectrum);
    std::vector<std::complex<float>> bins;
    fft.fwd(bins, windowed);

    const float scale = 2.0F / static_cast<float>(size);
    spectrum.reserve(bins.size());
    for (const std::complex<float>& bin : bins)
        spectrum.push_back(std::hypot(bin.real(), bin.imag()) * scale);
    return true;
}

// The frequencies are the function's own, whoever calls it.
// NOLINTNEXTLINE(performance-unnecessary-value-param)
bool ComputeACFigureOfMeritPerBand(const std::vector<float>& signal, std::vector<float> frequencies,
                                   int figureOfMeritIndex, std::vector<float>& figuresOfMerit,
                                   float samplingRate)
{
    figuresOfMerit.clear();
    checkBands(signal, frequencies);
    const Statistic statistic = statisticOf(figureOfMeritIndex);

    Eigen::FFT<float> fft;
    std::vector<std::complex<float>> whole;
    fft.fwd(whole, signal);
    std::vector<std::complex<float>> band;
    std::vector<float> rebuilt;

    const float half = samplingRate * 0.5F;
    const float binWidth = samplingRate / static_cast<float>(signal.size());
    BinRanges bins;
    bins.high = static_cast<unsigned>(signal.size());
    float upper = 0.0F;
    figuresOfMerit.reserve(frequencies.size());
    for (const float frequency : frequencies) {
        const float previous = upper;
        upper = std::min(half, frequency);
        if (previous >= half) {
            figuresOfMerit.push_back(0.0F);
            continue;
        }
        // Also a band without bins moves the edge from which the next one begins.
        bins.low = bins.lowEnd;
        bins.highEnd = bins.high;
        bins.lowEnd = binAt(upper / binWidth);
        bins.high = binAt((samplingRate - upper) / binWidth);
        if (bins.isEmpty()) {
            figuresOfMerit.push_back(0.0F);
            continue;
        }
        band.assign(whole.size(), {});
        copyBins(whole, band, bins.low, bins.lowEnd);
        // The inverse transform takes bins up to N/2 and mirrors them itself: of the upper bins only the one
        // at N/2 matters, which no range of lower bins has.
        copyBins(whole, band, bins.high, bins.highEnd);
        fft.inv(rebuilt, band);
        float figure = 0.0F;
        if (statistic != nullptr && !statistic(rebuilt, figure))
            throw ComputeError("Could not compute figure of merit", kBandsPlace);
        figuresOfMerit.push_back(figure);
    }
    return true;
}
