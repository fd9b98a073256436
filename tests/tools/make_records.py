#!/usr/bin/env python3
# SPDX-License-Identifier: GPL-3.0-or-later
"""Writes records of known values for the program to read: make_records.py FOLDER BLOCKS SAMPLES. The values are those
of tst_RecordsTool.cpp."""

import datetime
import os
import sys

import kestrix_records as kr

folder, blocks, samples = sys.argv[1], int(sys.argv[2]), int(sys.argv[3])
start = (datetime.datetime(2024, 3, 1, 23, 59, 58) - datetime.datetime(1970, 1, 1)) // datetime.timedelta(seconds=1)

for kind in (kr.MEASUREMENT, kr.MAPPING):
    record = kr.Record(kind=kind, comment='\u00b5 <made> & "done"', instrument="Probe 7")
    record.parameters = kr.Parameters(units="mG", auto_range=True, trigger_mode="External", acquisition_rate=500.0,
                                      display_rate=10.0, frequency_max=250.0, block_size=samples)
    for number in range(blocks):
        block = kr.Block(comment="made %d" % number)
        if kind == kr.MAPPING:
            block.position = (0.0, number * 0.5, 0.0)
            block.orientation = (0.0, -1.25 * number, 0.0)
        for sample in range(samples):
            time = start * 10 ** 9 + (number * samples + sample) * 4000003
            flux = [(number * 1000 + sample - 500 * column) / 4 for column in range(6)]
            block.append(time, *flux[:5], number * 100 + sample, flux[5])
        record.blocks.append(block)
    kr.write(record, os.path.join(folder, "made-%s.qdr.xml" % kind))
