// SPDX-License-Identifier: GPL-3.0-or-later
// Times the analysis of one block beside bare transforms of the same length: the one that the analysis is
// built on, with its plan made before, and FFTW's in single precision.
#include "SpectralAnalysis.h"

#include <unsupported/Eigen/FFT>

#include <QElapsedTimer>

#include <fftw3.h>

#include <algorithm>
#include <cmath>
#include <complex>
#include <cstdio>
#include <vector>

namespace {

using Complexes = std::vector<std::complex<float>>;

/// Median of many runs, in microseconds; at least 0.2 seconds of them.
template <class Run> double medianUs(Run run)
{
    std::vector<double> times;
    QElapsedTimer whole;
    whole.start();
    while (times.size() < 15 || whole.elapsed() < 200) {
        QElapsedTimer timer;
        timer.start();
        run();
        times.push_back(static_cast<double>(timer.nsecsElapsed()) / 1000.0);
    }
    std::sort(times.begin(), times.end());
    return times[times.size() / 2];
}

std::vector<float> block(std::size_t size)
{
    std::vector<float> signal(size);
    for (std::size_t n = 0; n < size; ++n)
        signal[n] = 40.0F + std::sin(0.3F * static_cast<float>(n)) + 1e-3F * static_cast<float>(n % 7);
    return signal;
}

struct Bare
{
    double eigenUs = 0;        ///< half of the spectrum, plan made before
    double eigenFullUs = 0;    ///< all bins, plan made before
    double eigenInverseUs = 0; ///< all bins to real samples, plan made before
    double fftwUs = 0;
    double planUs = 0; ///< what the first transform takes longer
};

Bare bareTransforms(const std::vector<float>& signal)
{
    Bare bare;
    Complexes bins;
    std::vector<float> samples;
    {
        Eigen::FFT<float> fft;
        fft.SetFlag(Eigen::FFT<float>::HalfSpectrum);
        fft.fwd(bins, signal);
        bare.eigenUs = medianUs([&] { fft.fwd(bins, signal); });
        bare.planUs = medianUs([&] {
                          Eigen::FFT<float> fresh;
                          fresh.SetFlag(Eigen::FFT<float>::HalfSpectrum);
                          fresh.fwd(bins, signal);
                      }) -
                      bare.eigenUs;
    }
    {
        Eigen::FFT<float> fft;
        fft.fwd(bins, signal);
        fft.inv(samples, bins);
        bare.eigenFullUs = medianUs([&] { fft.fwd(bins, signal); });
        bare.eigenInverseUs = medianUs([&] { fft.inv(samples, bins); });
    }
    std::vector<float> input = signal;
    Complexes output(signal.size() / 2 + 1);
    const fftwf_plan plan =
        fftwf_plan_dft_r2c_1d(static_cast<int>(input.size()), input.data(),
                              reinterpret_cast<fftwf_complex*>(output.data()), FFTW_ESTIMATE);
    bare.fftwUs = medianUs([&] { fftwf_execute(plan); });
    fftwf_destroy_plan(plan);
    return bare;
}

/// The steps of a spectrum beside its transform.
void steps(const std::vector<float>& signal, double& windowUs, double& amplitudeUs, float& sink)
{
    const std::size_t size = signal.size();
    std::vector<float> windowed(size);
    windowUs = medianUs([&] {
        for (std::size_t n = 0; n < size; ++n) {
            const float sine = std::sin(static_cast<float>(n) * 3.1415927F / static_cast<float>(size - 1));
            windowed[n] = signal[n] * (sine * sine);
        }
    });
    Eigen::FFT<float> fft;
    fft.SetFlag(Eigen::FFT<float>::HalfSpectrum);
    Complexes bins;
    fft.fwd(bins, windowed);
    std::vector<float> spectrum(bins.size());
    amplitudeUs = medianUs([&] {
        for (std::size_t k = 0; k < bins.size(); ++k)
            spectrum[k] = std::hypot(bins[k].real(), bins[k].imag()) * 2.0F;
    });
    sink += windowed[size / 2] + spectrum[size / 4];
}

} // namespace

int main()
{
    float sink = 0.0F;
    std::printf("ComputeSpectrum, microseconds\n");
    std::printf("%7s %10s %10s %7s %10s %7s | %10s %10s %10s\n", "N", "spectrum", "Eigen", "ratio", "FFTW",
                "ratio", "window", "plan", "amplitude");
    for (const std::size_t size : {256, 1024, 4096, 5003, 65536}) {
        const std::vector<float> signal = block(size);
        const Bare bare = bareTransforms(signal);
        std::vector<float> spectrum;
        const double us = medianUs([&] { ComputeSpectrum(signal, spectrum); });
        double windowUs = 0.0;
        double amplitudeUs = 0.0;
        steps(signal, windowUs, amplitudeUs, sink);
        sink += spectrum[1];
        std::printf("%7zu %10.1f %10.1f %7.2f %10.1f %7.1f | %10.1f %10.1f %10.1f\n", size, us, bare.eigenUs,
                    us / bare.eigenUs, bare.fftwUs, us / bare.fftwUs, windowUs, bare.planUs, amplitudeUs);
    }

    std::printf("\nComputeACFigureOfMeritPerBand, RMS, microseconds; the bare transforms are one forward and "
                "one inverse "
                "per band\n");
    std::printf("%7s %6s %10s %10s %7s %10s %7s\n", "N", "bands", "figures", "Eigen", "ratio", "FFTW",
                "ratio");
    for (const std::size_t size : {256, 1024, 4096, 5003, 65536}) {
        const std::vector<float> signal = block(size);
        const Bare bare = bareTransforms(signal);
        for (const int bands : {10, 30}) {
            std::vector<float> limits;
            for (int i = 1; i <= bands; ++i)
                limits.push_back(0.5F * static_cast<float>(size) * static_cast<float>(i) /
                                 static_cast<float>(bands));
            std::vector<float> figures;
            const double us = medianUs(
                [&] { ComputeACFigureOfMeritPerBand(signal, limits, 0, figures, static_cast<float>(size)); });
            sink += figures.back();
            const double eigenUs = bare.eigenFullUs + bands * bare.eigenInverseUs;
            const double fftwUs = (1 + bands) * bare.fftwUs;
            std::printf("%7zu %6d %10.1f %10.1f %7.2f %10.1f %7.1f\n", size, bands, us, eigenUs, us / eigenUs,
                        fftwUs, us / fftwUs);
        }
    }
    return std::isfinite(sink) ? 0 : 1;
}
