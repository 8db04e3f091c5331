"""What the tests that run sonarello-cli from outside share: songs and the running of the program."""
import os
import shutil
import struct
import subprocess
import sys
import tempfile
import unittest
from pathlib import Path

PROGRAM = ""


def vlq(number):
    data = [number & 127]
    while number := number >> 7:
        data.append(0x80 | (number & 127))
    return bytes(reversed(data))


def track(*events):
    """A chunk of (tick, bytes) pairs, End of track included."""
    body, last = b"", 0
    for tick, data in events:
        body += vlq(tick - last) + bytes(data)
        last = tick
    body += b"\x00\xff\x2f\x00"
    return b"MTrk" + struct.pack(">I", len(body)) + body


def smf(form, *tracks, division=480):
    return b"MThd" + struct.pack(">IHHH", 6, form, len(tracks), division) + b"".join(tracks)


def meta(kind, data):
    return b"\xff" + bytes([kind]) + vlq(len(data)) + data


def conductor(name="Grüße".encode("latin-1")):
    return track((0, meta(3, name)), (0, meta(0x58, b"\x04\x02\x18\x08")),
                 (0, meta(0x51, (500000).to_bytes(3, "big"))))


def song(count_in=True):
    """Two channels in format 1, with a GM reset, a count-in and sounds at tick 0."""
    drums = [(0, b"\xc9\x08")]
    if count_in:
        for n in range(4):
            drums += [(1920 + n * 480, [0x99, 37, 100]), (1980 + n * 480, [0x99, 37, 0])]
    drums += [(3840, [0x99, 36, 90]), (3900, [0x89, 36, 64])]
    piano = [(0, b"\xf0\x05\x7e\x7f\x09\x01\xf7"), (0, b"\xb0\x07\x5a"), (0, b"\xc0\x05"),
             (3840, [0x90, 60, 90]), (4800, [0x80, 60, 64])]
    return smf(1, conductor(), track(*piano), track(*drums))


def format0():
    return smf(0, track((0, meta(3, b"One")), (0, b"\xc0\x05"), (480, [0x90, 60, 90]),
                        (960, [0x80, 60, 64]), (960, [0x91, 62, 90]), (1440, [0x81, 62, 64])))


HEADER_FAULT = b"MThX" + song()[4:]
TEXTS = {
    "short": ("Fehler in der Mididatei: Datei zu kurz!", "Error in midifile: file too short!"),
    "header": ("Error in midi file header - 1!",) * 2,
}


class ProgramTest(unittest.TestCase):
    def setUp(self):
        self.folder = Path(tempfile.mkdtemp(prefix="sonarello-cli-"))
        self.addCleanup(shutil.rmtree, self.folder, True)

    def file(self, name, data):
        path = self.folder / name
        path.write_bytes(data)
        return str(path)

    def run_program(self, *words, lang="C.UTF-8", **more):
        environment = {k: v for k, v in os.environ.items() if k not in ("LC_ALL", "LC_MESSAGES")}
        environment["LANG"] = lang
        done = subprocess.run([PROGRAM, *words], capture_output=True, env=environment, timeout=60,
                              stdin=subprocess.DEVNULL, check=False, cwd=self.folder, **more)
        done.out = done.stdout.decode("utf-8", "surrogateescape")
        done.err = done.stderr.decode("utf-8", "surrogateescape")
        return done

    def expect(self, status, *words, **more):
        done = self.run_program(*words, **more)
        self.assertEqual(done.returncode, status, done.err + done.out)
        return done

    def events(self, path, *words):
        lines = self.expect(0, "events", path, *words).out.splitlines()
        return [line.split("\t") for line in lines]


def main():
    """Runs the tests of the calling file against the program that the command line names."""
    global PROGRAM  # pylint: disable=global-statement
    PROGRAM = os.path.abspath(sys.argv.pop(1))
    unittest.main()
