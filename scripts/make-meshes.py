#!/usr/bin/python3
"""Makes the meshes and textures of the 3-D views.

The files keep to what the mesh loader of Qt Data Visualization reads: one object, triangles
only (it takes the first three corners of any face), corners as v/vt/vn with positive indices,
single blanks. Every written mesh is read back and its counts, extents, winding and normals are
checked.

Without --output the files go to Resources/Mesh.
"""

import argparse
import math
import os
import struct
import zlib

# Arrow: foot at the origin, along +Y.
ARROW_SIDES = 19
ARROW_LENGTH = 1.968807
ARROW_HEAD_RADIUS = 0.218399
ARROW_SHAFT_RADIUS = 0.09
ARROW_HEAD_START = 1.4

# Ring around the X axis. The head sits on the ring at +Y and points to +Z, so that it shows
# the positive sense of rotation around +X.
RING_RADIUS = 1.0
RING_TUBE_RADIUS = 0.125
RING_SEGMENTS = 16
RING_TUBE_SIDES = 12
RING_HEAD_RADIUS = 0.25
RING_HEAD_START = -0.15
RING_HEAD_LENGTH = 0.55

TEXTURE_SIZE = 8
TEXTURES = {
    "RedTexture.png": (0xFF, 0x00, 0x00),
    "GreenTexture.png": (0x00, 0x80, 0x00),
    "BlueTexture.png": (0x00, 0x00, 0xFF),
    "GrayTexture.png": (0xA0, 0xA0, 0xA0),
    "ArrowTexture.png": (0x00, 0x78, 0xD7),
}


def normalised(vector):
    length = math.sqrt(sum(c * c for c in vector))
    return tuple(c / length for c in vector)


class Mesh:
    """Vertices, texture coordinates, normals and triangles of one object."""

    def __init__(self, name):
        self.name = name
        self.vertices = []
        self.textureCoordinates = []
        self.normals = []
        self.faces = []

    def vertex(self, x, y, z):
        """Adds a vertex and returns its index, counted from 1."""
        self.vertices.append((x, y, z))
        return len(self.vertices)

    @staticmethod
    def _shared(pool, line):
        if line not in pool:
            pool.append(line)
        return pool.index(line) + 1

    def corner(self, vertex, normal, u=0.5, v=0.5):
        """Returns the corner of a face; equal coordinates and normals are stored once."""
        texture = self._shared(self.textureCoordinates, f"{u:.6f} {v:.6f}")
        direction = " ".join(f"{c + 0.0:.6f}" for c in (round(c, 6) for c in normalised(normal)))
        return vertex, texture, self._shared(self.normals, direction)

    def triangle(self, a, b, c):
        self.faces.append((a, b, c))

    def quad(self, a, b, c, d):
        self.triangle(a, b, c)
        self.triangle(a, c, d)

    def write(self, path):
        with open(path, "w", encoding="ascii", newline="\n") as file:
            file.write(f"o {self.name}\n")
            for vertex in self.vertices:
                file.write("v " + " ".join(f"{round(c, 6) + 0.0:.6f}" for c in vertex) + "\n")
            for line in self.textureCoordinates:
                file.write(f"vt {line}\n")
            for line in self.normals:
                file.write(f"vn {line}\n")
            for face in self.faces:
                file.write("f " + " ".join("/".join(map(str, corner)) for corner in face) + "\n")


def makeArrow():
    mesh = Mesh("Arrow")
    n = ARROW_SIDES
    headLength = ARROW_LENGTH - ARROW_HEAD_START

    def onHead(part):
        return ARROW_HEAD_START + part * headLength, ARROW_HEAD_RADIUS * (1.0 - part)

    profile = [(0.0, ARROW_SHAFT_RADIUS), (ARROW_HEAD_START, ARROW_SHAFT_RADIUS), onHead(0.0), onHead(1 / 3), onHead(2 / 3)]

    def direction(k):
        angle = 2.0 * math.pi * k / n
        return math.cos(angle), math.sin(angle)

    foot = mesh.vertex(0.0, 0.0, 0.0)
    rings = []
    for y, radius in profile:
        rings.append([mesh.vertex(radius * direction(k)[0], y, radius * direction(k)[1]) for k in range(n)])
    tip = mesh.vertex(0.0, ARROW_LENGTH, 0.0)

    down = (0.0, -1.0, 0.0)

    def outward(k, slope):
        x, z = direction(k)
        return x, slope, z

    headSlope = ARROW_HEAD_RADIUS / headLength
    bandSlopes = [0.0, None, headSlope, headSlope]
    for k in range(n):
        j = (k + 1) % n
        mesh.triangle(mesh.corner(foot, down), mesh.corner(rings[0][k], down), mesh.corner(rings[0][j], down))
        for band, slope in enumerate(bandSlopes):
            low, high = rings[band], rings[band + 1]
            here, there = (down, down) if slope is None else (outward(k, slope), outward(j, slope))
            mesh.quad(
                mesh.corner(low[k], here), mesh.corner(high[k], here), mesh.corner(high[j], there), mesh.corner(low[j], there)
            )
        top = rings[-1]
        mesh.triangle(
            mesh.corner(top[k], outward(k, headSlope)),
            mesh.corner(tip, outward(k + 0.5, headSlope)),
            mesh.corner(top[j], outward(j, headSlope)),
        )
    return mesh


def addRing(mesh):
    """Adds the ring as bands that share no vertices, each with both of its rims."""

    def rim(segment):
        angle = 2.0 * math.pi * segment / RING_SEGMENTS
        points = []
        for side in range(RING_TUBE_SIDES):
            tube = 2.0 * math.pi * side / RING_TUBE_SIDES
            normal = (math.sin(tube), math.cos(tube) * math.cos(angle), math.cos(tube) * math.sin(angle))
            centre = (0.0, RING_RADIUS * math.cos(angle), RING_RADIUS * math.sin(angle))
            position = tuple(c + RING_TUBE_RADIUS * d for c, d in zip(centre, normal))
            points.append((mesh.vertex(*position), normal))
        return points

    for segment in range(RING_SEGMENTS):
        here, there = rim(segment), rim(segment + 1)
        for side in range(RING_TUBE_SIDES):
            after = (side + 1) % RING_TUBE_SIDES
            mesh.quad(*(mesh.corner(*point) for point in (here[side], there[side], there[after], here[after])))


def addRingHead(mesh):
    """Adds the cone with its base.

    41 sides would miss the widest points in X; so the corners at 0, 90 and 270 degrees are
    fixed and the rest are spread evenly between them.
    """
    degrees = [9.0 * k for k in range(10)] + [90.0 + 180.0 * k / 21 for k in range(21)] + [270.0 + 9.0 * k for k in range(10)]
    sides = len(degrees)

    def direction(angle):
        return math.sin(math.radians(angle)), math.cos(math.radians(angle))

    def onBase(angle):
        x, y = direction(angle)
        return mesh.vertex(RING_HEAD_RADIUS * x, RING_RADIUS + RING_HEAD_RADIUS * y, RING_HEAD_START)

    slope = RING_HEAD_RADIUS / RING_HEAD_LENGTH
    angles = degrees + [360.0]
    mantle = [onBase(angle) for angle in angles]
    tips = [mesh.vertex(0.0, RING_RADIUS, RING_HEAD_START + RING_HEAD_LENGTH) for _ in range(sides)]
    base = [onBase(angle) for angle in degrees]
    centre = mesh.vertex(0.0, RING_RADIUS, RING_HEAD_START)
    back = (0.0, 0.0, -1.0)
    for k in range(sides):
        here, there = angles[k], angles[k + 1]
        mesh.triangle(
            mesh.corner(mantle[k + 1], (*direction(there), slope)),
            mesh.corner(mantle[k], (*direction(here), slope)),
            mesh.corner(tips[k], (*direction((here + there) / 2), slope)),
        )
        mesh.triangle(mesh.corner(centre, back), mesh.corner(base[k], back), mesh.corner(base[(k + 1) % sides], back))


def makeRotationArrow():
    mesh = Mesh("Torus")
    addRing(mesh)
    addRingHead(mesh)
    return mesh


def writeTexture(path, colour):
    """Writes a PNG of one colour, 8 bits per channel without alpha."""

    def chunk(kind, data):
        return struct.pack(">I", len(data)) + kind + data + struct.pack(">I", zlib.crc32(kind + data))

    header = struct.pack(">IIBBBBB", TEXTURE_SIZE, TEXTURE_SIZE, 8, 2, 0, 0, 0)
    row = b"\0" + bytes(colour) * TEXTURE_SIZE
    with open(path, "wb") as file:
        file.write(b"\x89PNG\r\n\x1a\n")
        file.write(chunk(b"IHDR", header) + chunk(b"IDAT", zlib.compress(row * TEXTURE_SIZE, 9)) + chunk(b"IEND", b""))


def check(path, name, vertexCount, faceCount, extents):
    """Reads a mesh back and fails if it is not as told."""
    records = {"o": [], "v": [], "vt": [], "vn": [], "f": []}
    with open(path, encoding="ascii") as file:
        for line in file:
            kind, *fields = line.rstrip("\n").split(" ")
            records[kind].append(fields)
    assert records["o"] == [[name]], records["o"]
    vertices = [tuple(map(float, fields)) for fields in records["v"]]
    normals = [tuple(map(float, fields)) for fields in records["vn"]]
    assert len(vertices) == vertexCount, len(vertices)
    assert len(records["f"]) == faceCount, len(records["f"])
    for axis, (low, high) in extents.items():
        values = [vertex["XYZ".index(axis)] for vertex in vertices]
        assert (min(values), max(values)) == (low, high), (axis, min(values), max(values))

    used = set()
    for fields in records["f"]:
        assert len(fields) == 3, fields
        corners = [tuple(map(int, field.split("/"))) for field in fields]
        for vertex, texture, normal in corners:
            assert 1 <= vertex <= len(vertices) and 1 <= texture <= len(records["vt"]) and 1 <= normal <= len(normals)
            used.add(vertex)
        a, b, c = (vertices[corner[0] - 1] for corner in corners)
        p, q = ([s - t for s, t in zip(end, a)] for end in (b, c))
        across = (p[1] * q[2] - p[2] * q[1], p[2] * q[0] - p[0] * q[2], p[0] * q[1] - p[1] * q[0])
        assert math.hypot(*across) > 1e-6, f"face without area: {fields}"
        for corner in corners:
            assert sum(s * t for s, t in zip(across, normals[corner[2] - 1])) > 0, f"face wound against its normals: {fields}"
    assert len(used) == vertexCount, "vertices without a face"


def main():
    root = os.path.dirname(os.path.dirname(os.path.abspath(__file__)))
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("--output", default=os.path.join(root, "Resources", "Mesh"))
    output = parser.parse_args().output
    os.makedirs(output, exist_ok=True)

    arrow = os.path.join(output, "ArrowMesh.obj")
    makeArrow().write(arrow)
    check(arrow, "Arrow", 97, 190, {"Y": (0.0, 1.968807)})
    head = max(math.hypot(*map(float, line.split(" ")[1:4:2])) for line in open(arrow, encoding="ascii") if line[:2] == "v ")
    assert round(head, 6) == 0.218399, head

    ring = os.path.join(output, "RotationArrowMesh.obj")
    makeRotationArrow().write(ring)
    check(ring, "Torus", 509, 466, {"X": (-0.25, 0.25), "Y": (-1.125, 1.25), "Z": (-1.125, 1.125)})

    for name, colour in TEXTURES.items():
        writeTexture(os.path.join(output, name), colour)


if __name__ == "__main__":
    main()
