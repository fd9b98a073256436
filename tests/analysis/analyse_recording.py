#!/usr/bin/env python3
# SPDX-License-Identifier: GPL-3.0-or-later
"""Analyses blocks of a recording with NumPy and SciPy and prints them as JSON.

usage: analyse_recording.py (RECORDING BLOCK_SIZE RATE)...

Knows nothing of the program. The samples of the x, y and z columns and of their norm are given in single precision, as
the program holds them; everything else is computed in double precision from these.
"""
import json
import sys

import numpy
from scipy import fft, signal

BLOCKS = 5


def read(path):
    """The three components, one row per sample."""
    if path.endswith(".sec"):
        with open(path, encoding="ascii") as file:
            lines = file.readlines()
        start = next(i for i, line in enumerate(lines) if line.startswith("DATE"))
        return numpy.array([[float(cell) for cell in line.split()[3:6]] for line in lines[start + 1:]])
    return numpy.genfromtxt(path, delimiter=",", skip_header=1, usecols=(1, 2, 3))


def narrow_deviation(samples):
    """Standard deviation with every operation in single precision, in the order of the samples."""
    narrow = samples.astype(numpy.float32)
    size = numpy.float32(len(narrow))
    mean = numpy.add.accumulate(narrow)[-1] / size
    squares = numpy.add.accumulate((narrow - mean) * (narrow - mean))[-1]
    return numpy.sqrt(squares / numpy.float32(len(narrow) - 1))


def analyse(samples, rate):
    size = len(samples)
    window = signal.windows.hann(size, sym=True)
    spectrum = numpy.abs(fft.rfft(samples * window)) * 2 / size
    bins = fft.rfft(samples)
    # Upper ends between two bins, and the last one beyond half of the rate.
    edges = [1, size // 50 + 2, size // 11 + 2, size // 4, size]
    bands = []
    begin = 0
    for end in edges:
        kept = numpy.zeros_like(bins)
        kept[begin:end] = bins[begin:end]
        band = fft.irfft(kept, size)
        bands.append([float(numpy.sqrt(numpy.mean(band ** 2))), float(numpy.ptp(band)), float(numpy.std(band, ddof=1))])
        begin = end
    return {
        "samples": [float(sample) for sample in samples],
        "spectrum": [float(amplitude) for amplitude in spectrum],
        "rms": float(numpy.sqrt(numpy.mean(samples ** 2))),
        "p2p": float(numpy.ptp(samples)),
        "std": float(numpy.std(samples, ddof=1)),
        "narrow_std": float(narrow_deviation(samples)),
        "limits": [(end - 0.25) * rate / size for end in edges],
        "bands": bands,
    }


def blocks(field, size, rate):
    results = []
    for start in numpy.linspace(0, len(field) - size, BLOCKS).astype(int):
        block = field[start:start + size]
        for series in [*block.T, numpy.linalg.norm(block, axis=1)]:
            results.append(analyse(series.astype(numpy.float32).astype(float), rate))
    return results


def main():
    fields = {}
    results = []
    for path, size, rate in zip(sys.argv[1::3], sys.argv[2::3], sys.argv[3::3]):
        if path not in fields:
            fields[path] = read(path)
        results.append(blocks(fields[path], int(size), float(rate)))
    json.dump(results, sys.stdout)


if __name__ == "__main__":
    main()
