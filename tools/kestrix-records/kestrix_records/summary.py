# SPDX-License-Identifier: MIT
"""A record at a glance."""

import math

from .model import INVALID_TIME, MAPPING, to_datetime
from .schema import number_text


def _extent(values):
    finite = [value for value in values if math.isfinite(value)]
    if not finite:
        return "none"
    mean = math.fsum(finite) / len(finite)
    return "%s to %s, mean %s" % tuple(map(number_text, (min(finite), max(finite), mean)))


def summary(record):
    """A few lines of text: origin, parameters, times, and extent of each column."""
    parameters = record.parameters
    times = [time for block in record.blocks for time in block.times if time != INVALID_TIME]
    lines = [
        ("Kind", "%s, version %s" % (record.kind, record.version)),
        ("Written by", "%s, %s" % (record.source, record.saved)),
        ("Instrument", record.instrument),
        ("Comment", record.comment),
        ("Blocks", "%d with %d samples" % (len(record.blocks), record.sample_count)),
        ("Rate", "%s Hz, %s blocks/s, averaging %d, %s trigger" % (
            number_text(parameters.acquisition_rate), number_text(parameters.display_rate), parameters.averaging,
            parameters.trigger_mode)),
        ("Range", ("automatic" if parameters.auto_range else "%s T" % number_text(parameters.range))),
        ("Units", parameters.units.strip() or "unknown"),
    ]
    if times:
        lines.append(("Time", "%s to %s (%s s)" % (
            to_datetime(min(times)), to_datetime(max(times)), number_text((max(times) - min(times)) / 1e9))))
    for name, text in (("b", "B"), ("bbprime", "B.B'"), ("bx", "Bx"), ("by", "By"), ("bz", "Bz"), ("db", "dB")):
        lines.append((text, _extent([value for block in record.blocks for value in getattr(block, name)])))
    if record.kind == MAPPING:
        for axis, text in enumerate("XYZ"):
            lines.append((text, _extent([block.position[axis] for block in record.blocks if block.position])))
    return "\n".join("%-11s %s" % (name + ":", text) for name, text in lines)
