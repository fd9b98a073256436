# SPDX-License-Identifier: MIT
"""Writes records as Kestrix does: the same elements, order, indents and digits."""

import datetime
import io
import os
import re
import tempfile

from .model import MAPPING, MEASUREMENT
from .schema import (BODY_TYPE, BODY_VERSION, DATASET_TYPES, DESCRIPTIONS, HEADINGS, PARAMETERS, ROOT, ROOT_VERSION,
                     SEPARATOR, TimeFormatter, number_text)

_ILLEGAL = re.compile("[\x00-\x08\x0b\x0c\x0e-\x1f\ufffe\uffff\ud800-\udfff]")


def _escaped(text):
    """Without the characters that XML 1.0 has no way to write."""
    text = _ILLEGAL.sub("", text)
    for character, entity in (("&", "&amp;"), ("<", "&lt;"), (">", "&gt;"), ('"', "&quot;"), ("\r", "&#13;")):
        text = text.replace(character, entity)
    return text


def parameters_text(parameters, separator):
    def entry(value):
        if isinstance(value, bool):
            return "1" if value else "0"
        if isinstance(value, float):
            return number_text(value)
        return str(value)
    return separator.join("%s=%s" % (key, entry(getattr(parameters, name))) for key, name in PARAMETERS)


def rows_text(block):
    """The samples, a line for each, without a newline at the end."""
    format_time = TimeFormatter().format
    numbers = [map(number_text, column) for column in (block.b, block.bbprime, block.bx, block.by, block.bz)]
    columns = [map(format_time, block.times), *numbers, map(str, block.temperature), map(number_text, block.db)]
    return "\n".join(map(SEPARATOR.join, zip(*columns)))


def three_text(values):
    return SEPARATOR.join(number_text(value) for value in values or (0.0, 0.0, 0.0))


def saved_text(record):
    return record.saved or datetime.datetime.now().strftime("%Y.%m.%dT%H:%M:%S")


def source_text(record):
    return record.source or "kestrix-records v1.0"


def _check(record):
    if record.kind not in (MEASUREMENT, MAPPING):
        raise ValueError("kind is %r" % (record.kind,))
    if not record.blocks:
        raise ValueError("a record without blocks is no record")
    for number, block in enumerate(record.blocks, 1):
        lengths = {len(getattr(block, name)) for name in ("times", "b", "bbprime", "bx", "by", "bz", "temperature", "db")}
        if len(lengths) != 1:
            raise ValueError("the columns of block %d differ in length" % number)


def _write_xml(record, out):
    dataset_type = next(name for name, kind in DATASET_TYPES.items() if kind == record.kind)
    head = (
        '<?xml version="1.0" encoding="UTF-8"?>\n'
        '<%s ver="%s">\n'
        "    <header>\n"
        "        <src>%s</src>\n"
        "        <dateTime8601>%s</dateTime8601>\n"
        "        <descr>%s</descr>\n"
        "    </header>\n"
        '    <body type="%s" ver="%s">\n'
        "        <comment>%s</comment>\n"
        "        <instrument>%s</instrument>\n"
        '        <dataset type="%s" ver="1.2">\n'
        '            <headings colsep="%s">%s</headings>\n'
        "            <parameters>%s</parameters>\n")
    out.write(head % (
        ROOT, ROOT_VERSION, _escaped(source_text(record)), _escaped(saved_text(record)), DESCRIPTIONS[record.kind],
        BODY_TYPE, BODY_VERSION, _escaped(record.comment), _escaped(record.instrument), dataset_type, SEPARATOR,
        SEPARATOR.join(HEADINGS), _escaped(parameters_text(record.parameters, " "))))
    for block in record.blocks:
        out.write("            <measurements>\n                <comment>%s</comment>\n" % _escaped(block.comment))
        if record.kind == MAPPING:
            out.write('                <position unit="">%s</position>\n' % three_text(block.position))
            out.write('                <orientation unit="degree">%s</orientation>\n' % three_text(block.orientation))
        out.write("                <flux>%s</flux>\n            </measurements>\n" % rows_text(block))
    out.write("        </dataset>\n    </body>\n</%s>\n" % ROOT)


def write_text(record):
    """The record as text. Raises ValueError for a record without blocks or with columns of different length."""
    _check(record)
    out = io.StringIO()
    _write_xml(record, out)
    return out.getvalue()


def replace_file(path, write_content, mode="w"):
    """Writes a file that takes its place only when it is complete."""
    path = os.fspath(path)
    handle, temporary = tempfile.mkstemp(dir=os.path.dirname(path) or ".", prefix=".kestrix-")
    text = {} if "b" in mode else {"encoding": "utf-8", "newline": "\n"}
    try:
        with os.fdopen(handle, mode, **text) as out:
            write_content(out)
        if os.name == "posix":
            mask = os.umask(0)
            os.umask(mask)
            os.chmod(temporary, 0o666 & ~mask)
        os.replace(temporary, path)
    except BaseException:
        os.unlink(temporary)
        raise


def write(record, path):
    """Writes the record, always as version 1.2. `source` and `saved` are kept if the record has them.

    Raises ValueError for a record without blocks or with columns of different length, OSError if the file cannot be
    written; an older file stays as it was then.
    """
    _check(record)
    replace_file(path, lambda out: _write_xml(record, out))
