#!/usr/bin/python3
"""Makes the fonts of the resource bundle from the system's Oxygen fonts.

Needs fonts-oxygen, python3-fonttools and python3-fontforge. The sources are used under
their GPL-3+ licence with font exception, which sets no condition on the family's name.

- Regular and Bold are renamed to the family "VRQ Oxygen".
- Light is derived from Regular by thinning its strokes.
- U+00B5 gets a descender: the sources draw it as a turned "n", which reads as "u".
- The middle dot of Bold gets the size of its full stop.
- U+03BC shares the glyph of U+00B5, and U+03B5 is added, which the sources lack.
- Oxygen Mono is copied as it is.

The output is reproducible: no time of generation is stored.
"""

import argparse
import os
import shutil
import tempfile

import fontforge
import psMat
from fontTools.pens.ttGlyphPen import TTGlyphPen
from fontTools.ttLib import TTFont

FAMILY = "VRQ Oxygen"
VERSION = "Version 0.401"
LICENCE = (
    "This program is free software: you can redistribute it and/or modify it under the terms of "
    "the GNU General Public License as published by the Free Software Foundation, either version 3 "
    "of the License, or (at your option) any later version. As a special exception, if you create "
    "a document which uses this font, and embed this font or unaltered portions of this font into "
    "the document, this font does not by itself cause the resulting document to be covered by the "
    "GNU General Public License."
)
LICENCE_URL = "https://www.gnu.org/licenses/gpl-3.0.html"

MICRO_SIGN = 0x00B5
GREEK_MU = 0x03BC
GREEK_EPSILON = 0x03B5
MIDDLE_DOT = 0x00B7

# Change of the stroke width from Regular to Light, in units of 1/2048 em.
LIGHT_STROKE_CHANGE = -40
# Width of the vertical strokes of Regular.
REGULAR_STEM = 164
# FontForge fills the ring of the currency sign when it thins it.
KEPT_IN_LIGHT = {"currency"}

# A "3" at x-height is scaled unevenly; the stroke change brings its stems back to those of
# the lower-case letters, the side bearing is that of the round side of a "c".
EPSILON_X_SCALE = 0.74
EPSILON_STROKE_CHANGE = {400: 34, 700: 42}

# OS/2 and head bits.
FS_BOLD, FS_REGULAR = 1 << 5, 1 << 6
FS_STYLE_BITS = (1 << 0) | FS_BOLD | FS_REGULAR
MAC_BOLD = 1 << 0


def openCubic(path):
    """Opens a font with cubic outlines: FontForge cannot change the weight of quadratic ones."""
    font = fontforge.open(path)
    font.is_quadratic = False
    return font


def quadraticGlyph(glyph):
    """Returns the FontForge glyph's outline as a TrueType glyph."""
    pen = TTGlyphPen(None)
    glyph.draw(pen)
    return pen.glyph()


def makeMicro(font):
    """Gives the micro sign the left stem of its "u" shape down to the descender of the "p"."""
    glyph = font[MICRO_SIGN]
    glyph.unlinkRef()
    top = glyph.boundingBox()[3]
    descender = font["p"].boundingBox()[1]
    # The stem is the leftmost run of two points at the top.
    edge = sorted(p.x for contour in glyph.foreground for p in contour if p.on_curve and abs(p.y - top) < 1)
    left, right = edge[0], edge[1]
    stem = fontforge.contour()
    stem.moveTo(left, descender)
    stem.lineTo(left, top)
    stem.lineTo(right, top)
    stem.lineTo(right, descender)
    stem.closed = True
    layer = glyph.foreground
    layer += stem
    glyph.foreground = layer
    glyph.removeOverlap()
    glyph.correctDirection()
    glyph.round()
    return glyph


def makeEpsilon(font, weight):
    """Draws epsilon as the mirrored "3" at x-height."""
    glyph = font.createChar(GREEK_EPSILON, "epsilon")
    glyph.foreground = font["three"].foreground
    low, high = font["o"].boundingBox()[1], font["o"].boundingBox()[3]

    def fitHeight():
        _, bottom, _, top = glyph.boundingBox()
        scale = (high - low) / (top - bottom)
        glyph.transform(psMat.compose(psMat.scale(1.0, scale), psMat.translate(0, low - bottom * scale)))

    glyph.transform(psMat.scale(-EPSILON_X_SCALE, 1.0))
    glyph.correctDirection()
    fitHeight()
    glyph.changeWeight(EPSILON_STROKE_CHANGE[weight], "CJK", 0, 0, "retain")
    fitHeight()
    bearing = font["c"].left_side_bearing
    glyph.left_side_bearing = int(bearing)
    glyph.right_side_bearing = int(font["c"].right_side_bearing)
    glyph.correctDirection()
    glyph.addExtrema()
    glyph.round()
    return glyph


def makeMiddleDot(font):
    """Gives the middle dot the size of the full stop, at the height where it was.

    In the source's Bold it is thinner than in Regular and vanishes at the size of a table's header.
    """
    glyph = font[MIDDLE_DOT]
    _, bottom, _, top = glyph.boundingBox()
    stop = font["period"]
    _, stopBottom, _, stopTop = stop.boundingBox()
    glyph.foreground = stop.foreground
    glyph.width = stop.width
    glyph.transform(psMat.translate(0, (bottom + top - stopBottom - stopTop) / 2))
    glyph.round()
    return glyph


def addGlyph(target, name, glyph, codePoints):
    """Stores an outline of FontForge under a name and maps the code points to it."""
    order = target.getGlyphOrder()
    if name not in order:
        target.setGlyphOrder(order + [name])
        if target["GDEF"].table.GlyphClassDef:
            target["GDEF"].table.GlyphClassDef.classDefs[name] = 1
    outline = quadraticGlyph(glyph)
    target["glyf"][name] = outline
    outline.recalcBounds(target["glyf"])
    target["hmtx"][name] = (int(glyph.width), outline.xMin)
    for table in target["cmap"].tables:
        if table.isUnicode():
            for codePoint in codePoints:
                table.cmap[codePoint] = name


def rename(font, style, weight):
    """Names the font as a style of the family and sets its weight bits.

    Light is no member of the four basic styles, so its basic family carries the style, and
    the typographic names (16, 17) put it into the common family.
    """
    basic = style in ("Regular", "Bold")
    fullName = FAMILY if style == "Regular" else f"{FAMILY} {style}"
    postScriptName = f"VRQOxygen-{style}"
    names = {
        1: FAMILY if basic else fullName,
        2: style if basic else "Regular",
        3: f"{VERSION};{postScriptName}",
        4: fullName,
        5: VERSION,
        6: postScriptName,
        13: LICENCE,
        14: LICENCE_URL,
        16: FAMILY,
        17: style,
    }
    table = font["name"]
    table.names = [record for record in table.names if record.nameID == 0]
    for nameId, text in names.items():
        table.setName(text, nameId, 1, 0, 0)
        table.setName(text, nameId, 3, 1, 0x409)

    bold = style == "Bold"
    os2 = font["OS/2"]
    os2.usWeightClass = weight
    os2.fsSelection = (os2.fsSelection & ~FS_STYLE_BITS) | (FS_BOLD if bold else FS_REGULAR)
    os2.panose.bWeight = {300: 3, 400: 5, 700: 8}[weight]
    font["head"].macStyle = MAC_BOLD if bold else 0


def save(font, path, times):
    """Writes the font with the times of its source, without FontForge's own time table."""
    if "FFTM" in font:
        del font["FFTM"]
    font["head"].created, font["head"].modified = times
    font.recalcTimestamp = False
    font.save(path)


def makeBasic(source, target, style, weight):
    """Makes Regular or Bold."""
    outlines = openCubic(source)
    font = TTFont(source)
    times = font["head"].created, font["head"].modified
    micro, epsilon = makeMicro(outlines), makeEpsilon(outlines, weight)
    dot = makeMiddleDot(outlines) if weight == 700 else None
    outlines.is_quadratic = True
    addGlyph(font, font.getBestCmap()[MICRO_SIGN], micro, [MICRO_SIGN, GREEK_MU])
    addGlyph(font, "epsilon", epsilon, [GREEK_EPSILON])
    if dot:
        addGlyph(font, font.getBestCmap()[MIDDLE_DOT], dot, [MIDDLE_DOT])
    outlines.close()
    rename(font, style, weight)
    save(font, target, times)


def thin(glyph):
    """Thins the strokes of a glyph and keeps its height, side bearings and advance.

    The change of weight shrinks the outline from all sides. What spans several strokes is
    scaled back to its extent; a single stroke ("l", "-", ".") is left thin, but stays on the
    baseline.
    """
    width = glyph.width
    # Some outlines of the source overlap or are wound the wrong way round.
    glyph.removeOverlap()
    glyph.correctDirection()
    old = glyph.foreground.boundingBox()
    glyph.changeWeight(LIGHT_STROKE_CHANGE, "CJK", 0, 0, "squish")
    new = glyph.foreground.boundingBox()

    def fit(low, high, newLow, newHigh, onBaseline):
        if high - low > 3 * REGULAR_STEM:
            scale = (high - low) / (newHigh - newLow)
            return scale, low - newLow * scale
        return 1.0, low - newLow if onBaseline else 0.0

    xScale, xShift = fit(old[0], old[2], new[0], new[2], False)
    yScale, yShift = fit(old[1], old[3], new[1], new[3], old[1] == 0)
    layer = glyph.foreground
    layer.transform((xScale, 0.0, 0.0, yScale, xShift, yShift))
    glyph.foreground = layer
    glyph.width = width
    glyph.round()


def makeLight(regular, target):
    """Makes Light from the finished Regular."""
    source = TTFont(regular)
    outlines = openCubic(regular)
    for glyph in outlines.glyphs():
        if len(glyph.foreground) and glyph.glyphname not in KEPT_IN_LIGHT:
            thin(glyph)
    with tempfile.TemporaryDirectory() as directory:
        raw = os.path.join(directory, "light.ttf")
        outlines.is_quadratic = True
        outlines.generate(raw, flags=("opentype",))
        outlines.close()
        font = TTFont(raw)
        font["OS/2"].achVendID = source["OS/2"].achVendID
        rename(font, "Light", 300)
        save(font, target, (source["head"].created, source["head"].modified))


def check(path, style, weight):
    """Fails if the font lacks what the program shows, or is not named as it must be."""
    font = TTFont(path)
    cmap = font.getBestCmap()
    missing = [c for c in "0123456789µμε±·°'()[]ABxyz" if ord(c) not in cmap]
    assert not missing, missing
    assert cmap[MICRO_SIGN] == cmap[GREEK_MU]
    assert font["name"].getBestFamilyName() == FAMILY
    assert font["name"].getBestSubFamilyName() == style
    assert font["OS/2"].usWeightClass == weight
    assert len({font["hmtx"][cmap[ord(c)]][0] for c in "0123456789"}) == 1
    glyf = font["glyf"]
    assert glyf[cmap[MICRO_SIGN]].yMin == glyf[cmap[ord("p")]].yMin, "the micro sign has no descender"


def main():
    root = os.path.dirname(os.path.dirname(os.path.abspath(__file__)))
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("--source", default="/usr/share/fonts/truetype/oxygen", help="folder of the Oxygen fonts")
    parser.add_argument("--output", default=os.path.join(root, "Resources", "Fonts"))
    arguments = parser.parse_args()
    os.makedirs(arguments.output, exist_ok=True)

    def source(name):
        return os.path.join(arguments.source, name)

    def target(style):
        return os.path.join(arguments.output, f"VRQ-Oxygen-{style}.ttf")

    makeBasic(source("Oxygen-Sans.ttf"), target("Regular"), "Regular", 400)
    makeBasic(source("Oxygen-Sans-Bold.ttf"), target("Bold"), "Bold", 700)
    makeLight(target("Regular"), target("Light"))
    shutil.copyfile(source("OxygenMono-Regular.ttf"), os.path.join(arguments.output, "OxygenMono-Regular.ttf"))
    for style, weight in (("Regular", 400), ("Bold", 700), ("Light", 300)):
        check(target(style), style, weight)


if __name__ == "__main__":
    main()
