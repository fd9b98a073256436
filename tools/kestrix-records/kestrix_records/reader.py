# SPDX-License-Identifier: MIT
"""Reads records in one pass, as forgiving as Kestrix does, and tells what it forgave."""

import io
import math
import re
import struct
from array import array
from dataclasses import dataclass
from xml.parsers import expat

from .model import INVALID_TIME, MAPPING, Block, Parameters, Record
from .schema import (BODY_TYPE, BODY_VERSION, DATASET_TYPES, DATASET_VERSIONS, HEADINGS, PARAMETERS, ROOT,
                     ROOT_VERSION, SEPARATOR, TRIGGER_MODES, UNITS, TimeParser)

_MAX_DEPTH = 256
_CHUNK = 1 << 16
_NUMBER = re.compile(r"\s*[+-]?([0-9]+\.?[0-9]*|\.[0-9]+)([eE][+-]?[0-9]+)?\s*$|\s*[+-]?(nan|inf)\s*$", re.ASCII)
_INTEGER = re.compile(r"\s*[+-]?[0-9]+\s*$", re.ASCII)
_NAN = float("nan")


class RecordError(Exception):
    """The file is no record that can be read; the text says why."""


@dataclass
class Problem:
    """Something that Kestrix forgives when it loads the file."""

    line: int
    text: str

    def __str__(self):
        return "line %d: %s" % (self.line, self.text)


def to_single(value):
    """The nearest single precision number, infinite beyond their range."""
    try:
        return struct.unpack("f", struct.pack("f", value))[0]
    except OverflowError:
        return math.copysign(math.inf, value)


class _Reader:
    def __init__(self):
        self.record = Record()
        self.problems = []
        self._path = []
        self._skipped_below = None
        self._text = None
        self._has_root = False
        self._has_dataset = False
        self._separator = SEPARATOR
        self._width = len(HEADINGS)
        self._block_problems = 0
        self._times = TimeParser()
        parser = expat.ParserCreate(namespace_separator=None)
        parser.buffer_text = True
        parser.StartElementHandler = self._start
        parser.EndElementHandler = self._end
        parser.CharacterDataHandler = self._characters
        # Nothing of a record needs an entity of its own, and a few lines of them make gigabytes.
        parser.EntityDeclHandler = self._refuse_entities
        parser.ExternalEntityRefHandler = self._refuse_entities
        self._parser = parser

    def read(self, stream):
        try:
            while True:
                chunk = stream.read(_CHUNK)
                self._parser.Parse(chunk, not chunk)
                if not chunk:
                    break
        except (expat.ExpatError, ValueError) as error:
            if not self._has_root:
                raise RecordError("The file is no XML: %s" % error) from None
            # What has been read so far stands.
            self._finish_text()
            self._problem("The file ends here: %s" % error)
        if not self._has_root:
            raise RecordError("The file is empty")
        if not self._has_dataset:
            self._problem("There is no dataset")
        elif not self.record.blocks:
            self._problem("There is no block")

    def _problem(self, text, line=None):
        self.problems.append(Problem(line or self._parser.CurrentLineNumber, text))

    def _refuse_entities(self, *_):
        raise RecordError("The file declares entities, which no record needs")

    # Elements

    def _start(self, name, attributes):
        name = name.rpartition(":")[2]
        self._path.append(name)
        if len(self._path) > _MAX_DEPTH:
            raise RecordError("The elements are nested too deeply")
        if self._text is not None:
            self._problem("%s inside %s is left out" % (name, self._path[-2]))
            self._skipped_below = self._skipped_below or len(self._path)
        if self._skipped_below is not None:
            return
        if len(self._path) == 1:
            self._root(name, attributes)
        elif self._is_at("body"):
            self._body(attributes)
        elif self._is_at("body", "dataset"):
            self._dataset(attributes)
        elif self._is_at("body", "dataset", "measurements"):
            self.record.blocks.append(Block())
            self._block_problems = 0
            if self.record.kind == MAPPING:
                self.record.blocks[-1].position = self.record.blocks[-1].orientation = (0.0, 0.0, 0.0)
        elif self._is_text_element():
            self._text = []
            if name == "headings":
                self._separator = self._column_separator(attributes.get("colsep", SEPARATOR))
        elif not self._is_at("header") and not self._is_in_block():
            self._problem("%s is left out" % name)
            self._skipped_below = len(self._path)

    def _end(self, name):
        if self._skipped_below is None and self._text is not None:
            self._finish_text()
        self._path.pop()
        if self._skipped_below is not None and len(self._path) < self._skipped_below:
            self._skipped_below = None

    def _characters(self, text):
        if self._text is not None and self._skipped_below is None:
            self._text.append(text)

    def _is_at(self, *names):
        return len(self._path) == len(names) + 1 and tuple(self._path[1:]) == names

    def _is_in_block(self):
        return tuple(self._path[1:4]) == ("body", "dataset", "measurements")

    def _is_text_element(self):
        path = tuple(self._path[1:])
        if self._is_in_block():
            # Kestrix looks for these also inside of elements that it does not know.
            known = ("comment", "flux") + (("position", "orientation") if self.record.kind == MAPPING else ())
            return path[-1] in known
        return path in (("header", "src"), ("header", "dateTime8601"), ("header", "descr"), ("body", "comment"),
                        ("body", "instrument"), ("body", "dataset", "headings"), ("body", "dataset", "parameters"))

    def _root(self, name, attributes):
        if name != ROOT or attributes.get("ver") != ROOT_VERSION:
            raise RecordError("The file is not a record: its root is %s, version %s" % (name, attributes.get("ver")))
        self._has_root = True

    def _body(self, attributes):
        if attributes.get("type") != BODY_TYPE:
            self._problem("A body of type %s is left out" % attributes.get("type"))
            self._skipped_below = len(self._path)
        elif attributes.get("ver") != BODY_VERSION:
            raise RecordError("Bodies of version %s are not supported" % attributes.get("ver"))

    def _dataset(self, attributes):
        kind = DATASET_TYPES.get(attributes.get("type"))
        if kind is None or (self._has_dataset and kind != self.record.kind):
            raise RecordError("Datasets of type %s are not supported" % attributes.get("type"))
        if attributes.get("ver") not in DATASET_VERSIONS:
            raise RecordError("Datasets of version %s are not supported" % attributes.get("ver"))
        self._has_dataset = True
        self.record.kind = kind
        self.record.version = attributes["ver"]
        self._width = len(HEADINGS) if self.record.version == "1.2" else len(HEADINGS) - 1
        self._separator = SEPARATOR

    def _column_separator(self, separator):
        if len(separator) != 1 or separator.isalnum():
            self._problem("The column separator is %r, where one sign that is no letter or digit is due" % separator)
        return separator or SEPARATOR

    def _finish_text(self):
        if self._text is None:
            return
        text, self._text = "".join(self._text), None
        name = self._path[-1]
        record = self.record
        if self._is_in_block():
            self._finish_block_text(name, text)
        elif name == "src":
            record.source = text
        elif name == "dateTime8601":
            record.saved = text
        elif name == "comment":
            record.comment = text
        elif name == "instrument":
            record.instrument = text
        elif name == "parameters":
            self._read_parameters(text)

    def _finish_block_text(self, name, text):
        block = self.record.blocks[-1]
        if name == "comment":
            block.comment = text
        elif name == "flux":
            self._read_flux(text, block)
        else:
            parts = text.split(SEPARATOR)
            if len(parts) != 3:
                raise RecordError("line %d: %s has %d numbers instead of three" % (
                    self._parser.CurrentLineNumber, name, len(parts)))
            setattr(block, name, tuple(self._number(part, name) for part in parts))

    # Values

    def _number(self, text, what):
        if _NUMBER.match(text):
            return float(text)
        self._problem("%s is %r, which counts as 0" % (what, text))
        return 0.0

    def _integer(self, text, what, smallest, largest):
        if _INTEGER.match(text) and smallest <= int(text[:40]) <= largest:
            return int(text)
        self._problem("%s is %r, which counts as 0" % (what, text))
        return 0

    def _read_parameters(self, text):
        self.record.parameters = parameters = Parameters()
        # The text of the unknown unit is the blank that also stands between the entries.
        is_unit_unknown = text.startswith("Units=  ")
        parts = text.replace("Units=  ", "Units= ", 1).split(" ") if is_unit_unknown else text.split(" ")
        if is_unit_unknown:
            self._problem("The unit is unknown; Kestrix takes each parameter behind it for the next one")
        keys = [key for key, _ in PARAMETERS]
        for position, part in enumerate(parts[:len(PARAMETERS)]):
            key, equals, value = part.partition("=")
            if equals != "=" or "=" in value:
                self._problem("The parameter %r is left out" % part)
                continue
            if key != keys[position]:
                self._problem("The parameter %s stands where %s is due, as which Kestrix takes it" % (
                    key, keys[position]))
                if key not in keys:
                    continue
            self._set_parameter(parameters, keys.index(key), value or " " if key == "Units" else value)
        if len(parts) != len(PARAMETERS):
            self._problem("There are %d parameters instead of %d" % (len(parts), len(PARAMETERS)))

    def _set_parameter(self, parameters, position, text):
        key, name = PARAMETERS[position]
        default = getattr(parameters, name)
        if name in ("units", "trigger_mode"):
            if text not in (UNITS if name == "units" else TRIGGER_MODES):
                self._problem("%s is %r, which Kestrix does not know" % (key, text))
            value = text
        elif isinstance(default, bool):
            value = self._integer(text, key, -2 ** 31, 2 ** 31 - 1) != 0
        elif isinstance(default, int):
            value = self._integer(text, key, -2 ** 31, 2 ** 31 - 1)
        else:
            value = self._number(text, key)
        setattr(parameters, name, value)

    # Samples

    def _read_flux(self, text, block):
        if not text.strip():
            return
        # Rows and columns are one list of values: a value too many or too few moves all that follow.
        line = self._parser.CurrentLineNumber - text.count("\n")
        values = text.replace("\n", self._separator).split(self._separator)
        if text.count("\n") + 1 != len(values) / self._width or self._is_ragged(text):
            self._check_rows(text, line)
        width = self._width
        times = [self._times.parse(value) for value in values[0::width]]
        count = len(times)
        if INVALID_TIME in times:
            index = times.index(INVALID_TIME)
            self._report("%r is no time" % values[index * width], line + index)
        block.times.extend(times)
        for column, name in enumerate(("b", "bbprime", "bx", "by", "bz"), 1):
            getattr(block, name).extend(self._floats(values[column::width], count, 0.0, line))
        block.temperature.extend(self._counts(values[6::width], count, line))
        block.db.extend(self._floats(values[7::width], count, _NAN, line) if width == 8 else [_NAN] * count)

    def _is_ragged(self, text):
        return any(row.count(self._separator) != self._width - 1 for row in text.split("\n"))

    def _check_rows(self, text, line):
        for number, row in enumerate(text.split("\n")):
            if row.count(self._separator) != self._width - 1:
                self._report("A row of %d values instead of %d" % (row.count(self._separator) + 1, self._width),
                             line + number)
                return

    def _report(self, text, line):
        """A few lines for each block are enough."""
        self._block_problems += 1
        if self._block_problems <= 10:
            self._problem(text, line)

    def _floats(self, texts, count, missing, line):
        plain = "".join(texts)
        try:
            if plain.isascii() and "_" not in plain:
                values = [float(text) for text in texts]
                if all(map(math.isfinite, values)):
                    return array("f", map(to_single, values)).tolist() + [missing] * (count - len(values))
        except ValueError:
            pass
        values = []
        for index, text in enumerate(texts):
            if _NUMBER.match(text):
                values.append(to_single(float(text)))
            else:
                self._report("%r is no number, and counts as 0" % text, line + index)
                values.append(0.0)
        return values + [missing] * (count - len(values))

    def _counts(self, texts, count, line):
        values = []
        for index, text in enumerate(texts):
            value = int(text) if _INTEGER.match(text) and len(text) < 20 else -1
            if not 0 <= value <= 0xFFFF:
                self._report("%r is no temperature, and counts as 0" % text, line + index)
                value = 0
            values.append(value)
        return values + [0] * (count - len(values))


def _read_stream(stream):
    reader = _Reader()
    reader.read(stream)
    return reader


def read(path, strict=False):
    """Reads a record.

    A file that Kestrix refuses raises RecordError; so does one with entities of its own. What Kestrix forgives (a
    number that is none counts as 0, a file that breaks off is what stands before) is forgiven here, unless `strict`,
    when it raises RecordError as well. OSError if the file cannot be read.
    """
    with open(path, "rb") as stream:
        reader = _read_stream(stream)
    return _result(reader, strict)


def read_text(text, strict=False):
    """As read(), from a str or bytes."""
    data = text.encode("utf-8") if isinstance(text, str) else text
    return _result(_read_stream(io.BytesIO(data)), strict)


def _result(reader, strict):
    if strict and reader.problems:
        raise RecordError(str(reader.problems[0]))
    return reader.record


def check(path):
    """What Kestrix would forgive in the file, in its order; empty for a sound one. RecordError as in read()."""
    with open(path, "rb") as stream:
        reader = _read_stream(stream)
    problems = reader.problems
    last = None
    for number, block in enumerate(reader.record.blocks, 1):
        for time in block.times:
            if last is not None and INVALID_TIME not in (time, last) and time < last:
                problems.append(Problem(0, "In block %d the time goes backwards" % number))
                last = None
                break
            last = time
    return problems
