#!/usr/bin/env python3
"""Installs the programs into a folder of its own and looks at what is there.

usage: install_test.py SOURCE BUILD VERSION PROGRAM... [unittest arguments]
"""
import configparser
import pathlib
import re
import struct
import subprocess
import sys
import tempfile
import unittest
import xml.etree.ElementTree as xml
import zlib

import installed
from installed import run


def png_pixels(path):
    """Width, height and bytes of a picture's rows, which do not depend on the packing's version."""
    data = path.read_bytes()
    width, height = struct.unpack(">II", data[16:24])
    packed, place = b"", 8
    while place < len(data):
        size, kind = struct.unpack(">I4s", data[place:place + 8])
        packed += data[place + 8:place + 8 + size] if kind == b"IDAT" else b""
        place += size + 12
    return width, height, zlib.decompress(packed)


class Installed(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.folder = tempfile.TemporaryDirectory(prefix="sonarello-install-")
        text, status = run("cmake", "--install", installed.BUILD, "--prefix", "/usr", DESTDIR=cls.folder.name)
        assert status == 0, text
        cls.usr = pathlib.Path(cls.folder.name) / "usr"

    @classmethod
    def tearDownClass(cls):
        cls.folder.cleanup()

    def man_pages(self):
        return sorted(self.usr.glob("share/man/**/*.1"))


class Files(Installed):
    def test_exactly_what_a_user_needs_is_installed(self):
        self.assertEqual(installed.files_below(self.folder.name),
                         {"usr/" + path for path in installed.expected_files()})

    def test_programs_run_from_where_they_are_installed(self):
        text, status = run(self.usr / "bin/sonarello-cli", "--version")
        self.assertEqual((text, status), (f"sonarello-cli {installed.VERSION}\n", 0))
        for program in installed.PROGRAMS:
            text, status = run("ldd", self.usr / "bin" / program)
            self.assertEqual(status, 0, text)
            self.assertNotIn("not found", text)
            self.assertNotIn(str(installed.BUILD), text, "nothing is taken from the build folder")


class ManPages(Installed):
    def test_pages_render_without_warnings(self):
        self.assertEqual(len(self.man_pages()), 2 * len(installed.PROGRAMS))
        for page in self.man_pages():
            done = subprocess.run(["man", "--warnings", "-E", "UTF-8", "-l", "-Tutf8", "-Z", str(page)],
                                  capture_output=True, check=False)
            self.assertEqual((done.stderr.decode(), done.returncode), ("", 0), page)
            self.assertGreater(len(done.stdout), 1000, page)

    def test_pages_bear_the_version(self):
        for page in self.man_pages():
            heading = page.read_text(encoding="utf-8").splitlines()[0]
            self.assertIn(f'"Sonarello {installed.VERSION}"', heading, page)

    def test_both_languages_tell_the_same(self):
        def bones(path):
            text = path.read_text(encoding="utf-8")
            return (len(re.findall(r"^\.SH", text, re.M)),
                    set(re.findall(r"\\-\\-[a-z]+(?:\\-[a-z]+)*", text)))
        for program in installed.PROGRAMS:
            self.assertEqual(bones(self.usr / f"share/man/man1/{program}.1"),
                             bones(self.usr / f"share/man/de/man1/{program}.1"))

    def test_the_command_line_is_told_in_full(self):
        program = self.usr / "bin/sonarello-cli"
        for folder in ("man1", "de/man1"):
            page = (self.usr / f"share/man/{folder}/sonarello-cli.1").read_text(encoding="utf-8")
            plain = page.replace("\\-", "-")
            usage = run(program, "--help", "--lang", "en")[0]
            commands = re.findall(r"^  ([a-z]+) {5,}", usage.split("Commands:")[1].split("Settings")[0], re.M)
            self.assertGreater(len(commands), 10)
            for command in commands:
                self.assertTrue(f"\n.TP\n.B {command}\n" in page, f"{folder}: {command}")
                for option in re.findall(r"(?<![\w-])--[a-z][a-z-]+",
                                         run(program, command, "--help", "--lang", "en")[0]):
                    self.assertTrue(option in plain, f"{folder}: {command} {option}")


class Desktop(Installed):
    def setUp(self):
        self.assertTrue(installed.has_windows(), "the program with windows is part of this build")

    def entry(self):
        parser = configparser.RawConfigParser(delimiters="=", interpolation=None)
        parser.optionxform = str
        parser.read(self.usr / "share/applications/sonarello.desktop", encoding="utf-8")
        return parser["Desktop Entry"]

    def test_the_entry_is_valid(self):
        self.assertEqual(run("desktop-file-validate", self.usr / "share/applications/sonarello.desktop"),
                         ("", 0))

    def test_the_entry_starts_what_is_installed(self):
        entry = self.entry()
        program, argument = entry["Exec"].split()
        self.assertEqual(argument, "%f", "the program opens one song")
        self.assertTrue((self.usr / "bin" / program).is_file())
        self.assertTrue(list(self.usr.glob(f"share/icons/hicolor/*/apps/{entry['Icon']}.*")))
        self.assertEqual(set(entry["MimeType"].strip(";").split(";")), {"audio/midi", "audio/x-midi"})

    def test_the_entry_speaks_both_languages(self):
        entry = self.entry()
        for key in ("GenericName", "Comment", "Keywords"):
            self.assertNotEqual(entry[key], entry[f"{key}[de]"])

    def test_the_software_centres_data_are_valid(self):
        path = self.usr / "share/metainfo/invalid.sonarello.sonarello.metainfo.xml"
        text, status = run("appstreamcli", "validate", "--no-net", path)
        self.assertEqual(status, 0, text)
        root = xml.parse(path).getroot()
        self.assertEqual(path.name, root.findtext("id") + ".metainfo.xml")
        self.assertEqual(root.find("releases")[0].get("version"), installed.VERSION)
        language = "{http://www.w3.org/XML/1998/namespace}lang"
        for kind in ("p", "li"):
            texts = list(root.find("description").iter(kind))
            german = [text for text in texts if text.get(language) == "de"]
            self.assertEqual(2 * len(german), len(texts))

    def test_icons_have_their_sizes(self):
        for size in installed.ICON_SIZES:
            path = self.usr / f"share/icons/hicolor/{size}x{size}/apps/sonarello.png"
            self.assertEqual(png_pixels(path)[:2], (size, size))

    def test_icons_are_what_their_script_draws(self):
        icons = installed.SOURCE / "packaging/icons"
        with tempfile.TemporaryDirectory() as folder:
            text, status = run(sys.executable, "-B", icons / "make_icons.py", folder)
            self.assertEqual((text, status), ("", 0))
            drawn = pathlib.Path(folder)
            self.assertEqual((drawn / "sonarello.svg").read_text(), (icons / "sonarello.svg").read_text())
            xml.parse(drawn / "sonarello.svg")
            for size in installed.ICON_SIZES:
                name = f"sonarello-{size}.png"
                self.assertEqual(png_pixels(drawn / name), png_pixels(icons / name), name)


def load_tests(loader, tests, _):
    """Without the program with windows there is nothing for the desktop to look at."""
    if installed.has_windows():
        return tests
    return unittest.TestSuite(loader.loadTestsFromTestCase(case) for case in (Files, ManPages))


if __name__ == "__main__":
    installed.read_arguments()
    unittest.main()
