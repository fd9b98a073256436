// SPDX-License-Identifier: GPL-3.0-or-later
#include "ChirpTransform.h"

// Compiles slowly: nothing includes it that is included itself.
#include <unsupported/Eigen/FFT>

#include <algorithm>
#include <cmath>
#include <functional>

namespace {

constexpr double kExactPi = 3.141592653589793238;
/// From here on the sums over all samples of such a factor cost more than the detour.
constexpr std::size_t kLeastPrime = 100;

std::size_t largestPrimeFactor(std::size_t number)
{
    std::size_t largest = 1;
    for (std::size_t factor = 2; factor * factor <= number; ++factor) {
        while (number % factor == 0) {
            largest = factor;
            number /= factor;
        }
    }
    return number > 1 ? number : largest;
}

std::size_t powerOfTwoFrom(std::size_t least)
{
    std::size_t power = 1;
    while (power < least)
        power *= 2;
    return power;
}

} // namespace

struct ChirpTransform::Convolution
{
    Eigen::FFT<double> fft;
    Numbers filter; ///< spectrum of the chirp that runs the other way
    Numbers padded;
    Numbers spectrum;
};

ChirpTransform::ChirpTransform(std::size_t size)
    : m_size(size), m_chirp(size), m_convolution(std::make_unique<Convolution>())
{
    // The square modulo one turn, without ever becoming large.
    std::size_t square = 0;
    for (std::size_t k = 0; k < size; ++k) {
        m_chirp[k] = std::polar(1.0, -kExactPi * static_cast<double>(square) / static_cast<double>(size));
        square = (square + 2 * k + 1) % (2 * size);
    }
    Numbers& padded = m_convolution->padded;
    padded.assign(powerOfTwoFrom(2 * size - 1), 0.0);
    padded[0] = std::conj(m_chirp[0]);
    for (std::size_t k = 1; k < size; ++k) {
        padded[k] = std::conj(m_chirp[k]);
        padded[padded.size() - k] = padded[k];
    }
    m_convolution->fft.fwd(m_convolution->filter, padded);
}

ChirpTransform::~ChirpTransform() = default;

bool ChirpTransform::isFasterFor(std::size_t size)
{
    return largestPrimeFactor(size) >= kLeastPrime;
}

void ChirpTransform::forward(std::vector<std::complex<float>>& bins, const std::vector<float>& signal)
{
    Numbers values(signal.begin(), signal.end());
    transform(values);
    bins.resize(m_size);
    std::transform(values.begin(), values.end(), bins.begin(),
                   [](const std::complex<double>& value) { return std::complex<float>(value); });
}

void ChirpTransform::inverse(std::vector<float>& signal, const std::vector<std::complex<float>>& bins)
{
    // The forward transform of the conjugate bins is the conjugate of the inverse one.
    Numbers values(m_size);
    values[0] = static_cast<double>(bins[0].real());
    for (std::size_t k = 1; k <= m_size / 2; ++k) {
        values[m_size - k] = bins[k];
        values[k] = std::conj(values[m_size - k]);
    }
    transform(values);
    const float scale = static_cast<float>(1.0 / static_cast<double>(m_size));
    signal.resize(m_size);
    std::transform(values.begin(), values.end(), signal.begin(), [scale](const std::complex<double>& value) {
        return static_cast<float>(value.real()) * scale;
    });
}

void ChirpTransform::transform(Numbers& values)
{
    Numbers& padded = m_convolution->padded;
    Numbers& spectrum = m_convolution->spectrum;
    std::fill(padded.begin(), padded.end(), 0.0);
    std::transform(values.begin(), values.end(), m_chirp.begin(), padded.begin(), std::multiplies<>());
    m_convolution->fft.fwd(spectrum, padded);
    std::transform(spectrum.begin(), spectrum.end(), m_convolution->filter.begin(), spectrum.begin(),
                   std::multiplies<>());
    m_convolution->fft.inv(padded, spectrum);
    std::transform(m_chirp.begin(), m_chirp.end(), padded.begin(), values.begin(), std::multiplies<>());
}
