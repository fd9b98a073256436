#!/usr/bin/env python3
# SPDX-License-Identifier: GPL-3.0-or-later
"""Turns measured field maps into mapping records and positions files.

usage: make_mapping_files.py DATA OUT

DATA holds the maps as their authors published them: scans of a solenoid in cylindrical coordinates, and planes
between two magnets in Cartesian ones. For each map, OUT gets NAME.qdr.xml and NAME.positions.xml. Lengths become
millimetres; fields stay in tesla. The place in time of a plane's points is not known: they follow each other by a
second. A plane with a hole is made of a whole one.

Knows nothing of the program; written with the standard library alone.
"""
import datetime
import math
import os
import sys

HEADINGS = "Timestamp;B;B.B';Bx;By;Bz;Temp;dB"
PARAMETERS = ("Units=T Range=0 AutoRange=1 TriggerMode=Immediate AcqRate=10 DispRate=1 Avg=100 FreqMin=0 FreqMax=5 "
              "Bins=5 BlockSize=1")


class Point:
    def __init__(self, time, place, roll, field):
        self.time = time
        self.place = place
        self.roll = roll
        self.field = field


def read_solenoid(path):
    """The points in the order in which they were taken, which is not that of the file."""
    points = []
    with open(path, encoding="ascii") as file:
        for line in file:
            if line.startswith("#"):
                continue
            cells = line.split()
            z, r, phi, b_r, b_phi, b_z = (float(cell) for cell in cells[:6])
            # The hour comes without its leading zero.
            time = datetime.datetime.strptime(cells[8] + cells[9].zfill(6), "%d%m%Y%H%M%S")
            angle = math.radians(phi)
            place = (r * math.cos(angle) * 1000, r * math.sin(angle) * 1000, z * 1000)
            field = (b_r * math.cos(angle) - b_phi * math.sin(angle),
                     b_r * math.sin(angle) + b_phi * math.cos(angle), b_z)
            points.append(Point(time, place, phi, field))
    points.sort(key=lambda point: point.time)
    return points


def read_plane(path):
    points = []
    time = datetime.datetime(2022, 5, 16, 10, 0, 0)
    with open(path, encoding="ascii") as file:
        next(file)
        for line in file:
            cells = [float(cell) for cell in line.split(",")]
            place = tuple(cell * 10 for cell in cells[:3])
            points.append(Point(time, place, 0.0, tuple(cells[3:6])))
            time += datetime.timedelta(seconds=1)
    return points


def has_hole(point):
    return abs(point.place[0]) < 100 and abs(point.place[1]) < 100


def write_record(path, points):
    with open(path, "w", encoding="utf-8", newline="\n") as file:
        file.write('<?xml version="1.0" encoding="UTF-8"?>\n<NorvaneXmlRecord ver="1.0">\n<header><src>Maps</src>'
                   "<dateTime8601>2024.03.01T10:00:00</dateTime8601><descr>Magnetic Field Mapping File, Norvane"
                   '</descr></header>\n<body type="tQDR_BODY_KESTRIX" ver="1.1">\n<comment>measured map</comment>'
                   "<instrument>Hall probe 1</instrument>\n"
                   '<dataset type="tQDR_DATASET_KESTRIX_MAPPING" ver="1.2">\n'
                   f'<headings colsep=";">{HEADINGS}</headings>\n<parameters>{PARAMETERS}</parameters>\n')
        for point in points:
            magnitude = math.sqrt(sum(component * component for component in point.field))
            numbers = ";".join("%.6g" % component for component in point.field)
            time = point.time.strftime("%Y.%m.%dT%H:%M:%S")
            file.write('<measurements><comment/><position unit="">%.6g;%.6g;%.6g</position>' % point.place +
                       '<orientation unit="degree">%.6g;0;0</orientation>' % point.roll +
                       "<flux>%s.000000000;%.6g;0;%s;0;0</flux></measurements>\n" % (time, magnitude, numbers))
        file.write("</dataset>\n</body>\n</NorvaneXmlRecord>\n")


def write_positions(path, points):
    with open(path, "w", encoding="utf-8", newline="\n") as file:
        file.write('<?xml version="1.0" encoding="UTF-8"?>\n<NorvaneMappingFile ver="1.0">\n')
        for point in points:
            x, y, z = point.place
            file.write(f" <point><X>{x!r}</X><Y>{y!r}</Y><Z>{z!r}</Z><Roll>{point.roll!r}</Roll></point>\n")
        file.write("</NorvaneMappingFile>\n")


def main():
    data, out = sys.argv[1:]
    solenoid = os.path.join(data, "mice-solenoid-map")
    planes = os.path.join(data, "mirror-magnets-xyz-map")
    may = read_plane(os.path.join(planes, "both_magnets_2022_05_16_Bfield.csv"))
    june = read_plane(os.path.join(planes, "both_magnets_2022_06_06_Bfield.csv"))
    maps = {
        "solenoid-small": read_solenoid(os.path.join(solenoid, "SSD_run04_polarCoordinates.dat")),
        "solenoid-large": read_solenoid(os.path.join(solenoid, "SSU_run07_polarCoordinates.dat")),
        "plane-may": may,
        "plane-june": june,
        "plane-with-hole": [point for point in june if not has_hole(point)],
    }
    for name, points in maps.items():
        write_record(os.path.join(out, name + ".qdr.xml"), points)
        write_positions(os.path.join(out, name + ".positions.xml"), points)
        print(name, len(points))


if __name__ == "__main__":
    main()
