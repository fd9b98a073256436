#!/usr/bin/env python3
# SPDX-License-Identifier: GPL-3.0-or-later
"""Tests of the Python module kestrix_records on files written by hand, hostile ones among them. The exchange with the
program is tested by tst_RecordsTool.cpp."""

import contextlib
import datetime
import io
import math
import os
import random
import resource
import struct
import sys
import tempfile
import types
import unittest

sys.path.insert(0, os.path.join(os.path.dirname(__file__), "..", "..", "tools", "kestrix-records"))

import kestrix_records as kr  # noqa: E402
from kestrix_records.command import main  # noqa: E402
from kestrix_records.schema import number_text  # noqa: E402

PARAMETERS = ("Units=mT Range=0.3 AutoRange=1 TriggerMode=Timer AcqRate=1000 DispRate=10 Avg=3 FreqMin=5 FreqMax=500 "
              "Bins=50 BlockSize=100")
ROW = "2024.03.01T10:11:12.123456789;5;-1.5;3;4;1e-07;1234;0.25"
SECOND = 1709287872 * 10 ** 9  # 2024-03-01T10:11:12, from the calendar: 19783 days and 36672 s


def record(content, version="1.2", kind="MEASUREMENT", head="<?xml version='1.0'?>"):
    return head + """<NorvaneXmlRecord ver="1.0"><header><src>Hand</src><dateTime8601>2024.03.01T10:00:00</dateTime8601>
</header><body type="tQDR_BODY_KESTRIX" ver="1.1"><comment>all &lt;of&gt; it</comment><instrument>Probe 7</instrument>
<dataset type="tQDR_DATASET_KESTRIX_%s" ver="%s">%s</dataset></body></NorvaneXmlRecord>""" % (kind, version, content)


def flux(text, front=""):
    return "<measurements>%s<flux>%s</flux></measurements>" % (front, text)


def single(value):
    return struct.unpack("f", struct.pack("f", value))[0]


class Reading(unittest.TestCase):
    def test_everything(self):
        read = kr.read_text(record(
            "<headings colsep=';'/><parameters>%s</parameters>" % PARAMETERS +
            "<measurements><comment>first</comment><flux>%s\n%s</flux></measurements>" % (
                ROW, ROW.replace("12.123456789", "13.5").replace(";5;", ";6;")) + flux("")), strict=True)
        self.assertEqual((read.kind, read.source, read.saved, read.comment, read.instrument, read.version),
                         ("measurement", "Hand", "2024.03.01T10:00:00", "all <of> it", "Probe 7", "1.2"))
        self.assertEqual(read.parameters, kr.Parameters("mT", 0.3, True, "Timer", 1000, 10, 3, 5, 500, 50, 100))
        first, empty = read.blocks
        self.assertEqual((first.comment, len(first), len(empty), read.sample_count), ("first", 2, 0, 2))
        self.assertEqual(list(first.times), [SECOND + 123456789, SECOND + 1500000000])
        self.assertEqual(kr.to_datetime(first.times[0]), datetime.datetime(2024, 3, 1, 10, 11, 12, 123456))
        self.assertEqual([list(column) for column in (first.b, first.bbprime, first.bx, first.by, first.bz)],
                         [[5, 6], [-1.5, -1.5], [3, 3], [4, 4], [single(1e-7)] * 2])
        self.assertEqual((list(first.temperature), list(first.db)), ([1234, 1234], [0.25, 0.25]))

    def test_mapping(self):
        read = kr.read_text(record(
            flux(ROW, "<position unit=''>1;-2.5;3e2</position><orientation unit='degree'>10;20;359.5</orientation>") +
            flux(ROW), kind="MAPPING"), strict=True)
        self.assertEqual(read.kind, "mapping")
        self.assertEqual((read.blocks[0].position, read.blocks[0].orientation), ((1, -2.5, 300), (10, 20, 359.5)))
        self.assertEqual(read.blocks[1].position, (0, 0, 0))

    def test_version_without_uncertainty(self):
        read = kr.read_text(record(flux(";".join(ROW.split(";")[:7]) * 1), "1.1"), strict=True)
        self.assertEqual(list(read.blocks[0].temperature), [1234])
        self.assertTrue(math.isnan(read.blocks[0].db[0]))

    def test_comma_separates(self):
        read = kr.read_text(record("<headings colsep=','/>" + flux(ROW.replace(";", ","))), strict=True)
        self.assertEqual((list(read.blocks[0].b), list(read.blocks[0].db)), ([5], [0.25]))

    def test_refused(self):
        for text, reason in (
                ("", "no XML"), ("<!-- nothing -->", "no XML"), ("{}", "no XML"), ("<a/>", "root is a"),
                (record("").replace('ver="1.0"', 'ver="2.0"'), "version 2.0"),
                (record("").replace('KESTRIX" ver="1.1"', 'KESTRIX" ver="1.0"'), "Bodies of version 1.0"),
                (record("", version="1.3"), "version 1.3"), (record("", kind="OTHER"), "type tQDR_DATASET_KESTRIX_OTHER"),
                (record(flux(ROW, "<position>1;2</position>"), kind="MAPPING"), "2 numbers instead of three")):
            with self.assertRaisesRegex(kr.RecordError, reason):
                kr.read_text(text)

    def problems(self, text):
        with tempfile.TemporaryDirectory() as folder:
            path = os.path.join(folder, "a.qdr.xml")
            with open(path, "w", encoding="utf-8") as out:
                out.write(text)
            return kr.read(path), [str(problem) for problem in kr.check(path)]

    def expect(self, content, *reasons):
        read, problems = self.problems(record(content))
        self.assertEqual(len(problems), len(reasons), problems)
        for problem, reason in zip(problems, reasons):
            self.assertIn(reason, problem)
        return read

    def test_forgiven(self):
        self.expect(flux(ROW))
        self.expect("", "no block")
        self.assertEqual(self.expect(flux(ROW.replace(";5;", ";five;")), "'five'").blocks[0].b[0], 0)
        for number in ("0x10", "1_0", "1e", "", "Infinity", "\u0664"):
            self.assertEqual(self.expect(flux(ROW.replace(";5;", ";%s;" % number)), repr(number)).blocks[0].b[0], 0)
        self.assertEqual(self.expect(flux(ROW.replace(";1234;", ";65536;")), "65536").blocks[0].temperature[0], 0)
        self.assertEqual(self.expect(flux(ROW.replace("2024.03", "2024.13")), "no time").blocks[0].times[0],
                         kr.INVALID_TIME)
        self.expect(flux(ROW.replace("2024", "9999")), "no time")
        self.expect(flux(ROW.replace("T", " ")), "no time")
        self.expect("<other><flux>1</flux></other>" + flux(ROW), "other is left out")
        self.expect(flux(ROW) + flux(ROW.replace("10:11:12", "10:11:11")), "block 2 the time goes backwards")
        self.expect("<parameters>Units=mT</parameters>" + flux(ROW), "1 parameters instead of 11")
        swapped = PARAMETERS.replace("Avg=3 FreqMin=5", "FreqMin=5 Avg=3")
        read = self.expect("<parameters>%s</parameters>" % swapped + flux(ROW), "FreqMin stands where Avg",
                           "Avg stands where FreqMin")
        self.assertEqual((read.parameters.averaging, read.parameters.frequency_min), (3, 5))
        self.assertEqual(self.expect(flux(ROW.replace(";5;", ";nan;"))).sample_count, 1)
        self.assertEqual(self.expect(flux(ROW.replace(";5;", ";1e300;"))).blocks[0].b[0], math.inf)

    def test_values_are_one_list(self):
        short = ";".join(ROW.split(";")[:7])
        read = self.expect(flux(short + "\n" + ROW), "7 values instead of 8", "'5' is no time",
                           "'0.25' is no temperature", "'2024.03.01T10:11:12.123456789' is no number")
        # The time of the second row is the uncertainty of the first; what is left of it is a sample of its own.
        self.assertEqual(list(read.blocks[0].b), [5, -1.5])

    def test_known_elements_inside_unknown_ones(self):
        read = kr.read_text(record("<measurements><deep><comment>c</comment><flux>%s</flux></deep></measurements>" % ROW))
        self.assertEqual((read.blocks[0].comment, len(read.blocks[0])), ("c", 1))


class Hostile(unittest.TestCase):
    def test_entity_bombs(self):
        lines = ["<!ENTITY a0 'aaaaaaaaaa'>"]
        lines += ["<!ENTITY a%d '%s'>" % (i, "&a%d;" % (i - 1) * 10) for i in range(1, 12)]
        for declarations in ("".join(lines), "<!ENTITY f SYSTEM 'file:///etc/passwd'>", "<!ENTITY % p SYSTEM 'http://x/'>"):
            text = record(flux("&a11;"), head="<!DOCTYPE NorvaneXmlRecord [%s]>" % declarations)
            with self.assertRaisesRegex(kr.RecordError, "entities"):
                kr.read_text(text)

    def test_truncated_anywhere(self):
        whole = record("<headings colsep=';'/><parameters>%s</parameters>" % PARAMETERS + flux(ROW + "\n" + ROW))
        for length in range(len(whole)):
            try:
                read = kr.read_text(whole[:length])
            except kr.RecordError:
                continue
            self.assertLessEqual(read.sample_count, 2)
            with self.assertRaises(kr.RecordError):
                kr.read_text(whole[:length], strict=True)

    def test_deep(self):
        with self.assertRaisesRegex(kr.RecordError, "nested"):
            kr.read_text(record("<a>" * 100000))

    def test_random_bytes(self):
        generator = random.Random(1)
        whole = record(flux(ROW + "\n" + ROW), kind="MAPPING").encode()
        for _ in range(2000):
            damaged = bytearray(whole)
            for _ in range(generator.randrange(1, 6)):
                damaged[generator.randrange(len(damaged))] = generator.randrange(256)
            with contextlib.suppress(kr.RecordError):
                kr.read_text(bytes(damaged))

    def test_many_problems_are_few_lines(self):
        with tempfile.TemporaryDirectory() as folder:
            path = os.path.join(folder, "a.qdr.xml")
            with open(path, "w", encoding="utf-8") as out:
                out.write(record(flux("x;" * 100000)))
            self.assertLess(len(kr.check(path)), 40)


class Writing(unittest.TestCase):
    def sample(self, kind=kr.MEASUREMENT):
        made = kr.Record(kind=kind, comment='<"&\u00b5\x01', instrument="Probe", saved="2024.03.01T10:00:00",
                         parameters=kr.Parameters(units="\u00b5T", block_size=2))
        for i in range(2):
            block = kr.Block(comment="b%d" % i)
            if kind == kr.MAPPING:
                block.position, block.orientation = (i, -0.5, 1e-9), (0.0, 90.0, 1.5)
            for j in range(2):
                block.append(SECOND + i * 10 ** 9 + j * 100003, 0.1, -2.5, 1e-7, 1e7, 123456.5, 65535, float("nan"))
            made.blocks.append(block)
        return made

    def test_what_is_written_is_read(self):
        for kind in (kr.MEASUREMENT, kr.MAPPING):
            made = self.sample(kind)
            read = kr.read_text(kr.write_text(made), strict=True)
            self.assertEqual((read.kind, read.comment, read.parameters), (kind, '<"&\u00b5', made.parameters))
            for was, now in zip(made.blocks, read.blocks):
                self.assertEqual(was.times, now.times)
                self.assertEqual((now.bx[0], now.by[0], now.bz[0]), (single(1e-7), 1e7, 123457))
                self.assertTrue(math.isnan(now.db[1]))
                self.assertEqual(was.position, now.position)
            self.assertEqual(kr.write_text(read), kr.write_text(kr.read_text(kr.write_text(read))))

    def test_numbers(self):
        # Ties, which are exact in binary, go away from zero; what only looks like one does not.
        for value, text in ((1234565.0, "1.23457e+06"), (-100000.5, "-100001"), (0.1, "0.1"), (1e-5, "1e-05"),
                            (999999.5, "1e+06"), (0.0, "0"), (2.0 ** -20, "9.53674e-07"), (0.1234565, "0.123456"),
                            (float("inf"), "inf"), (float("nan"), "nan"), (100000.0, "100000"), (1e6, "1e+06")):
            self.assertEqual(number_text(value), text)

    def test_refused(self):
        for spoil in (lambda made: made.blocks.clear(), lambda made: made.blocks[0].b.append(1),
                      lambda made: setattr(made, "kind", "other")):
            made = self.sample()
            spoil(made)
            with self.assertRaises(ValueError):
                kr.write_text(made)

    def test_failed_write_keeps_the_file(self):
        with tempfile.TemporaryDirectory() as folder:
            path = os.path.join(folder, "a.qdr.xml")
            kr.write(self.sample(), path)
            before = os.path.getsize(path)
            made = self.sample()
            made.blocks[1].comment = None
            with self.assertRaises(TypeError):
                kr.write(made, path)
            self.assertEqual((os.path.getsize(path), os.listdir(folder)), (before, ["a.qdr.xml"]))


class Converting(unittest.TestCase):
    def setUp(self):
        self.folder = tempfile.TemporaryDirectory()
        self.path = os.path.join(self.folder.name, "a.qdr.xml")
        kr.write(Writing().sample(kr.MAPPING), self.path)

    def tearDown(self):
        self.folder.cleanup()

    def run_command(self, *arguments):
        out, err = io.StringIO(), io.StringIO()
        with contextlib.redirect_stdout(out), contextlib.redirect_stderr(err):
            status = main(list(arguments))
        return status, out.getvalue() + err.getvalue()

    def test_commands(self):
        self.assertEqual(self.run_command("check", self.path), (0, self.path + ": sound\n"))
        status, text = self.run_command("summary", self.path)
        self.assertEqual(status, 0)
        self.assertIn("2 with 4 samples", text)
        self.assertIn("-0.5 to -0.5", text)
        self.assertEqual(self.run_command("table", self.path)[0], 0)
        with open(os.path.join(self.folder.name, "a.table.csv"), encoding="utf-8") as table:
            rows = table.read().splitlines()
        self.assertEqual(rows[0], "Block;X;Y;Z;Roll;Pitch;Yaw;Timestamp;B;B.B';Bx;By;Bz;Temp;dB")
        self.assertEqual(rows[3], "2;1;-0.5;1e-09;0;90;1.5;2024.03.01T10:11:13.000000000;0.1;-2.5;1e-07;1e+07;123457;"
                                  "65535;nan")
        self.assertEqual(self.run_command("table", self.path)[0], 2)
        self.assertEqual(self.run_command("table", self.path, "--force")[0], 0)
        self.assertEqual(self.run_command("rewrite", self.path)[0], 0)
        self.assertEqual(self.run_command("summary", self.path + ".none")[0], 2)

    def test_check_finds(self):
        with open(self.path, "r+b") as file:
            file.truncate(os.path.getsize(self.path) - 30)
        status, text = self.run_command("check", self.path)
        self.assertEqual(status, 1)
        self.assertIn("The file ends here", text)
        self.assertEqual(self.run_command("csv", self.path, "--strict")[0], 2)
        self.assertEqual(self.run_command("csv", self.path)[0], 0)

    def test_numpy(self):
        try:
            import numpy
        except ImportError:
            self.skipTest("NumPy is not installed")
        self.assertEqual(self.run_command("numpy", self.path)[0], 0)
        table = numpy.load(os.path.join(self.folder.name, "a.npy"))
        self.assertEqual(len(table), 4)
        self.assertEqual(list(table["block"]), [1, 1, 2, 2])
        self.assertEqual(str(table["time"][1]), "2024-03-01T10:11:12.000100003")
        self.assertEqual((table["b"][0], table["temperature"][3]), (numpy.float32(0.1), 65535))
        self.assertEqual(list(table["x"]), [0, 0, 1, 1])
        self.assertEqual(table["yaw"][2], 1.5)

    def test_parquet(self):
        try:
            import numpy
            import pyarrow.parquet
        except ImportError:
            self.skipTest("pyarrow is not installed")
        self.assertEqual(self.run_command("parquet", self.path)[0], 0)
        table = pyarrow.parquet.read_table(os.path.join(self.folder.name, "a.parquet"))
        self.assertEqual(table.num_rows, 4)
        self.assertEqual(table.column("b")[0].as_py(), single(0.1))
        self.assertEqual(table.schema.metadata[b"kestrix.units"].decode(), "\u00b5T")
        self.assertEqual(table.column("time").to_numpy()[1], numpy.datetime64("2024-03-01T10:11:12.000100003"))

    def test_missing_library_is_told(self):
        hidden = {name: None for name in ("numpy", "pyarrow", "pyarrow.parquet")}
        kept = {name: sys.modules.get(name) for name in hidden}
        sys.modules.update(hidden)
        try:
            status, text = self.run_command("parquet", self.path)
        finally:
            for name, module in kept.items():
                if isinstance(module, types.ModuleType):
                    sys.modules[name] = module
                else:
                    del sys.modules[name]
        self.assertEqual(status, 2)
        self.assertIn("not installed", text)


if __name__ == "__main__":
    # A bomb that goes off ends the test and not the machine.
    resource.setrlimit(resource.RLIMIT_AS, (4 << 30, 4 << 30))
    unittest.main()
