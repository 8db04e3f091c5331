#!/usr/bin/env python3
"""Runs the commands of sonarello-cli that sound from outside, without sound hardware.

usage: playback_test.py PROGRAM [unittest arguments]
"""
import array
import json
import os
import signal
import subprocess
import time
import unittest
import wave
from pathlib import Path

import outside
from outside import HEADER_FAULT, ProgramTest, conductor, smf, track

GM = "GM Soundset"
RATE = 44100
TAIL = 3300  # ms that a song plays on behind its last event


def notes(*times, channel=0):
    """A note of 480 ticks (500 ms) at each of the ticks."""
    events = [(0, bytes([0xC0 | channel, 0]))]
    for tick in times:
        events += [(tick, [0x90 | channel, 60, 100]), (tick + 480, [0x80 | channel, 60, 64])]
    return smf(1, conductor(), track(*sorted(events, key=lambda e: e[0])))


def samples(path):
    with wave.open(path) as w:
        assert (w.getnchannels(), w.getframerate()) == (2, RATE)
        return array.array("h", w.readframes(w.getnframes()))


class Render(ProgramTest):
    def render(self, data, *more):
        path = self.file("song.mid", data)
        out = str(self.folder / "out.wav")
        self.expect(0, "render", path, "-i", GM, "-q", "-o", out, *more)
        return out

    def test_a_song_has_the_length_that_it_plays(self):
        path = self.file("song.mid", notes(1920))
        out = str(self.folder / "out.wav")
        done = self.expect(0, "render", path, "-i", GM, "--json", "-o", out)
        told = json.loads(done.out)
        end = json.loads(self.expect(0, "show", path, "-i", GM, "--json").out)["length"]["milliseconds"]
        self.assertEqual(told["frames"], len(samples(out)) // 2)
        # 44 frames a millisecond, and 45 at every tenth.
        length = end + TAIL
        self.assertEqual(told["frames"], length * 44 + (length + 9) // 10)

    def test_it_sounds_while_a_note_does_and_not_before(self):
        sound = samples(self.render(notes(1920, 5760)))
        def loudest(begin, end):  # ms
            return max(map(abs, sound[begin * RATE // 1000 * 2:end * RATE // 1000 * 2]), default=0)
        self.assertEqual(loudest(0, 1900), 0)
        self.assertGreater(loudest(2000, 2500), 300)
        self.assertGreater(loudest(6000, 6500), 300)
        self.assertLess(loudest(5300, 5900), loudest(2000, 2500) // 4)

    def test_the_same_song_gives_the_same_bytes(self):
        for bits in ("16", "16d", "32"):
            first = Path(self.render(notes(480), "--bits", bits)).read_bytes()
            second = Path(self.render(notes(480), "--bits", bits)).read_bytes()
            self.assertEqual(first, second, bits)
            self.assertEqual(first[:4], b"RIFF")

    def test_drums_and_sounds_differ(self):
        self.assertNotEqual(samples(self.render(notes(480))), samples(self.render(notes(480, channel=9))))

    def test_a_refused_file_leaves_no_wav(self):
        path = self.file("bad.mid", HEADER_FAULT)
        out = self.folder / "out.wav"
        done = self.expect(1, "render", path, "-o", str(out))
        self.assertIn("bad.mid", done.err)
        self.assertFalse(out.exists())

    def test_a_soundfont_that_is_none_is_told(self):
        path = self.file("song.mid", notes(480))
        out = self.folder / "out.wav"
        done = self.expect(1, "render", path, "-i", GM, "--soundfont", path, "-o", str(out))
        self.assertIn("song.mid", done.err)
        self.assertFalse(out.exists())

    def test_a_folder_that_does_not_exist_is_told(self):
        path = self.file("song.mid", notes(480))
        done = self.expect(1, "render", path, "-i", GM, "-o", str(self.folder / "no" / "out.wav"))
        self.assertIn("out.wav", done.err)

    def test_wrong_usage_has_status_2(self):
        path = self.file("song.mid", notes(480))
        for words in (["render"], ["render", path], ["render", path, "-o", "x", "--bits", "24"], ["play"],
                      ["play", path, "-q", "--from", "x"], ["play", path, "-q", "--loop", "1:1"],
                      ["play", path, "-q", "--from", "999:1"], ["ports", "surplus"]):
            self.assertEqual(self.expect(2, *words).out, "", words)


class Play(ProgramTest):
    def test_a_song_plays_to_its_end_without_any_hardware(self):
        path = self.file("song.mid", notes(0))
        began = time.monotonic()
        done = self.expect(0, "play", path, "-i", GM, "--from", "1:1", "--to", "1:2")
        self.assertGreater(time.monotonic() - began, 0.4)
        self.assertIn("SoundFont", done.err)

    def test_ctrl_c_ends_the_song_and_not_the_program(self):
        path = self.file("song.mid", notes(0, 48000))
        child = subprocess.Popen([outside.PROGRAM, "play", path, "-i", GM, "-q"], stderr=subprocess.PIPE,
                                 stdout=subprocess.PIPE, env={**os.environ, "LANG": "C.UTF-8"})
        time.sleep(1)
        child.send_signal(signal.SIGINT)
        out, err = child.communicate(timeout=20)
        self.assertEqual((child.returncode, out, err), (0, b"", b""))

    def test_an_output_that_is_not_there_is_told(self):
        path = self.file("song.mid", notes(0))
        done = self.expect(1, "play", path, "--port", "No such port of mine")
        self.assertIn("There is no such MIDI output", done.err)
        done = self.expect(1, "play", path, "--port", "No such port of mine", lang="de_DE.UTF-8")
        self.assertIn("Diesen MIDI-Ausgang gibt es nicht", done.err)


class Ports(ProgramTest):
    def test_the_built_in_synthesizer_is_always_there(self):
        self.assertIn("SoundFont", self.expect(0, "ports").out)
        told = json.loads(self.expect(0, "ports", "--json").out)
        self.assertEqual(set(told), {"midi", "inputs", "outputs", "instruments", "audio"})
        self.assertEqual(len(told["instruments"]), 1)
        self.assertIn("MIDI-Eingänge", self.expect(0, "ports", lang="de_DE.UTF-8").out)

    def test_an_input_that_is_not_there_is_told(self):
        done = self.expect(1, "monitor", "--port", "No such port of mine")
        self.assertIn("There is no such MIDI input", done.err)


if __name__ == "__main__":
    outside.main()
