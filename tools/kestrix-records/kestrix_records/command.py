# SPDX-License-Identifier: MIT
"""The command kestrix-records."""

import argparse
import os
import sys

from . import RecordError, __version__, check, read, summary, to_numpy, write, write_csv, write_parquet, write_table
from .writer import replace_file


def _write_numpy(record, path):
    import numpy

    table = to_numpy(record)
    replace_file(path, lambda out: numpy.save(out, table), "wb")


_CONVERSIONS = {
    "csv": (write_csv, ".csv", "the CSV file that Kestrix writes beside a record"),
    "table": (write_table, ".table.csv", "a plain table, a row for each sample"),
    "numpy": (_write_numpy, ".npy", "a structured NumPy array (needs NumPy)"),
    "parquet": (write_parquet, ".parquet", "an Apache Parquet file (needs NumPy and pyarrow)"),
    "rewrite": (write, ".rewritten.qdr.xml", "a record again, with what could be read"),
}


def _parser():
    parser = argparse.ArgumentParser(
        prog="kestrix-records", description="Looks at, checks and converts records of Kestrix (.qdr.xml).")
    parser.add_argument("--version", action="version", version="%(prog)s " + __version__)
    commands = parser.add_subparsers(dest="command", required=True, metavar="COMMAND")
    for name, text in (("summary", "prints what a record holds"),
                       ("check", "prints what is wrong with a file; exit status 1 if anything is")):
        commands.add_parser(name, help=text, description=text).add_argument("files", nargs="+", metavar="FILE")
    for name, (_, _, text) in _CONVERSIONS.items():
        command = commands.add_parser(name, help="writes " + text, description="Writes " + text + ".")
        command.add_argument("file", metavar="FILE")
        command.add_argument("-o", "--output", help="instead of a file beside the record")
        command.add_argument("--strict", action="store_true", help="refuse a file with any problem")
        command.add_argument("--force", action="store_true", help="replace an existing file")
    return parser


def _summaries(files):
    for path in files:
        if len(files) > 1:
            print("== " + path)
        print(summary(read(path)))
    return 0


def _checks(files):
    status = 0
    for path in files:
        try:
            problems = check(path)
        except RecordError as error:
            problems = [error]
        for problem in problems:
            print("%s: %s" % (path, problem))
        if problems:
            status = 1
        else:
            print("%s: sound" % path)
    return status


def _convert(options):
    convert, suffix, _ = _CONVERSIONS[options.command]
    stem = options.file[:-len(".qdr.xml")] if options.file.endswith(".qdr.xml") else os.path.splitext(options.file)[0]
    output = options.output or stem + suffix
    if os.path.exists(output) and not options.force:
        print("kestrix-records: %s exists; --force replaces it" % output, file=sys.stderr)
        return 2
    convert(read(options.file, options.strict), output)
    return 0


def main(arguments=None):
    """Exit status: 0, 1 if a check found something, 2 if something could not be done."""
    options = _parser().parse_args(arguments)
    try:
        if options.command == "summary":
            return _summaries(options.files)
        if options.command == "check":
            return _checks(options.files)
        return _convert(options)
    except BrokenPipeError:
        os.dup2(os.open(os.devnull, os.O_WRONLY), sys.stdout.fileno())
        return 2
    except (RecordError, OSError, ValueError) as error:
        print("kestrix-records: %s" % error, file=sys.stderr)
    except ImportError as error:
        print("kestrix-records: this needs a library that is not installed: %s" % error.name, file=sys.stderr)
    return 2
