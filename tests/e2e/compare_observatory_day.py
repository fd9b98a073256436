#!/usr/bin/env python3
# SPDX-License-Identifier: GPL-3.0-or-later
"""Compares a record file with the IAGA-2002 file that it was recorded from, sample by sample.

usage: compare_observatory_day.py RECORD IAGA

Knows nothing of the program: the record is read with the XML parser of the standard library.
"""
import sys
import xml.etree.ElementTree as ElementTree


def read_record(path):
    root = ElementTree.parse(path).getroot()
    dataset = root.find("body/dataset")
    separator = dataset.find("headings").get("colsep")
    unit = dataset.find("parameters").text.split(" ")[0].split("=")[1]
    rows = []
    for flux in dataset.iter("flux"):
        for line in (flux.text or "").split("\n"):
            if line:
                cells = line.split(separator)
                rows.append((cells[0], float(cells[1]), [float(cell) for cell in cells[3:6]]))
    return unit, rows


def read_iaga(path):
    rows = []
    with open(path, encoding="ascii") as file:
        for line in file:
            cells = line.split()
            if len(cells) >= 6 and len(cells[0]) == 10 and cells[0][4] == "-":
                date = cells[0].replace("-", ".")
                rows.append((date + "T" + cells[1] + "000000", [float(cell) for cell in cells[3:6]]))
    return rows


def main():
    unit, record = read_record(sys.argv[1])
    reference = read_iaga(sys.argv[2])
    nanotesla = {"nT": 1.0, "\u00b5T": 1e3, "mT": 1e6, "T": 1e9}[unit]
    assert len(record) == len(reference), (len(record), len(reference))
    worst = 0.0
    for (time, magnitude, field), (reference_time, reference_field) in zip(record, reference):
        assert time == reference_time, (time, reference_time)
        for value, expected in zip(field, reference_field):
            # Six significant digits in the file, seven in a single-precision number.
            worst = max(worst, abs(value * nanotesla - expected) / abs(expected))
        norm = sum(value * value for value in reference_field) ** 0.5
        worst = max(worst, abs(magnitude * nanotesla - norm) / norm)
    assert worst < 6e-6, worst
    print(f"{len(record)} samples from {record[0][0]} to {record[-1][0]} in {unit}, "
          f"largest relative difference {worst:.2e}")


if __name__ == "__main__":
    main()
