# SPDX-License-Identifier: MIT
"""What a record holds."""

import datetime
from array import array
from dataclasses import dataclass, field
from typing import List, Optional, Tuple

MEASUREMENT = "measurement"
MAPPING = "mapping"

#: Names of the columns of a sample, in the order of the file, as attributes of Block.
COLUMNS = ("times", "b", "bbprime", "bx", "by", "bz", "temperature", "db")

#: Stands in Block.times for a time that the file does not give; NumPy reads it as "not a time".
INVALID_TIME = -(2 ** 63)

_EPOCH = datetime.datetime(1970, 1, 1)


@dataclass
class Parameters:
    """How the samples were taken. Rates and frequencies are in hertz."""

    units: str = "T"  #: of all field values: "T", "mT", "µT", "nT", "G", "kG", "mG", "MHzp", "A/m", ...
    range: float = 0.0  #: of the instrument, in tesla
    auto_range: bool = False
    trigger_mode: str = "Continuous"  #: or "Immediate", "Timer", "External"
    acquisition_rate: float = 0.0
    display_rate: float = 1.0  #: blocks for each second
    averaging: int = 1
    frequency_min: float = 0.0
    frequency_max: float = 0.0
    number_of_bins: float = 0.0
    block_size: int = 1  #: samples in a block


def _floats():
    return array("f")


@dataclass
class Block:
    """The samples that were taken in one go, as columns of one length.

    `times` are nanoseconds since 1970-01-01T00:00:00 on the local clock of where the record was made; a record knows
    no time zone. Field values are single precision, in Parameters.units. `db` is the uncertainty of the field, and
    not-a-number in records of version 1.1, which have none.
    """

    comment: str = ""
    position: Optional[Tuple[float, float, float]] = None  #: X, Y, Z; mapping only
    orientation: Optional[Tuple[float, float, float]] = None  #: roll, pitch, yaw in degrees; mapping only
    times: array = field(default_factory=lambda: array("q"))
    b: array = field(default_factory=_floats)  #: magnitude
    bbprime: array = field(default_factory=_floats)  #: along the reference direction
    bx: array = field(default_factory=_floats)
    by: array = field(default_factory=_floats)
    bz: array = field(default_factory=_floats)
    temperature: array = field(default_factory=lambda: array("H"))  #: raw count, 0 to 65535
    db: array = field(default_factory=_floats)

    def __len__(self):
        return len(self.times)

    def append(self, time, b, bbprime, bx, by, bz, temperature=0, db=float("nan")):
        """Adds a sample. `time` is a datetime without time zone, or nanoseconds as in `times`."""
        if isinstance(time, datetime.datetime):
            time = from_datetime(time)
        for column, value in zip(COLUMNS, (time, b, bbprime, bx, by, bz, temperature, db)):
            getattr(self, column).append(value)


@dataclass
class Record:
    kind: str = MEASUREMENT  #: or MAPPING
    source: str = ""  #: program that wrote the file
    saved: str = ""  #: when, as "yyyy.MM.ddTHH:mm:ss"
    comment: str = ""
    instrument: str = ""
    version: str = "1.2"  #: of the dataset: "1.2", or "1.1" without uncertainties
    parameters: Parameters = field(default_factory=Parameters)
    blocks: List[Block] = field(default_factory=list)

    @property
    def sample_count(self):
        return sum(map(len, self.blocks))


def from_datetime(time):
    """Nanoseconds since 1970 of a datetime without time zone."""
    elapsed = time - _EPOCH
    return ((elapsed.days * 86400 + elapsed.seconds) * 1000000 + elapsed.microseconds) * 1000


def to_datetime(nanoseconds):
    """The datetime of a time of Block.times, to the microsecond; None for INVALID_TIME."""
    if nanoseconds == INVALID_TIME:
        return None
    return _EPOCH + datetime.timedelta(microseconds=nanoseconds // 1000)
