// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <complex>
#include <cstddef>
#include <memory>
#include <vector>

/// Discrete Fourier transform of real signals whose length has a large prime factor. A transform by factors
/// takes such a factor as one sum over all samples for each bin; this one is a convolution with a chirp, for
/// which a power of two does (L. I. Bluestein, "A linear filtering approach to the computation of discrete
/// Fourier transform", IEEE Transactions on Audio and Electroacoustics 18 (1970) 451-455). It works in double
/// precision, so that its detour costs no digit of the single precision results.
///
/// A value that is not a finite number makes all results not-a-number.
class ChirpTransform
{
public:
    /// Prepares for signals of `size` samples, at least 2.
    explicit ChirpTransform(std::size_t size);
    ChirpTransform(const ChirpTransform&) = delete;
    ChirpTransform& operator=(const ChirpTransform&) = delete;
    ~ChirpTransform();

    /// Whether it takes less time for this length than a transform by factors.
    static bool isFasterFor(std::size_t size);

    /// All bins of the signal, as many as samples.
    void forward(std::vector<std::complex<float>>& bins, const std::vector<float>& signal);
    /// The signal of these bins, scaled by 1 / size. Of them the first size / 2 + 1 are read; the others are
    /// taken as their mirror images.
    void inverse(std::vector<float>& signal, const std::vector<std::complex<float>>& bins);

private:
    using Numbers = std::vector<std::complex<double>>;
    struct Convolution;

    void transform(Numbers& values);

    const std::size_t m_size;
    Numbers m_chirp; ///< exp(-i pi k^2 / size)
    std::unique_ptr<Convolution> m_convolution;
};
