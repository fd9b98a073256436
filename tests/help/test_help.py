# SPDX-License-Identifier: GPL-3.0-or-later
"""Whether the help pages hold together: python3 test_help.py FOLDER."""
import pathlib
import sys
import unittest
from html.parser import HTMLParser

# What the pages of the program ask for.
ASKED_FOR = (
    "connection settings meter_component meter_plot meter_table spectrum_plot spectrum_table ac_analysis_plot"
    " ac_analysis_table mapping_numeric mapping_plot mapping_table mapping_vector"
).split()
VOID = {"meta", "link", "img", "br", "hr"}


class Page(HTMLParser):
    def __init__(self, path):
        super().__init__()
        self.links, self.images, self.open, self.faults, self.title = [], [], [], [], ""
        self.feed(path.read_text(encoding="utf-8"))
        self.close()
        if self.open:
            self.faults.append(f"never closed: {self.open}")

    def handle_starttag(self, tag, attrs):
        attrs = dict(attrs)
        if tag not in VOID:
            self.open.append(tag)
        if tag in ("a", "link"):
            self.links.append(attrs["href"])
        if tag == "img":
            self.images.append(attrs["src"])
            if not attrs.get("alt"):
                self.faults.append(f"no words for {attrs['src']}")

    def handle_endtag(self, tag):
        if not self.open or self.open.pop() != tag:
            self.faults.append(f"</{tag}> in line {self.getpos()[0]}")

    def handle_data(self, data):
        if self.open and self.open[-1] == "title":
            self.title += data


class HelpTest(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.folder = pathlib.Path(FOLDER)
        cls.pages = {path.name: Page(path) for path in sorted(cls.folder.glob("*.html"))}

    def test_every_page_of_the_program_has_help(self):
        for name in ASKED_FOR:
            self.assertIn(f"{name}.html", self.pages)

    def test_markup_is_whole(self):
        for name, page in self.pages.items():
            self.assertEqual(page.faults, [], name)

    def test_titles_differ(self):
        titles = [page.title for page in self.pages.values()]
        self.assertEqual(len(set(titles)), len(self.pages))
        for title in titles:
            self.assertRegex(title, r"^Kestrix - \S")

    def test_links_and_images_are_there_and_offline(self):
        for name, page in self.pages.items():
            for target in page.links + page.images:
                self.assertTrue((self.folder / target).is_file(), f"{target} of {name}")

    def test_every_page_can_be_reached(self):
        reached, waiting = set(), ["index.html"]
        while waiting:
            name = waiting.pop()
            if name not in reached:
                reached.add(name)
                waiting += [link for link in self.pages[name].links if link.endswith(".html")]
        self.assertEqual(reached, set(self.pages))

    def test_every_image_is_shown(self):
        shown = {image for page in self.pages.values() for image in page.images}
        self.assertEqual(shown, {f"images/{path.name}" for path in (self.folder / "images").iterdir()})


if __name__ == "__main__":
    FOLDER = sys.argv.pop()
    unittest.main()
