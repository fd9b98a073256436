# SPDX-License-Identifier: MIT
"""Names and texts of the file format."""

import datetime
import re
from decimal import Decimal

from .model import INVALID_TIME, MAPPING, MEASUREMENT, from_datetime

ROOT = "NorvaneXmlRecord"
ROOT_VERSION = "1.0"
BODY_TYPE = "tQDR_BODY_KESTRIX"
BODY_VERSION = "1.1"
DATASET_TYPES = {
    "tQDR_DATASET_KESTRIX_MEASUREMENT": MEASUREMENT,
    "tQDR_DATASET_KESTRIX_MAPPING": MAPPING,
}
DESCRIPTIONS = {
    MEASUREMENT: "Magnetic Field Measurement File, Norvane",
    MAPPING: "Magnetic Field Mapping File, Norvane",
}
DATASET_VERSIONS = ("1.1", "1.2")
HEADINGS = ("Timestamp", "B", "B.B'", "Bx", "By", "Bz", "Temp", "dB")
SEPARATOR = ";"
UNITS = ("T", "mT", "µT", "nT", "G", "kG", "mG", "MHzp", "A/m", "kA/m", "mA/m", "ADC", "Hz", "°", "dB", "%", " ")
TRIGGER_MODES = ("Continuous", "Immediate", "Timer", "External")

#: Key in the file and attribute of Parameters, in the order of the file.
PARAMETERS = (
    ("Units", "units"), ("Range", "range"), ("AutoRange", "auto_range"), ("TriggerMode", "trigger_mode"),
    ("AcqRate", "acquisition_rate"), ("DispRate", "display_rate"), ("Avg", "averaging"),
    ("FreqMin", "frequency_min"), ("FreqMax", "frequency_max"), ("Bins", "number_of_bins"),
    ("BlockSize", "block_size"),
)

_TIME = re.compile(r"([0-9]{4})\.([0-9]{2})\.([0-9]{2})T([0-9]{2}):([0-9]{2}):([0-9]{2})\.([0-9]*)$")


def number_text(value):
    """Six significant digits in the general form, a tie away from zero."""
    text = "%.6g" % value
    # A number that lies half way between two texts has seven digits itself, the last a five.
    mantissa, mark, exponent = ("%.7g" % value).partition("e")
    if mantissa[-1] == "5" and len(mantissa.replace(".", "").lstrip("-0")) == 7:
        seven = mantissa + mark + exponent
        if Decimal(seven) == Decimal(value):
            return "%.6g" % float(mantissa[:-1] + "6" + mark + exponent)
    return text


class TimeParser:
    """Reads the times of samples. Remembers the last second: that of the next sample is mostly the same."""

    def __init__(self):
        self._text = None
        self._second = INVALID_TIME

    def parse(self, text):
        """Nanoseconds since 1970, or INVALID_TIME."""
        second, point, fraction = text.partition(".") if len(text) < 20 else (text[:19], text[19], text[20:])
        if point != "." or not (fraction.isascii() and fraction.isdigit()):
            return INVALID_TIME
        if second != self._text:
            self._text, self._second = second, self._parse_second(second)
        if self._second == INVALID_TIME:
            return INVALID_TIME
        return self._second + int(fraction[:9].ljust(9, "0"))

    @staticmethod
    def _parse_second(text):
        match = _TIME.match(text + ".")
        if not match:
            return INVALID_TIME
        try:
            nanoseconds = from_datetime(datetime.datetime(*map(int, match.groups()[:6])))
        except ValueError:
            return INVALID_TIME
        # Years in which nanoseconds fit 64 bits.
        return nanoseconds if abs(nanoseconds) < 2 ** 63 - 10 ** 9 else INVALID_TIME


class TimeFormatter:
    """The reverse of TimeParser. A time that is none has only its fraction, as Kestrix writes it."""

    def __init__(self):
        self._second = None
        self._text = ""

    def format(self, nanoseconds):
        if nanoseconds == INVALID_TIME:
            return ".000000000"
        second, fraction = divmod(nanoseconds, 10 ** 9)
        if second != self._second:
            time = datetime.datetime(1970, 1, 1) + datetime.timedelta(seconds=second)
            self._second = second
            self._text = "%04d.%02d.%02dT%02d:%02d:%02d." % time.timetuple()[:6]
        return self._text + "%09d" % fraction
