# SPDX-License-Identifier: MIT
"""Other forms of a record."""

from .model import MAPPING
from .schema import DESCRIPTIONS, BODY_TYPE, HEADINGS, SEPARATOR
from .writer import parameters_text, replace_file, rows_text, saved_text, source_text, three_text

_HEADING_ROW = SEPARATOR.join(HEADINGS)
_PLACES = ("x", "y", "z", "roll", "pitch", "yaw")


def write_csv(record, path):
    """Writes the file that Kestrix writes beside a record if "Save recordings as CSV" is on."""
    lines = [
        ("Source", source_text(record)), ("Timestamp", saved_text(record)),
        ("Description", DESCRIPTIONS[record.kind]), None, ("Type", BODY_TYPE), ("Version", "1.0"),
        ("Comment", record.comment), ("Instrument", record.instrument), None,
        ("Parameters", parameters_text(record.parameters, SEPARATOR)), None,
    ]

    def write_content(out):
        for line in lines:
            out.write((SEPARATOR.join(line) if line else "") + "\n")
        if record.kind != MAPPING:
            out.write(_HEADING_ROW + "\n")
        for block in record.blocks:
            if record.kind == MAPPING:
                out.write("Position (x y z);%s\n" % three_text(block.position))
                out.write("Orientation (roll pitch yaw);%s\n" % three_text(block.orientation))
                out.write(_HEADING_ROW + "\n")
            out.write(rows_text(block) + "\n")
            if record.kind == MAPPING:
                out.write("\n")
        if record.kind != MAPPING:
            out.write("\n")

    replace_file(path, write_content)


def write_table(record, path):
    """Writes a plain table: one heading row, then a row for each sample, with the number of its block (from 1) and,
    for a mapping, its place. Separated by ";", as all files of Kestrix."""
    is_mapping = record.kind == MAPPING

    def write_content(out):
        out.write("Block;" + ("X;Y;Z;Roll;Pitch;Yaw;" if is_mapping else "") + _HEADING_ROW + "\n")
        for number, block in enumerate(record.blocks, 1):
            front = "%d;" % number
            if is_mapping:
                front += "%s;%s;" % (three_text(block.position), three_text(block.orientation))
            if len(block):
                out.write(front + rows_text(block).replace("\n", "\n" + front) + "\n")

    replace_file(path, write_content)


def to_numpy(record):
    """A structured array with a row for each sample: block (from 1), time (datetime64[ns], local clock), b, bbprime,
    bx, by, bz, db (float32), temperature (uint16), and for a mapping x, y, z, roll, pitch, yaw (float64). Needs NumPy."""
    import numpy

    places = _PLACES if record.kind == MAPPING else ()
    fields = [("block", "u4"), ("time", "datetime64[ns]")]
    fields += [(name, "f4") for name in ("b", "bbprime", "bx", "by", "bz", "db")] + [("temperature", "u2")]
    table = numpy.zeros(record.sample_count, fields + [(name, "f8") for name in places])
    begin = 0
    for number, block in enumerate(record.blocks, 1):
        rows = table[begin:begin + len(block)]
        begin += len(block)
        rows["block"] = number
        rows["time"] = numpy.array(block.times, "i8").view("datetime64[ns]")
        for name in ("b", "bbprime", "bx", "by", "bz", "db", "temperature"):
            rows[name] = getattr(block, name)
        if places:
            for name, value in zip(places, (block.position or (0,) * 3) + (block.orientation or (0,) * 3)):
                rows[name] = value
    return table


def metadata(record):
    """What belongs to the whole record, as texts."""
    texts = {"kind": record.kind, "source": record.source, "saved": record.saved, "comment": record.comment,
             "instrument": record.instrument}
    texts.update((name, str(value)) for name, value in vars(record.parameters).items())
    return texts


def write_parquet(record, path):
    """Writes the columns of to_numpy(); what belongs to the whole record is in the schema's metadata, with the prefix
    "kestrix.". Needs NumPy and pyarrow."""
    import pyarrow
    import pyarrow.parquet

    table = to_numpy(record)
    columns = {name: pyarrow.array(table[name].copy()) for name in table.dtype.names}
    result = pyarrow.table(columns).replace_schema_metadata(
        {"kestrix." + name: text for name, text in metadata(record).items()})
    replace_file(path, lambda out: pyarrow.parquet.write_table(result, out), "wb")
