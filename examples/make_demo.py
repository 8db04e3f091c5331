#!/usr/bin/env python3
"""Writes demo.mid, the song that Sonarello opens when it is given none.

usage: make_demo.py [OUT.mid]     (default: demo.mid beside this script)

"Lichter überm Hafen" is a ballad of about three minutes: words, tune and arrangement
were made for Sonarello and are given away under CC0. The same script always gives the
same bytes. It uses the standard library only.

The file is what a file from the trade looks like: format 1, 480 ticks to a quarter, a
setup bar with resets for GM, GS and XG, a one-bar count-in, sixteen channels of which
two play drums, lyrics in Latin-1 (the encoding that instruments with a lyrics display
read), XF chord events, a slower bridge with a bar of 2/4 behind it, and a last chorus
a tone higher that ends in a ritardando.
"""
import os
import sys
from itertools import combinations

BEAT = 480  # ticks to a quarter

# ---------------------------------------------------------------- form and harmony
# name, chords ("|" parts bars), shift in semitones, beats per minute
SECTIONS = [
    ("Auftakt", "- | -", 0, 100),
    ("Intro", "C | G/B | Am | F | C | G/B | F | Gsus4 G", 0, 100),
    ("Strophe 1", "Am | F | C | G | Am | F | Dm7 | G", 0, 100),
    ("Strophe 2", "Am | F | C | G/B | Am | F | Dm7 | Gsus4 G", 0, 100),
    ("Refrain 1", "F | G | Em7 | Am | F | C/E | Dm7 G7 | C", 0, 100),
    ("Zwischenspiel", "C | G/B | Am7 | F", 0, 100),
    ("Bridge", "Dm7 | Em7 | F | G | Dm7 | E7/G# | Am Am/G | F G", 0, 84),
    ("Wirbel", "G7", 0, 84),  # one bar of 2/4
    ("Refrain 2", "F | G | Em7 | Am | F | C/E | Dm7 G7 | C D7", 0, 104),
    ("Refrain 3", "F | G | Em7 | Am | F | C/E | Dm7 G7 | C", 2, 104),
    ("Schluss", "C | G/B | Am | F | F Fm6 | C", 2, 104),
]
SHORT_BARS = {"Wirbel": 2}  # beats of a bar that is not 4/4

LETTERS = {"C": 0, "D": 2, "E": 4, "F": 5, "G": 7, "A": 9, "B": 11}
CHORD_TONES = {"": (0, 4, 7), "m": (0, 3, 7), "7": (0, 4, 7, 10), "m7": (0, 3, 7, 10),
               "m6": (0, 3, 7, 9), "sus4": (0, 5, 7)}
XF_TYPES = {"": 0, "m": 8, "7": 19, "m7": 10, "m6": 9, "sus4": 32}  # XF chord type numbers
# Note name as an XF chord root: accidental in the high nibble (3 natural, 4 sharp), letter 1-7 in the low.
XF_ROOTS = [0x31, 0x41, 0x32, 0x42, 0x33, 0x34, 0x44, 0x35, 0x45, 0x36, 0x46, 0x37]


class Chord:
    def __init__(self, symbol, shift):
        name, _, bass = symbol.partition("/")
        root = name[:2] if name[1:2] == "#" else name[:1]
        self.type = name[len(root):]
        self.root = (pitch_class(root) + shift) % 12
        self.bass = (pitch_class(bass) + shift) % 12 if bass else self.root
        self.tones = [(self.root + i) % 12 for i in CHORD_TONES[self.type]]


def pitch_class(name):
    return LETTERS[name[0]] + name.count("#") - name[1:].count("b")


class Bar:
    def __init__(self, section, index, start, beats, shift, symbols):
        self.section, self.index, self.start, self.beats, self.shift = section, index, start, beats, shift
        names = [] if symbols == ["-"] else symbols
        step = beats / len(names) if names else beats
        self.chords = [(i * step, step, Chord(name, shift)) for i, name in enumerate(names)]

    def chord_at(self, beat):
        return [c for at, _, c in self.chords if at <= beat][-1]


def make_bars():
    bars, start = [], 0
    for section, chords, shift, _ in SECTIONS:
        beats = SHORT_BARS.get(section, 4)
        for index, text in enumerate(chords.split("|")):
            bars.append(Bar(section, index, start, beats, shift, text.split()))
            start += beats
    return bars


BARS = make_bars()
END = BARS[-1].start + BARS[-1].beats


def section_bars(*names):
    return [b for b in BARS if any(b.section.startswith(n) for n in names)]


def section_start(name):
    return section_bars(name)[0].start


# ---------------------------------------------------------------- the sung line
# Two-bar lines: beat from the line's first bar line, length in beats; the first of the
# eight-syllable lines that start on an unstressed syllable is the pickup.
TROCHEE = [(0, 1), (1, .5), (1.5, .5), (2, 1.5), (3.5, .5), (4, 1.5), (5.5, .5), (6, 1.4)]
IAMB = [(-.5, .5), (0, 1.5), (1.5, .5), (2, 1.5), (3.5, .5), (4, 1.5), (5.5, .5), (6, 1.4)]
SIX = [(0, 1.5), (1.5, .5), (2, 1), (3, 1), (4, 2), (6, 1.4)]
SEVEN = [(-.5, .5), (0, 1.5), (1.5, .5), (2, 1), (3, 1), (4, 2), (6, 1.4)]

VERSE_1 = [
    (TROCHEE, "Ü-ber den Dä-chern wird es still,", "A4 B4 C5 E5 D5 C5 A4 A4"),
    (IAMB, "weil je-der Stern jetzt leuch-ten will.", "G4 C5 B4 C5 E5 D5 C5 B4"),
    (IAMB, "Der Ha-fen schläft, die Schif-fe ruhn,", "A4 C5 B4 C5 E5 F5 E5 C5"),
    (IAMB, "es gibt für heu-te nichts zu tun.", "C5 D5 E5 F5 E5 D5 C5 B4"),
]
VERSE_2 = [
    (IAMB, "Grün schim-mert noch das letz-te Licht,", "A4 C5 B4 C5 E5 D5 C5 A4"),
    (IAMB, "der Ne-bel kommt, man hört ihn nicht.", "G4 C5 D5 E5 G5 D5 C5 B4"),
    (IAMB, "Am Kai er-zählt ein al-ter Mann,", "B4 C5 B4 C5 E5 F5 G5 A5"),
    (IAMB, "wie schön die Rei-se einst be-gann.", "G5 F5 E5 D5 E5 D5 C5 D5"),
]
CHORUS_TUNE = ["F5 E5 F5 G5 G5 D5", "D5 E5 D5 E5 G5 A5 E5", "E5 F5 E5 F5 A5 G5 E5",
               "E5 F5 E5 D5 B4 C5 C5"]
CHORUS_WORDS = ["Lich-ter ü-berm Ha-fen,", "die nie-mals wirk-lich schla-fen,",
                "sie füh-ren uns nach Hau-se,", "ganz oh-ne Rast und Pau-se."]
CHORUS_WORDS_3 = ["Lich-ter ü-berm Ha-fen,", "die wa-chen, wenn wir schla-fen,",
                  "sie hö-ren uns-re Fra-gen,", "bis uns die Wel-len tra-gen."]
BRIDGE = [
    (IAMB, "Und bläst der Wind auch noch so kühl,", "A4 D5 E5 F5 E5 E5 D5 B4"),
    (IAMB, "es bleibt uns die-ses Hoch-ge-fühl.", "C5 C5 D5 F5 E5 D5 B4 D5"),
    (IAMB, "Wir fah-ren aus, wir keh-ren heim,", "C5 D5 E5 F5 E5 E5 D5 E5"),
    (IAMB, "kein Mensch soll je al-lei-ne sein.", "E5 A5 G5 E5 D5 C5 C5 D5"),
]


def chorus(words):
    return list(zip([SIX, SEVEN, SEVEN, SEVEN], words, CHORUS_TUNE))


SUNG = [("Strophe 1", VERSE_1), ("Strophe 2", VERSE_2), ("Refrain 1", chorus(CHORUS_WORDS)),
        ("Bridge", BRIDGE), ("Refrain 2", chorus(CHORUS_WORDS)), ("Refrain 3", chorus(CHORUS_WORDS_3))]

# The hook of intro, interlude and ending, and the answers of the oboe: bar -> (beat, length, note).
HOOK = {0: [(0, 1.5, "E5"), (1.5, .5, "D5"), (2, 1, "C5"), (3, 1, "G4")],
        1: [(0, 1.5, "D5"), (1.5, .5, "C5"), (2, 1.9, "B4")],
        2: [(0, 1.5, "C5"), (1.5, .5, "B4"), (2, 1, "A4"), (3, 1, "E5")],
        3: [(0, 1, "F5"), (1, 1, "E5"), (2, 1, "D5"), (3, 1, "C5")],
        4: [(0, 1.5, "E5"), (1.5, .5, "D5"), (2, 1, "C5"), (3, 1, "G4")],
        5: [(0, 1.5, "D5"), (1.5, .5, "E5"), (2, 1.9, "G5")],
        6: [(0, 1, "F5"), (1, 1, "E5"), (2, 1, "D5"), (3, 1, "C5")],
        7: [(0, 2, "C5"), (2, 1.5, "B4")]}
ANSWERS = {1: [(2, .5, "C5"), (2.5, .5, "D5"), (3, 1, "F5")], 3: [(2, .5, "D5"), (2.5, .5, "E5"), (3, 1, "D5")],
           5: [(2, 1, "C5"), (3, .5, "D5"), (3.5, .5, "F5")], 7: [(2, 1, "G5"), (3, .9, "F5")]}
DESCANT = {0: [(0, 2, "A5"), (2, 2, "C6")], 1: [(0, 3, "B5"), (3, 1, "A5")], 2: [(0, 2, "G5"), (2, 2, "B5")],
           3: [(0, 3, "C6"), (3, 1, "B5")], 4: [(0, 2, "A5"), (2, 2, "C6")], 5: [(0, 3.8, "G5")],
           6: [(0, 2, "A5"), (2, 2, "B5")], 7: [(0, 3.8, "C6")]}


def note(name):
    return 12 * (int(name[-1]) + 1) + pitch_class(name[:-1])


# ---------------------------------------------------------------- the band
# channel: name, program, volume, pan, reverb, chorus, variation
BAND = {
    1: ("Klavier", 0, 96, 58, 45, 10, 0), 2: ("Bass", 33, 104, 64, 12, 0, 0),
    3: ("Melodie", 64, 112, 64, 56, 8, 24), 4: ("Oboe", 68, 84, 44, 60, 6, 10),
    5: ("Streicher", 48, 82, 76, 64, 14, 0), 6: ("Gitarre", 24, 88, 36, 40, 12, 0),
    7: ("E-Gitarre", 27, 74, 92, 34, 40, 16), 8: ("Fläche", 89, 66, 64, 70, 30, 0),
    9: ("Bläser", 61, 84, 84, 48, 6, 0), 10: ("Schlagzeug", 0, 108, 64, 28, 0, 0),
    11: ("Percussion", 0, 78, 50, 40, 0, 0), 12: ("Orgel", 16, 68, 40, 36, 0, 0),
    13: ("Chor", 52, 78, 64, 80, 20, 0), 14: ("Glockenspiel", 9, 72, 100, 72, 0, 20),
    15: ("Harfe", 46, 84, 28, 66, 8, 0), 16: ("Akkordeon", 21, 86, 54, 44, 10, 0),
}
# Channels whose notes end with a note-on of velocity 0 under running status.
RUNNING = {6, 7, 11, 15, 16}


class Song:
    """Events by track: track 0 is the conductor, track n plays channel n."""

    def __init__(self):
        self.events = {track: [] for track in range(17)}
        self.notes = {channel: [] for channel in BAND}
        self.seed = 20240229

    def put(self, track, tick, data, rank=5):
        """rank orders events of one tick: note-offs (1) stand in front of everything else."""
        self.events[track].append((int(tick), rank, len(self.events[track]), bytes(data)))

    def meta(self, track, tick, kind, payload):
        self.put(track, tick, bytes([0xFF, kind]) + vlq(len(payload)) + payload)

    def sysex(self, tick, text):
        body = bytes.fromhex(text) + b"\xf7"
        self.put(0, tick, b"\xf0" + vlq(len(body)) + body)

    def ctrl(self, channel, tick, number, value):
        self.put(channel, tick, [0xB0 + channel - 1, number, max(0, min(127, int(value)))])

    def ramp(self, channel, beat, length, number, start, end, steps):
        """A controller that moves evenly from one value to another."""
        for i in range(steps + 1):
            self.ctrl(channel, ticks(beat + length * i / steps), number,
                      round(start + (end - start) * i / steps))

    def play(self, channel, beat, length, pitch, velocity, loose=3):
        """loose: how many ticks a player may be early or late."""
        self.seed = (self.seed * 1103515245 + 12345) % 2 ** 31
        wobble = (self.seed >> 12) % (2 * loose + 1) - loose
        velocity += (self.seed >> 20) % 7 - 3
        start = ticks(beat) + wobble
        self.notes[channel].append([start, start + max(20, ticks(length)), pitch, max(1, min(127, velocity))])

    def finish_notes(self):
        """Ends a note where its key is struck again, then makes the events. Of two strokes at once one stays."""
        for channel, notes in self.notes.items():
            notes.sort()
            following = {}
            for n in reversed(notes):
                again = following.get(n[2], n[1])
                n[1] = min(n[1], again) if again - n[0] > 20 else n[0]
                following[n[2]] = n[0]
            off = 0x90 if channel in RUNNING else 0x80
            for start, end, pitch, velocity in notes:
                if end > start:
                    self.put(channel, start, [0x90 + channel - 1, pitch, velocity])
                    self.put(channel, end, [off + channel - 1, pitch, 0 if off == 0x90 else 64], rank=1)

    def bytes(self):
        last = max(e[0] for track in self.events.values() for e in track)
        out = b"MThd" + (6).to_bytes(4, "big") + bytes([0, 1, 0, len(self.events)]) + BEAT.to_bytes(2, "big")
        for track, events in self.events.items():
            body, tick, status = b"", 0, None
            for at, _, _, data in sorted(events) + [(last + BEAT, 9, 0, b"\xff\x2f\0")]:
                body += vlq(at - tick)
                tick = at
                running = track in RUNNING and data[0] == status
                body += data[1:] if running else data
                status = data[0] if data[0] < 0xF0 else None
            out += b"MTrk" + len(body).to_bytes(4, "big") + body
        return out


def vlq(number):
    out = bytes([number & 127])
    while number := number >> 7:
        out = bytes([128 | number & 127]) + out
    return out


def ticks(beat):
    return int(round(beat * BEAT))


def voicings(bars, count, low, high):
    """(beat, length, pitches, bar) of each chord, every voice moving as little as it can."""
    previous, out = None, []
    for bar in bars:
        for at, length, chord in bar.chords:
            keys = [p for p in range(low, high + 1) if p % 12 in chord.tones]
            wanted = set(chord.tones if count >= len(chord.tones) else chord.tones[1:])
            choices = [c for c in combinations(keys, count)
                       if wanted <= {p % 12 for p in c} and c[-1] - c[0] <= 16
                       and all(b - a > 1 for a, b in zip(c, c[1:]))]
            middle = [low + (high - low) * (i + 1) / (count + 1) for i in range(count)]

            def cost(c):
                drift = sum(abs(a - b) for a, b in zip(c, middle)) * .2
                return drift + sum(abs(a - b) for a, b in zip(c, previous or middle))
            previous = min(choices, key=lambda c: (cost(c), c))
            out.append((bar.start + at, length, previous, bar))
    return out


def full(bar):
    """A bar of the loud parts."""
    return bar.section.startswith("Refrain") or bar.section == "Zwischenspiel"


# ---------------------------------------------------------------- the conductor's track
def conductor(song):
    song.meta(0, 0, 3, latin("Lichter überm Hafen"))
    song.meta(0, 0, 2, b"2024 the Sonarello developers, CC0")
    song.meta(0, 0, 1, latin("Demolied für Sonarello, Text in Latin-1"))
    song.meta(0, 0, 0x58, bytes([4, 2, 24, 8]))
    song.meta(0, 0, 0x59, bytes([0, 0]))
    roll = section_bars("Wirbel")[0]
    song.meta(0, ticks(roll.start), 0x58, bytes([2, 2, 24, 8]))
    song.meta(0, ticks(roll.start + roll.beats), 0x58, bytes([4, 2, 24, 8]))
    song.meta(0, ticks(section_start("Refrain 3")), 0x59, bytes([2, 0]))
    tempo, last = None, None
    for name, _, _, bpm in SECTIONS:
        song.meta(0, ticks(section_start(name)), 6, latin(name))
        if bpm != last:
            set_tempo(song, section_start(name), bpm)
        last = bpm
    # A breath in front of the bridge, the ritardando at the end.
    for i, bpm in enumerate((97, 92, 88)):
        set_tempo(song, section_start("Bridge") - 2 + i * .5, bpm)
    for i in range(13):
        set_tempo(song, section_start("Schluss") + 14 + i * .5, 102 - i * 4)
    for bar in BARS:
        for at, _, chord in bar.chords:
            kind = XF_TYPES[chord.type]
            root, bass = XF_ROOTS[chord.root], XF_ROOTS[chord.bass]
            under = kind if chord.bass == chord.root else 127
            song.meta(0, ticks(bar.start + at), 0x7F, bytes([0x43, 0x7B, 1, root, kind, bass, under]))


def set_tempo(song, beat, bpm):
    song.meta(0, ticks(beat), 0x51, round(60000000 / bpm).to_bytes(3, "big"))


def latin(text):
    return text.encode("latin-1")


def roland(address_and_data):
    """A GS message to device 17: its checksum makes address and data a multiple of 128."""
    body = bytes.fromhex(address_and_data)
    return "41 10 42 12 " + (body + bytes([-sum(body) % 128])).hex()


def setup(song):
    song.sysex(0, "7E 7F 09 01")                   # GM System On
    song.sysex(60, roland("40 00 7F 00"))          # GS Reset
    song.sysex(120, "43 10 4C 00 00 7E 00")        # XG System On
    song.sysex(180, roland("40 1A 15 02"))         # GS: channel 11 plays drum map 2
    song.sysex(184, roland("40 01 30 04"))         # GS reverb: hall 2
    song.sysex(188, roland("40 01 38 02"))         # GS chorus: chorus 3
    song.sysex(192, "43 10 4C 08 0A 07 03")        # XG: channel 11 plays drum setup 2
    song.sysex(196, "43 10 4C 02 01 00 01 00")     # XG reverb: hall 1
    song.sysex(200, "43 10 4C 02 01 20 41 00")     # XG chorus: chorus 1
    song.sysex(204, "43 10 4C 02 01 40 05 00")     # XG variation: delay L,C,R
    song.sysex(208, "43 10 4C 02 01 5A 01")        # XG variation: connected as a system effect
    for channel, (name, program, volume, pan, reverb, chorus_send, variation) in BAND.items():
        at = 240 + channel * 6
        song.meta(channel, 0, 3, latin(name))
        song.ctrl(channel, at, 0, 127 if channel in (10, 11) else 0)
        song.ctrl(channel, at + 1, 32, 0)
        song.put(channel, at + 2, [0xC0 + channel - 1, program])
        for i, (number, value) in enumerate(((7, volume), (10, pan), (11, 127), (91, reverb), (93, chorus_send),
                                             (94, variation))):
            song.ctrl(channel, 480 + channel * 4 + i * 2, number, value)
    for i, (number, value) in enumerate(((101, 0), (100, 0), (6, 2), (38, 0), (101, 127), (100, 127))):
        song.ctrl(3, 600 + i * 2, number, value)   # bends of the tune reach a whole tone
        song.ctrl(9, 640 + i * 2, number, value)
    # The snare drum (key 38): a little lower, louder, drier, and darker.
    for i, (parameter, value) in enumerate(((24, 61), (26, 112), (29, 40), (20, 58))):
        for j, (number, data) in enumerate(((99, parameter), (98, 38), (6, value))):
            song.ctrl(10, 700 + i * 12 + j * 2, number, data)


# ---------------------------------------------------------------- tune and words
def tune(song):
    for section, lines in SUNG:
        first = section_bars(section)[0]
        loud = {"Strophe 1": 80, "Strophe 2": 86, "Bridge": 82}.get(section, 100)
        for i, (rhythm, words, pitches) in enumerate(lines):
            sung = syllables(words)
            names = pitches.split()
            assert len(rhythm) == len(sung) == len(names), (section, words)
            for (beat, length), text, name in zip(rhythm, sung, names):
                at = first.start + 8 * i + beat
                song.meta(3, ticks(at), 5, latin(text))
                sing(song, at, length, note(name) + first.shift, loud + (6 if beat % 2 == 0 else 0))
    song.ramp(3, section_start("Schluss"), 2, 11, 120, 90, 4)


def sing(song, at, length, pitch, velocity):
    """A note of the tune; long ones are scooped into, then get vibrato and pressure."""
    song.play(3, at, length * .96, pitch, velocity)
    if length < 1.4:
        return
    for i, bend in enumerate((5200, 6300, 7300, 8192)):
        song.put(3, ticks(at) - 6 + i * 18, [0xE2, bend & 127, bend >> 7])
    song.ramp(3, at + length * .45, length * .35, 1, 0, 52, 4)
    song.ctrl(3, ticks(at + length) - 10, 1, 0)
    for i, pressure in enumerate((20, 44, 60, 0)):
        song.put(3, ticks(at + length * (.5 + i * .15)), [0xD2, pressure])


def syllables(words):
    """"Ha-fen schläft" gives "Ha", "fen ", "schläft\\r": a space ends a word, a return the line."""
    parts = [s for word in words.split() for s in (word.replace("-", "\0") + " ").split("\0")]
    parts[-1] = parts[-1].rstrip() + "\r"
    return parts


def melody_of_bars(song, channel, table, bars, velocity, octave=0):
    for bar in bars:
        for beat, length, name in table.get(bar.index, []):
            song.play(channel, bar.start + beat, length * .94, note(name) + bar.shift + octave, velocity)


def hook_and_answers(song):
    melody_of_bars(song, 16, HOOK, section_bars("Intro", "Zwischenspiel"), 88)
    melody_of_bars(song, 16, {i: HOOK[i] for i in range(4)}, section_bars("Schluss"), 80)
    melody_of_bars(song, 14, HOOK, section_bars("Intro")[4:] + section_bars("Zwischenspiel"), 70, 12)
    melody_of_bars(song, 4, ANSWERS, section_bars("Strophe 2", "Bridge"), 78)
    melody_of_bars(song, 4, DESCANT, section_bars("Refrain 3"), 82)
    second_voice(song)
    ending = section_bars("Schluss")
    for beat, name in enumerate(("F5", "A5", "Ab5", "C6")):
        song.play(14, ending[4].start + beat, 1, note(name) + 2, 64 - 4 * beat)
    song.play(14, ending[5].start, 3.5, note("E6") + 2, 60)
    song.play(14, ending[5].start + 1, 2.5, note("G6") + 2, 52)
    for start, length in ((section_start("Intro"), 16), (section_start("Zwischenspiel"), 12)):
        song.ramp(16, start, length, 11, 96, 124, 12)


def second_voice(song):
    """The accordion sings the choruses a third below, in the scale."""
    scale = [0, 2, 4, 5, 7, 9, 11]
    for section, lines in SUNG:
        if not section.startswith("Refrain"):
            continue
        first = section_bars(section)[0]
        for i, (rhythm, _, pitches) in enumerate(lines):
            for (beat, length), name in zip(rhythm, pitches.split()):
                pitch = note(name)
                step = scale.index(pitch % 12) - 2
                below = pitch // 12 * 12 + 12 * (step // 7) + scale[step % 7]
                song.play(16, first.start + 8 * i + beat, length * .9, below + first.shift, 66)


# ---------------------------------------------------------------- chords
def keyboards(song):
    for at, length, keys, bar in voicings(BARS, 4, 52, 74):
        loud = 78 if full(bar) else 62
        song.ctrl(1, ticks(at) - 8, 64, 0)
        song.ctrl(1, ticks(at) + 14, 64, 127)
        if bar.section == "Intro" or bar.section == "Bridge":
            order = (0, 2, 1, 3, 2, 3, 1, 2)
            for i in range(int(length * 2)):
                song.play(1, at + i / 2, .48, keys[order[i % 8]], loud - (6 if i % 2 else 0))
        elif bar.section == "Schluss" and bar.index >= 4:
            for i, key in enumerate(keys):
                song.play(1, at + i * .06, length - .3, key, loud - 8, 0)
        else:
            for beat, hold in ((0, 1.4), (1.5, .45), (2, .9), (3, .45), (3.5, .45)):
                if beat < length:
                    for key in keys:
                        song.play(1, at + beat, min(hold, length - beat), key, loud - (8 if beat % 1 else 0), 2)
        song.play(1, at, length * .95, 36 + (bar.chord_at(at - bar.start).bass) % 12, loud - 6)
    song.ctrl(1, ticks(END), 64, 0)
    organ = section_bars("Refrain", "Zwischenspiel")
    for at, length, keys, bar in voicings(organ, 3, 57, 76):
        for key in keys:
            song.play(12, at, length * .97, key, 74, 1)
        song.ctrl(12, ticks(at), 1, 100 if bar.index % 4 == 3 else 0)  # the rotor turns fast


def sustained(song):
    strings = section_bars("Strophe 2", "Refrain", "Zwischenspiel", "Bridge", "Wirbel", "Schluss")
    for at, length, keys, bar in voicings(strings, 4, 55, 79):
        for key in keys:
            song.play(5, at, length * .99, key, 72 if full(bar) else 58, 4)
    for bar in strings:
        rising = bar.index % 2 == 0
        top = 124 if full(bar) else 104
        song.ramp(5, bar.start, bar.beats - .25, 11, top - 34 if rising else top, top if rising else top - 34, 12)
    pad = section_bars("Intro", "Strophe 1", "Bridge", "Schluss")
    for at, length, keys, bar in voicings(pad, 3, 48, 67):
        for key in keys:
            song.play(8, at, length * .99, key, 60, 6)
    choir = section_bars("Refrain", "Bridge", "Wirbel", "Schluss")
    for at, length, keys, bar in voicings(choir, 3, 60, 77):
        for key in keys:
            song.play(13, at, length * .98, key, 76 if full(bar) else 60, 5)
    bridge = section_bars("Bridge", "Wirbel")
    song.ramp(13, bridge[0].start, 34, 11, 60, 127, 34)
    song.ctrl(13, ticks(section_start("Refrain 2")), 11, 112)
    song.ramp(13, section_start("Schluss") + 16, 7.5, 11, 112, 40, 15)
    song.ramp(5, section_start("Schluss") + 20.25, 3.5, 11, 88, 30, 12)


def guitars(song):
    picking = section_bars("Strophe", "Bridge", "Schluss")
    for at, length, keys, bar in voicings(picking, 4, 50, 69):
        order = (0, 2, 3, 2, 1, 2, 3, 2)
        for i in range(int(length * 2)):
            song.play(6, at + i / 2, .7, keys[order[i % 8]], 78 if i % 4 == 0 else 66, 4)
    strumming = section_bars("Refrain", "Zwischenspiel")
    for at, length, keys, bar in voicings(strumming, 4, 50, 69):
        for beat, down in ((0, True), (1, True), (1.5, False), (2.5, False), (3, True), (3.5, False)):
            if beat < length:
                for i, key in enumerate(keys if down else reversed(keys)):
                    song.play(6, at + beat + i * .02, .4, key, 80 if down else 62, 1)
    chops = section_bars("Strophe 2", "Refrain", "Zwischenspiel")
    for at, length, keys, bar in voicings(chops, 3, 59, 76):
        for beat in (1, 2.75, 3):
            if beat < length:
                for key in keys:
                    song.play(7, at + beat, .2, key, 84 if beat != 2.75 else 66, 2)


def brass_and_harp(song):
    for at, length, keys, bar in voicings(section_bars("Refrain", "Zwischenspiel", "Wirbel"), 3, 60, 77):
        if bar.index == 6 or bar.section == "Wirbel":
            song.ramp(9, at, length * .9, 11, 50, 124, 8)
            hits = ((0, length * .95),)
            for i in range(5):
                song.put(9, ticks(at + length * (.3 + i * .12)), [0xD8, 12 * (i + 1) if i < 4 else 0])
        else:
            song.ctrl(9, ticks(at), 11, 118)
            hits = ((0, .7), (1.5, .4)) if bar.index % 2 == 0 else ((2.5, .4), (3, .9))
        for beat, hold in hits:
            if beat < length:
                for key in keys:
                    song.play(9, at + beat, min(hold, length - beat), key, 88, 2)
    for bar in section_bars("Intro")[:4] + section_bars("Bridge") + section_bars("Schluss"):
        for at, length, chord in bar.chords:
            keys = [p for p in range(55, 90) if p % 12 in chord.tones]
            for i in range(int(min(length, 2) * 4)):
                song.play(15, bar.start + at + i / 4, .9, keys[i], 60 + 3 * i, 2)
    for section in ("Refrain 2", "Refrain 3"):  # a run up into the chorus
        run = [p for p in range(55, 92) if (p - (2 if section[-1] == "3" else 0)) % 12 in LETTERS.values()]
        for i, key in enumerate(run[:16]):
            song.play(15, section_start(section) - 2 + i / 8, .4, key, 56 + 3 * i, 1)


# ---------------------------------------------------------------- bass and drums
def bass(song):
    chords = [(bar.start + at, length, chord, bar) for bar in BARS for at, length, chord in bar.chords]
    for i, (at, length, chord, bar) in enumerate(chords):
        low = 28 + (chord.bass - 28) % 12
        fifth = low + 7 if (low + 7) % 12 in chord.tones else low
        coming = chords[i + 1][2].bass if i + 1 < len(chords) else chord.bass
        target = 28 + (coming - 28) % 12
        # The last eighth leads into the next root from the scale tone below it.
        below = [p for p in (target - 1, target - 2) if (p - bar.shift) % 12 in LETTERS.values()]
        approach = below[0] if below[0] >= 28 and target != low else fifth
        if bar.section == "Intro" and bar.index < 4:
            continue
        if bar.section in ("Bridge", "Schluss"):
            hits = [(0, length * .95, low)]
        elif full(bar):
            hits = [(0, .9, low), (1, .4, low), (1.5, .4, low), (2, .9, fifth), (3, .4, low), (3.5, .4, approach)]
        else:
            hits = [(0, 1.4, low), (1.5, .45, low), (2, 1.4, fifth), (3.5, .45, approach)]
        for beat, hold, key in hits:
            if beat < length:
                song.play(2, at + beat, min(hold, length - beat), key, 96 if beat == 0 else 84, 2)


KICK, STICK, SNARE, CLOSED, PEDAL, OPEN, CRASH, RIDE = 36, 37, 38, 42, 44, 46, 49, 51


def hit(song, beat, key, velocity, channel=10):
    song.play(channel, beat, .2, key, velocity, 1)


def drums(song):
    start = section_start("Intro")
    for i in range(4):  # the count-in stands exactly on the beats
        tick = ticks(start - 4 + i)
        song.notes[10].append([tick, tick + 120, STICK, 100])
    for bar in BARS:
        if bar.section in ("Strophe 1", "Strophe 2"):
            verse_beat(song, bar)
        elif full(bar):
            chorus_beat(song, bar)
        elif bar.section == "Bridge":
            for beat in range(4):
                hit(song, bar.start + beat, RIDE, 66 + 6 * (beat % 2))
            hit(song, bar.start, KICK, 84)
            hit(song, bar.start + 2, STICK, 72)
        elif bar.section == "Intro" and bar.index >= 4:
            for beat in range(4):
                hit(song, bar.start + beat, PEDAL, 60)
            hit(song, bar.start, KICK, 80)
    roll = section_bars("Wirbel")[0].start
    for i in range(16):
        hit(song, roll + i / 8, SNARE, 44 + 5 * i)
    hit(song, roll, KICK, 90)
    ending = section_bars("Schluss")
    for bar in ending[:4]:
        chorus_beat(song, bar, 14)
    for beat in (ending[4].start, ending[5].start):
        hit(song, beat, KICK, 84)
        hit(song, beat, CRASH, 70)


def verse_beat(song, bar):
    snare = STICK if bar.section == "Strophe 1" else SNARE
    for i in range(8):
        hit(song, bar.start + i / 2, CLOSED, 74 if i % 2 == 0 else 54)
    for beat in (0, 2, 3.5) if bar.index % 2 else (0, 1.5, 2):
        hit(song, bar.start + beat, KICK, 96 if beat == 0 else 84)
    for beat in (1, 3):
        hit(song, bar.start + beat, snare, 88)
    if bar.index == 7:
        fill(song, bar)


def chorus_beat(song, bar, softer=0):
    if bar.index == 0:
        hit(song, bar.start, CRASH, 108 - softer)
    for i in range(8):
        key = OPEN if i == 7 and bar.index % 2 else RIDE if bar.section == "Refrain 3" else CLOSED
        hit(song, bar.start + i / 2, key, (82 if i % 2 == 0 else 62) - softer)
    for beat in (0, 1.5, 2.5) if bar.index % 2 == 0 else (0, 2, 2.5, 3.5):
        hit(song, bar.start + beat, KICK, (106 if beat == 0 else 92) - softer)
    for beat, velocity in ((1, 104), (1.75, 36), (2.25, 34), (3, 108)):
        hit(song, bar.start + beat, SNARE, max(20, velocity - softer))
    if bar.index == 7 or bar.section == "Zwischenspiel" and bar.index == 3:
        fill(song, bar)


def fill(song, bar):
    for i, key in enumerate((SNARE, SNARE, 50, 50, 47, 47, 43, 43)):
        hit(song, bar.start + 2 + i / 4, key, 72 + 5 * i)


def percussion(song):
    """Shaker, tambourine, congas, triangle on channel 11, the second drum part."""
    for bar in BARS:
        if bar.section.startswith("Strophe") or full(bar) or bar.section == "Intro" and bar.index >= 4:
            for i in range(bar.beats * 4):
                hit(song, bar.start + i / 4, 70, (52, 30, 42, 34)[i % 4], 11)
        if full(bar):
            for beat in (1, 3):
                hit(song, bar.start + beat, 54, 78, 11)
        if bar.section == "Strophe 2" or bar.section.startswith("Refrain"):
            for beat, key, velocity in ((0, 63, 70), (.75, 62, 50), (1.5, 63, 66), (2.5, 64, 74), (3, 64, 62),
                                        (3.5, 63, 58)):
                hit(song, bar.start + beat, key, velocity, 11)
        if bar.section == "Bridge" and bar.index % 2 == 0 or bar.section == "Schluss":
            hit(song, bar.start, 81, 62, 11)


def main():
    out = sys.argv[1] if len(sys.argv) > 1 else os.path.join(os.path.dirname(os.path.abspath(__file__)), "demo.mid")
    song = Song()
    for part in (conductor, setup, tune, hook_and_answers, keyboards, sustained, guitars, brass_and_harp, bass,
                 drums, percussion):
        part(song)
    song.finish_notes()
    with open(out, "wb") as f:
        f.write(song.bytes())


if __name__ == "__main__":
    main()
