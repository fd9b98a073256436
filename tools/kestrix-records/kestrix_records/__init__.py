# SPDX-License-Identifier: MIT
"""Reads, writes, checks and converts the records of Kestrix (".qdr.xml").

    import kestrix_records

    record = kestrix_records.read("garden.qdr.xml")
    print(record.instrument, record.parameters.units, record.sample_count)
    for block in record.blocks:
        print(block.times[0], max(block.b))
    kestrix_records.write(record, "copy.qdr.xml")

Needs nothing but Python's standard library (3.8 or later). to_numpy() needs NumPy, write_parquet() needs pyarrow.
"""

from .convert import to_numpy, write_csv, write_parquet, write_table
from .model import COLUMNS, INVALID_TIME, MAPPING, MEASUREMENT, Block, Parameters, Record, to_datetime
from .reader import Problem, RecordError, check, read, read_text
from .summary import summary
from .writer import write, write_text

__all__ = [
    "COLUMNS", "INVALID_TIME", "MAPPING", "MEASUREMENT", "Block", "Parameters", "Problem", "Record", "RecordError",
    "check", "read", "read_text", "summary", "to_datetime", "to_numpy", "write", "write_csv", "write_parquet",
    "write_table", "write_text",
]
__version__ = "1.0"
