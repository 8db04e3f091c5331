#!/usr/bin/env python3
"""Reads the manual as a browser does: every link, picture and place is there, in both languages.

usage: manual_test.py FOLDER [unittest arguments]
"""
import pathlib
import struct
import sys
import unittest
from html.parser import HTMLParser

FOLDER = pathlib.Path()
LANGUAGES = ("de", "en")
WITHOUT_END = {"meta", "link", "img", "br", "col", "hr"}


class Page(HTMLParser):
    """What a page refers to, what it holds, and what is wrong with its form."""

    def __init__(self, path):
        super().__init__()
        self.path = path
        self.ids, self.links, self.images, self.bones, self.faults = [], [], [], [], []
        self.language, self.text = None, ""
        self.open = []
        self.feed(path.read_text(encoding="utf-8"))
        self.close()
        self.faults += [f"<{tag}> stays open" for tag in self.open]

    def handle_starttag(self, tag, attrs):
        found = dict(attrs)
        if tag not in WITHOUT_END:
            self.open.append(tag)
        if tag == "html":
            self.language = found.get("lang")
        if "id" in found:
            self.ids.append(found["id"])
        if tag in ("a", "link"):
            self.links.append(found.get("href", ""))
        if tag == "img":
            self.images.append(found.get("src", ""))
            if len(found.get("alt", "")) < 10:
                self.faults.append(f"{found.get('src')} has no text for those who do not see it")
        if tag in ("h1", "h2", "h3", "img", "tr", "li", "dt", "figure"):
            self.bones.append((tag, found.get("id") or found.get("src")))

    def handle_endtag(self, tag):
        if not self.open or self.open.pop() != tag:
            self.faults.append(f"</{tag}> in line {self.getpos()[0]} ends nothing")

    def handle_data(self, data):
        self.text += data


class Manual(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.pages = {language: Page(FOLDER / language / "index.html") for language in LANGUAGES}

    def test_pages_are_well_formed_and_say_their_language(self):
        for language, page in self.pages.items():
            self.assertEqual(page.faults, [])
            self.assertEqual(page.language, language)
            self.assertEqual(len(page.ids), len(set(page.ids)), "ids stand for one place")

    def test_every_link_leads_somewhere_in_the_manual(self):
        for page in self.pages.values():
            self.assertGreater(len(page.links), 15)
            for link in page.links:
                name, _, place = link.partition("#")
                target = (page.path.parent / name).resolve() if name else page.path.resolve()
                self.assertTrue(target.is_file(), link)
                self.assertIn(FOLDER.resolve(), target.parents, link)
                if place:
                    self.assertIn(place, Page(target).ids, link)

    def test_every_picture_is_there(self):
        for page in self.pages.values():
            missing = [name for name in page.images if not (page.path.parent / name).is_file()]
            self.assertEqual(missing, [], page.language)

    def test_every_picture_is_shown_and_large_enough_to_read(self):
        for page in self.pages.values():
            there = {path.name for path in page.path.parent.glob("*.png")}
            self.assertEqual(there, set(page.images) & there, "pictures that no page shows")
            for name in there:
                head = (page.path.parent / name).read_bytes()[:24]
                self.assertEqual(head[:8], b"\x89PNG\r\n\x1a\n", name)
                self.assertGreaterEqual(struct.unpack(">I", head[16:20])[0], 420, name)

    def test_both_languages_have_the_same_build(self):
        self.assertEqual(self.pages["de"].bones, self.pages["en"].bones)

    def test_contents_list_every_chapter(self):
        for page in self.pages.values():
            chapters = [place for tag, place in page.bones if tag == "h2"]
            listed = [link[1:] for link in page.links if link.startswith("#")]
            self.assertEqual(listed[:len(chapters)], chapters)

    def test_german_is_written_with_its_letters(self):
        german = self.pages["de"].text
        for letter in "äöüÄÜß„“":
            self.assertIn(letter, german)
        for word in ("fuer", "ueber", "koennen", "waehl", "oeffn", "Stueck", "schliess"):
            self.assertNotIn(word, german)


if __name__ == "__main__":
    FOLDER = pathlib.Path(sys.argv.pop(1))
    unittest.main()
