#!/usr/bin/env python3
"""Programs of others must accept what sonarello-cli writes: midicsv reads it, fluidsynth plays it.

usage: acceptance_test.py PROGRAM SONG.mid [unittest arguments]
"""
import shutil
import subprocess
import sys
import tempfile
import unittest
import wave
from array import array
from pathlib import Path

PROGRAM = SONG = ""
SOUNDFONT = "/usr/share/sounds/sf2/TimGM6mb.sf2"
INSTRUMENTS = ("GM Soundset", "GM2 Soundset", "Yamaha Genos", "Roland SC-88Pro", "Korg Pa4X Musikant",
               "Ketron SD1000", "Limex G5", "Yamaha Motif XF")


def rows(path):
    """The rows that midicsv makes of a file; fails if it complains."""
    done = subprocess.run(["midicsv", path], capture_output=True, check=True, timeout=60)
    if done.stderr:
        raise AssertionError(f"midicsv on {path}: {done.stderr.decode(errors='replace')}")
    return [line.split(", ") for line in done.stdout.decode("latin-1").splitlines()]


def notes(path):
    """Start, channel and key of every note."""
    return sorted((int(r[1]), int(r[3]), int(r[4])) for r in rows(path)
                  if r[2] == "Note_on_c" and int(r[5]) > 0)


class Acceptance(unittest.TestCase):
    def setUp(self):
        self.folder = Path(tempfile.mkdtemp(prefix="sonarello-accept-"))
        self.addCleanup(shutil.rmtree, self.folder, True)

    def save(self, instrument, form):
        target = str(self.folder / f"{form}.mid")
        subprocess.run([PROGRAM, "save", "--quiet", "-i", instrument, "--format", form, "-o", target, SONG],
                       check=True, timeout=60)
        return target

    def test_midicsv_reads_every_note_of_both_formats_for_every_family(self):
        before = notes(SONG)
        self.assertGreater(len(before), 1000)
        for instrument in INSTRUMENTS:
            for form in "01":
                with self.subTest(instrument=instrument, form=form):
                    target = self.save(instrument, form)
                    self.assertEqual(rows(target)[0][3], form)
                    self.assertEqual(notes(target), before)

    def test_fluidsynth_plays_the_fitted_song_from_its_first_to_its_last_note(self):
        sound = str(self.folder / "song.wav")
        subprocess.run(["fluidsynth", "-niq", "-r", "22050", "-O", "s16", "-T", "wav", "-F", sound, SOUNDFONT,
                        self.save("Yamaha Genos", "1")], capture_output=True, check=True, timeout=300)
        with wave.open(sound) as file:
            seconds = file.getnframes() / file.getframerate()
            samples = array("h", file.readframes(file.getnframes()))
        self.assertGreater(seconds, 165)
        second = 2 * 22050
        loud = [max(map(abs, samples[at:at + second]), default=0) > 300
                for at in range(0, len(samples), second)]
        self.assertGreater(sum(loud), 150, "seconds that sound")


if __name__ == "__main__":
    PROGRAM, SONG = sys.argv[1], sys.argv[2]
    unittest.main(argv=[sys.argv[0], *sys.argv[3:]])
