#!/usr/bin/env python3
# SPDX-License-Identifier: GPL-3.0-or-later
"""Writes the exposure limits files of examples/limits from the formulae of the published guidelines.

A limits file is a staircase, a guideline a curve. Falling stretches of the curve become 20 steps per decade, each as
high as the curve at the step's upper end, so that no step is above the curve.
"""
import math
import os

STEPS_PER_DECADE = 20

ICNIRP_1998 = ("International Commission on Non-Ionizing Radiation Protection: Guidelines for limiting exposure to "
               "time-varying\n     electric, magnetic, and electromagnetic fields (up to 300 GHz). "
               "Health Physics 74:494, 1998.")
ICNIRP_2010 = ("International Commission on Non-Ionizing Radiation Protection: Guidelines for limiting exposure to "
               "time-varying\n     electric and magnetic fields (1 Hz to 100 kHz). Health Physics 99:818, 2010.")
EU_1999 = ("Council Recommendation 1999/519/EC on the limitation of exposure of the general public to "
           "electromagnetic fields\n     (0 Hz to 300 GHz), which has the same values.")
EU_2013 = ("Directive 2013/35/EU on the minimum health and safety requirements regarding the exposure of workers to "
           "the risks\n     arising from physical agents (electromagnetic fields).")

# Upper end of each stretch in Hz, factor and power: limit in microtesla rms = factor / frequency ** power.
LOW_FREQUENCIES_OF_WORKERS = [(8, 2e5, 2), (25, 2.5e4, 1), (300, 1e3, 0), (3000, 3e5, 1), (1e7, 100, 0)]
SETS = {
    "icnirp-1998-occupational": (
        "ICNIRP 1998, reference levels for occupational exposure", [ICNIRP_1998],
        [(1, 2e5, 0), (8, 2e5, 2), (25, 2.5e4, 1), (820, 2.5e4, 1), (65000, 30.7, 0), (1e7, 2e6, 1)]),
    "icnirp-1998-public": (
        "ICNIRP 1998, reference levels for the general public; EU recommendation 1999/519/EC",
        [ICNIRP_1998, EU_1999],
        [(1, 4e4, 0), (8, 4e4, 2), (25, 5e3, 1), (800, 5e3, 1), (150000, 6.25, 0), (1e7, 0.92e6, 1)]),
    "icnirp-2010-occupational": (
        "ICNIRP 2010, reference levels for occupational exposure", [ICNIRP_2010], LOW_FREQUENCIES_OF_WORKERS),
    "icnirp-2010-public": (
        "ICNIRP 2010, reference levels for the general public", [ICNIRP_2010],
        [(8, 4e4, 2), (25, 5e3, 1), (400, 200, 0), (3000, 8e4, 1), (1e7, 27, 0)]),
    "eu-2013-35-low-action-levels": (
        "EU directive 2013/35, low action levels", [EU_2013], LOW_FREQUENCIES_OF_WORKERS),
    "eu-2013-35-high-action-levels": (
        "EU directive 2013/35, high action levels", [EU_2013], [(3000, 3e5, 1), (1e7, 100, 0)]),
    "eu-2013-35-limb-action-levels": (
        "EU directive 2013/35, action levels for limbs", [EU_2013], [(3000, 9e5, 1), (1e7, 300, 0)]),
}


def plain(value):
    """Six significant digits without an exponent."""
    digits = max(0, 5 - math.floor(math.log10(value)))
    text = f"{float(f'{value:.5e}'):.{digits}f}"
    return text.rstrip("0").rstrip(".") if "." in text else text


def staircase(stretches):
    """Upper end and limit of each step."""
    steps = []
    # No guideline says anything below 1 Hz that falls with the frequency.
    begin = 1.0
    for end, factor, power in stretches:
        edges = [end]
        if power:
            first = math.floor(math.log10(begin) * STEPS_PER_DECADE) + 1
            last = math.ceil(math.log10(end) * STEPS_PER_DECADE)
            inner = [10 ** (k / STEPS_PER_DECADE) for k in range(first, last)]
            edges = [edge for edge in inner if begin * (1 + 1e-9) < edge < end * (1 - 1e-9)] + edges
        steps += [(edge, factor / edge ** power) for edge in edges]
        begin = end
    return steps


def formula(stretches):
    lines = []
    begin = 0 if stretches[0][2] == 0 else 1
    for end, factor, power in stretches:
        curve = plain(factor) + ("" if power == 0 else " / f" if power == 1 else " / f^2")
        lines.append(f"     {begin} to {plain(end)} Hz: {curve}")
        begin = plain(end)
    return "\n".join(lines)


def document(title, sources, stretches):
    bands = "".join("  <freqRange>"
                    f"<upperFreqLimit>{plain(frequency)}</upperFreqLimit><freqUnits>Hz</freqUnits>"
                    f"<exposureLimitValue>{plain(limit)}</exposureLimitValue><valueUnits>\u00b5T</valueUnits>"
                    "</freqRange>\n" for frequency, limit in staircase(stretches))
    return f"""<?xml version="1.0" encoding="UTF-8"?>
<!-- {title}

     Source: {(chr(10) + "     and: ").join(sources)}

     Magnetic flux density, root mean square, of the resultant of the three axes, in microtesla; f in hertz:
{formula(stretches)}
     Each step is as high as this curve at its upper end. Made by scripts/make-limits.py. -->
<NorvaneExposureLimitsFile ver="1.0">
{bands}</NorvaneExposureLimitsFile>
"""


def main():
    folder = os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", "examples", "limits")
    for name, description in SETS.items():
        with open(os.path.join(folder, name + ".xml"), "w", encoding="utf-8", newline="\n") as file:
            file.write(document(*description))


if __name__ == "__main__":
    main()
