#!/usr/bin/env python3
"""Makes the Debian package and looks into it.

usage: package_test.py SOURCE BUILD VERSION PROGRAM... [unittest arguments]
"""
import gzip
import pathlib
import tempfile
import unittest

import installed
from installed import run


class Package(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.folder = tempfile.TemporaryDirectory(prefix="sonarello-deb-")
        text, status = run("cpack", "-G", "DEB", "--config", installed.BUILD / "CPackConfig.cmake", "-B",
                           cls.folder.name)
        assert status == 0, text
        packages = list(pathlib.Path(cls.folder.name).glob("*.deb"))
        assert len(packages) == 1, packages
        cls.package = packages[0]
        cls.content = pathlib.Path(cls.folder.name) / "content"
        text, status = run("dpkg-deb", "--extract", cls.package, cls.content)
        assert status == 0, text

    @classmethod
    def tearDownClass(cls):
        cls.folder.cleanup()

    def field(self, name):
        return run("dpkg-deb", "--field", self.package, name)[0].rstrip("\n")

    def test_it_is_named_and_described_as_debian_wants_it(self):
        architecture = run("dpkg", "--print-architecture")[0].strip()
        self.assertEqual(self.package.name, f"sonarello_{installed.VERSION}_{architecture}.deb")
        self.assertEqual(self.field("Package"), "sonarello")
        self.assertEqual(self.field("Version"), installed.VERSION)
        self.assertEqual(self.field("Architecture"), architecture)
        self.assertEqual(self.field("Section"), "sound")
        self.assertEqual(self.field("Maintainer"), "Sonarello developers <developers@sonarello.invalid>")
        summary, *description = self.field("Description").splitlines()
        self.assertLess(len(summary), 80)
        self.assertGreater(len(description), 5)
        for line in description:
            self.assertRegex(line, r"^ \S.{0,78}$")

    def test_it_depends_on_libraries_type_and_sounds(self):
        depends = self.field("Depends").split(", ")
        self.assertIn("timgm6mb-soundfont", depends)
        self.assertIn("fonts-roboto-unhinted | fonts-dejavu-core", depends)
        libraries = ["libc6", "libfluidsynth3", "librtmidi6", "librtaudio6"]
        for library in libraries + (["libqt6widgets6", "libqt6network6"] if installed.has_windows() else []):
            self.assertTrue([entry for entry in depends if entry.startswith(library + " ")], library)
        self.assertFalse([entry for entry in depends if "-dev" in entry or "-dbg" in entry])

    def test_it_holds_what_is_installed_with_pages_compressed(self):
        expected = {"usr/" + path + (".gz" if path.endswith((".1", "/changelog")) else "")
                    for path in installed.expected_files()}
        self.assertEqual(installed.files_below(self.content), expected)
        page = gzip.decompress((self.content / "usr/share/man/man1/sonarello-cli.1.gz").read_bytes())
        self.assertEqual(page, (installed.SOURCE / "docs/man/sonarello-cli.1").read_bytes())

    def test_everything_belongs_to_root_and_can_be_read_by_all(self):
        for line in run("dpkg-deb", "--contents", self.package)[0].splitlines():
            mode, owner, *_, path = line.split()
            self.assertEqual(owner, "root/root", path)
            runs = path.endswith("/") or path.startswith("./usr/bin/")
            self.assertEqual(mode[1:], "rwxr-xr-x" if runs else "rw-r--r--", path)

    def test_programs_carry_no_symbols(self):
        for program in installed.PROGRAMS:
            self.assertIn(", stripped", run("file", self.content / "usr/bin" / program)[0])


if __name__ == "__main__":
    installed.read_arguments()
    unittest.main()
