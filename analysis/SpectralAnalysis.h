// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <vector>

// Analysis of one block of equally spaced samples by Fourier transform, in single precision. Any length is
// taken as it stands; one with a large prime factor takes time that grows with the square of that factor.
// Nothing is kept between calls. Pure functions: any thread. They return true and throw ComputeError for bad
// input.

/// Amplitude spectrum: N/2+1 bins, bin k at k * sampling rate / N, in the unit of the samples.
///
/// Each bin is 2/N times the magnitude of the transform of the samples under a symmetric Hann window,
/// sin²(π n / (N-1)). The mean is not removed, bin 0 and the last one are scaled as the others, and the
/// window's gain of one half is not made up for: a sine of amplitude A with a whole number of periods reads
/// A/2, a constant C reads about C in bin 0. Needs at least 2 samples; the spectrum is empty else.
bool ComputeSpectrum(const std::vector<float>& signal, std::vector<float>& spectrum);

/// How much of a signal lies in each frequency band, by an ideal band-pass: all other bins of the transform
/// are set to 0 and the signal is rebuilt. There is no window.
///
/// `frequencies` are the upper ends of the bands in Hz, strictly ascending and above 0; the first band begins
/// at 0 Hz and has the mean, each further one begins where the one before ended. Band ends are rounded to
/// bins. A band without a bin and a band that begins at or above half of `samplingRate` (Hz) read 0.
/// `figureOfMeritIndex` is 0 for the RMS, 1 for the peak-to-peak value, 2 for the standard deviation; any
/// other index gives zeros. `figuresOfMerit` receives one value per band, in the unit of the samples.
/// Needs at least 2 samples and 1 band.
bool ComputeACFigureOfMeritPerBand(const std::vector<float>& signal, std::vector<float> frequencies,
                                   int figureOfMeritIndex, std::vector<float>& figuresOfMerit,
                                   float samplingRate);
