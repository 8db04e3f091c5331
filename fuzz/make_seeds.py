#!/usr/bin/env python3
"""Writes the seeds of the fuzz targets to corpus/ beside this script: good inputs that touch what the
program knows, and the same broken in known ways. The same script always writes the same files."""
import os
import shutil

HERE = os.path.join(os.path.dirname(os.path.abspath(__file__)), "corpus")

# First byte of an option pair, by bit: AutoSysex, AutoProgChange, UnmixFormat0, PrevCommandMode,
# InsertSongName, SysexsOnExtraTrack, DontSaveSMF33, SaveMidiRunningMode.
PLAIN, USUAL, EVERYTHING = 0x00, 0x0F, 0xFF
# Second byte: save as format 1, MultiMidi, WordBoxSearch, SpecialD, MinNoteLength, RemoveCountIn,
# GeneralMidiCheck.
FORMAT_0, FORMAT_1, ALL_CHECKS = 0x00, 0x01, 0x7F

GM, ROLAND, KETRON, GM2, TYROS, MOTIF_ES, GENOS, KORG, LIMEX, MP11, INTEGRA, BK9, KETRON_SD, MB_MUSIC = (
    0, 1, 10, 16, 9, 26, 87, 42, 56, 67, 71, 72, 73, 100)


def vlq(number):
    out = bytes([number & 127])
    while number := number >> 7:
        out = bytes([128 | number & 127]) + out
    return out


def smf(*tracks, form=1, division=480, claims=None):
    head = b"MThd\0\0\0\6" + b"".join(n.to_bytes(2, "big") for n in (form, claims or len(tracks), division))
    return head + b"".join(b"MTrk" + len(t).to_bytes(4, "big") + t for t in tracks)


def track(*events, end=True):
    """Events are (absolute tick, bytes)."""
    out, last = b"", 0
    for tick, data in list(events) + ([(max([0] + [t for t, _ in events]), b"\xff\x2f\0")] if end else []):
        out += vlq(tick - last) + data
        last = tick
    return out


def meta(kind, payload):
    return bytes([0xFF, kind]) + vlq(len(payload)) + payload


def sysex(text):
    body = bytes.fromhex(text) + b"\xf7"
    return b"\xf0" + vlq(len(body)) + body


def note(channel, key, start, length, velocity=100):
    return [(start, bytes([0x90 | channel, key, velocity])), (start + length, bytes([0x80 | channel, key, 64]))]


def sorted_track(*groups):
    return track(*sorted((e for group in groups for e in group), key=lambda e: e[0]))


TEMPO = (0, meta(0x51, b"\x07\xa1\x20"))
FOUR_FOUR = (0, meta(0x58, b"\4\2\x18\x08"))


def band():
    conductor = track((0, meta(3, b"Seed")), TEMPO, FOUR_FOUR, (0, meta(0x59, b"\xfd\1")), (0, sysex("7e7f0901")),
                      (960, meta(0x51, b"\x05\0\0")), (1920, meta(0x58, b"\6\3\x18\x08")), (2000, meta(6, b"A")))
    piano = sorted_track([(0, meta(3, b"Piano")), (10, b"\xb0\0\0"), (11, b"\xb0\x20\0"), (12, b"\xc0\5"),
                          (20, b"\xb0\7\x50"), (30, b"\xe0\0\x40"), (40, b"\xd0\x22"), (50, b"\xa0\x40\x11"),
                          (500, meta(5, "Grün ".encode("latin-1"))),
                    (700, meta(0x7F, bytes.fromhex("437b0131003100")))],
                         note(0, 60, 480, 240), note(0, 64, 720, 0))
    drums = sorted_track([(100, b"\xc9\0"), (110, b"\xb9\x63\x18"), (112, b"\xb9\x62\x26"), (114, b"\xb9\6\x40")],
                         *(note(9, 37, 1920 + 480 * i, 60) for i in range(4)), note(9, 36, 3840, 100))
    return smf(conductor, piano, drums)


def one_track(*extra):
    events = [TEMPO, FOUR_FOUR, (0, meta(3, b"One")), (0, meta(1, b"text")), (5, b"\xc1\x30"), (6, b"\xc9\0")]
    events += [e for i in range(4) for e in note(9, 37, 480 * i + 480, 50)]
    events += note(9, 36, 2400, 60) + note(1, 50, 2400, 480) + note(0, 72, 2500, 300)
    return sorted_track(events, extra)


def device(*texts):
    return smf(track(TEMPO), sorted_track([(60 + 4 * i, sysex(t)) for i, t in enumerate(texts)],
                                          [(480, b"\xc0\0")], note(0, 60, 960, 480)))


def good_songs():
    """name: (instrument, options, options, file)"""
    running = track((0, b"\xb2\7\x64"), (1, b"\x0a\x40"), (480, b"\x92\x40\x50"), (600, b"\x40\0"), (610, b"\x43\x50"),
                    (620, meta(1, b"x")), (630, b"\x43\0"))
    marks = [(0, meta(4, t)) for t in (b"SRL_ch.2 Yamaha Genos_Drums///Port 2", b"SRLvsti_ch.3 4294966062",
                                       b"SRL_dr.2 10", b"srl_ignore", b"SRLI_ch.17 x", b"Piano")]
    remote = [(50, b"\xbf\0\x4d"), (60, b"\xbf\x20\1"), (70, b"\xcf\2")]
    crowd = [e for i in range(40) for e in note(3, 60, 480 + i, 500)]
    gs = ("4110421240007f0041", "411042124019150210", "41104212401015011a", "411042124001524627")
    words = [(0, sysex("00202400 01")), (480, meta(1, b"Wort")), (490, meta(1, b"")), (500, meta(5, b"La"))]
    odd_signatures = track((0, meta(0x58, b"\0\2\x18\x08")), (480, meta(0x58, b"\2\1\x18\x08")),
                           (999, meta(0x58, b"\5\xff\x18\x08")), (1000, meta(0x51, b"\0\0\0")))
    return {
        "band": (GENOS, USUAL, FORMAT_1, band()),
        "band-all-options": (GM, EVERYTHING, ALL_CHECKS, band()),
        "band-plain": (GM, PLAIN, FORMAT_0, band()),
        "format0": (GM, USUAL, FORMAT_1, smf(one_track(), form=0)),
        "format0-joined": (ROLAND, PLAIN, FORMAT_0, smf(one_track(), form=0)),
        "format0-two-chunks": (GM, USUAL, FORMAT_1, smf(one_track(), one_track(), form=0)),
        "format2": (GM, USUAL, FORMAT_0, smf(one_track(), one_track(), form=2)),
        "running-status": (GM, USUAL | 0x80, FORMAT_1, smf(track(TEMPO), running)),
        "markers": (GENOS, USUAL, ALL_CHECKS, smf(track(TEMPO), sorted_track(marks, note(1, 60, 480, 200)))),
        "remote": (GM, USUAL, FORMAT_1, smf(track(TEMPO), sorted_track(remote, note(15, 60, 480, 99)))),
        "crowded-key": (GM, USUAL, ALL_CHECKS, smf(track(TEMPO), sorted_track(crowd))),
        "word-box": (GM, USUAL, 0x05, smf(track(TEMPO), sorted_track(words, note(0, 60, 480, 90)))),
        "gs": (ROLAND, USUAL, FORMAT_1, device(*gs)),
        "gs-integra": (INTEGRA, USUAL, FORMAT_1, device(*gs, "41100000641218000000")),
        "gs-bk9": (BK9, USUAL, FORMAT_1, device(*gs, "4110005c1230" + "00" * 27)),
        "xg": (TYROS, USUAL | 0x20, FORMAT_1, device("43104c00007e00", "43104c020100 0100", "437e0021003100")),
        "motif": (MOTIF_ES, USUAL, FORMAT_1, device("43107f003600600000017f", "43104c00007e00")),
        "ketron": (KETRON, USUAL, FORMAT_1, device("267b0e0001", "26" * 44)),
        "ketron-sd": (KETRON_SD, USUAL, FORMAT_1, device("267b0e0001", "267b0f000901")),
        "korg": (KORG, USUAL, FORMAT_1, device("427f60000100100003" + "00" * 14)),
        "limex": (LIMEX, USUAL, FORMAT_1, device("4100421240111501", "4100421240191501")),
        "mp11": (MP11, USUAL, FORMAT_1, device("4100421240007f0041", "410042124019150210")),
        "mb-music": (MB_MUSIC, USUAL, FORMAT_1, device("4100421240007f0041", "410042124019150210")),
        "gm2": (GM2, USUAL, FORMAT_1, device("7e7f0903", "7e7f0901")),
        "empty-tracks": (GM, USUAL, FORMAT_1, smf(track(), track(), track((5, b"\xb0\7\1")))),
        "time-base-1": (GM, USUAL, FORMAT_1,
                        smf(track(TEMPO, FOUR_FOUR), sorted_track(note(0, 60, 4, 2)), division=1)),
        "time-base-smpte": (GM, USUAL, FORMAT_1,
                            smf(track(TEMPO), sorted_track(note(0, 60, 4, 2)), division=0xE728)),
        "signatures": (GM, USUAL, FORMAT_1, smf(odd_signatures, sorted_track(note(0, 60, 1500, 200)))),
        "far-away": (GM, USUAL, FORMAT_1, smf(track(TEMPO), track((0, b"\x90\x40\x40"), (0xFFFFFFF, b"\x80\x40\0")))),
    }


def broken(data):
    """name: the file, damaged in one known way."""
    first = data.index(b"MTrk")
    second = data.index(b"MTrk", first + 4)
    out = {
        "header-id": b"MThx" + data[4:], "header-length": data[:7] + b"\7" + data[8:],
        "no-tracks": data[:10] + b"\0\0" + data[12:], "too-many-tracks": data[:10] + b"\xff\xff" + data[12:],
        "time-base-0": data[:12] + b"\0\0" + data[14:], "chunk-id": data[:second] + b"MTrx" + data[second + 4:],
        "bytes-behind": data + b"behind", "short": data[:20],
    }
    for name, length in (("0", 0), ("short", 9), ("long", 200000), ("2-31", 1 << 31), ("most", 0xFFFFFFFF)):
        out["chunk-length-" + name] = data[:first + 4] + length.to_bytes(4, "big") + data[first + 8:]
    for at in (16, 30, 60, len(data) // 2, len(data) - 3):
        out["cut-%d" % at] = data[:at]
    one = lambda body: smf(track(TEMPO), body)
    end = b"\0\xff\x2f\0"
    out.update({
        "data-without-status": one(b"\0\x40\x40" + end), "system-common": one(b"\0\xf1\0" + end),
        "real-time": one(b"\0\xf8\0\xfa" + end), "active-sensing": one(b"\0\xfe" + end),
        "first-data-high": one(b"\0\x90\x80\x40" + end),
        "second-data-high": one(b"\0\x90\x40\xff\5\x80\x40\xff" + end),
        "end-with-length": one(b"\0\xff\x2f\1\0"), "no-end": one(b"\0\xb0\7\x40"),
        "bytes-behind-end": one(end + b"\x90\x40"),
        "delta-minus-1": one(b"\x8f\xff\xff\xff\x7f\xb0\7\1" + end),
        "delta-wraps": one(b"\x87\xff\xff\xff\x7f\xb0\7\1\x10\xb0\7\2" + end),
        "delta-endless": one(b"\xff" * 40), "sysex-length-2-31": one(b"\0\xf0\x88\x80\x80\x80\0\xf7" + end),
        "meta-length-past-end": one(b"\0\xff\1\x7f" + end), "event-crosses-chunk": one(b"\0\xf0\x05\1"),
        "escapes": one(b"\0\xf7\2\1\2\0\xf0\0\0\xff\x51\2\1\2\0\xff\x58\1\4\0\xff\0\2\0\1" + end),
    })
    return {name: (GM, USUAL, FORMAT_1, file) for name, file in out.items()}


MARKERS = [
    b"SR4P_ch.1 Yamaha Genos", b"SR8_ch.10 Ketron SD2_Drums", b"SRL_ch.3 Yamaha Genos///USB MIDI 1",
    b"SRLI_ch.16 Limex Tradition Exclusiv 200_Drums///b", b"SRL_ch.7 Yamaha Genos///USB MIDI 1_Drums",
    b"SRLvsti_ch.2 1349350499///Synth 2_Drums", b"SRL9vsti_ch.2 x", b"SRLIvsti_ch.2 4294967295",
    b"SR9vsti_ch.4 x y", b"SRL_dr.2 10", b"SRLI_dr.3 10", b"SR7_dr.9 10", b"srl_ignore", b"SRL_ch.",
    b"SRL_ch.0 a", b"SRL_ch.17 a", b"SRL_ch.-1 a", b"SRL_ch.99999999999999999999 a", b"SRL_ch. 1 a",
    b"SRL_ch.1 ///", b"SRL_ch.1 _Drums_Drums", b"Piano", b"", b"SRL_ch.1  \0\xff",
]

POSITIONS = {
    "plain": b"\1\xe0\0",
    "eighths": b"\1\xe0\1\0\0\0\0\6\3\x18",
    "tempi": b"\0\x60\3\1\0\0\0\7\xa1\x20\1\0\x80\0\3\0\0\1\1\0\0\0\0\0",
    "signatures": b"\1\x80\4\0\0\0\0\3\2\x18\0\0\x10\0\2\1\x18"
                  b"\0\0\x20\1\7\4\x18\1\0\1\1\0\0\1",
    "odd": b"\0\7\2\0\0\0\0\x0b\5\x18\0\0\0\x33\0\xff\x18",
    "long": b"\xff\xff\x0f" + b"\1\xff\xff\xff\xff\xff\xff" * 15,
}


# Layouts by their number, and a file of the user's in each.
LISTS = {
    "f5": b"\0\0Piano\tGrand\t104\t21\t0\r\n\tSmall (S.Art!)\t104\t016\t1\n\nBass\tE\t0\t0\t127\nx\ty\t1\n",
    "f5-sorted": b"\0\1B\tb\t1\t2\t3\n\ta\t1\t2\t4\nA\tz\t1\t2\t5\n",
    "f5-latin1": b"\0\0Fl\xf6te\tQuerfl\xf6te\t1\t2\t3\n",
    "f5-utf16": b"\0\0\xff\xfeP\0\t\0G\0\t\x001\0\t\x002\0\t\x003\0\n\0",
    "f4": b"\1\0Piano\tGrand\t0\t1\n",
    "kronos": b"\2\0Keyboard\tPiano\tGrand\t0\n",
    "f6": b"\3\0Keyboard\tPiano\tGrand\t121\t0\t0\n",
    "custom": b"\4\0Mine\tGrand\t1\t2\n\tOther\t1\t3\nshort\trow\n",
    "programs": b"\5\0" + b"".join(b"Sound %d\t1 Wide\t2 Dark\n" % n for n in range(128)) + b"Standard\t8 Room\n",
    "custom-kits": b"\6\0My kit\t62\t1\nshort\n",
    "kits": b"\7\0Standard Kit GM\t120\t0\t0\n",
    "notes": b"\x08\0000 Standard\t27 High Q\t28 Slap\n1 Variation\t+\t28 Other\n2 Third\t++\t30 X\n",
    "yamaha-kits": b"\x09\0127-8-18 Rock Drum Kit (Revo!)\t+\t13 Hi-Hat Tip 00 RD\n126-111 Voices\t48 Hoo!\n",
    "effects": b"\x0a\0008\t53\t1\t64\t108\t64\t64\t21\t0\t325\t0;30;0;50;0;20;0;60;50;127;0;0;0;0;0;0\t20\t56\t42\t64\n",
    "motif": b"\x0b\0Piano\tAPno\tFull Concert Grand\t63\t0\t0\t47\tVCM EQ 501\t0\tFlat\t1,2\t3\tChorus\t1\tWide\t4,5\t1\n",
    "names": b"\x0c\0Piano\nBass\n",
}


KEY = "HKEY_CURRENT_USER\\SOFTWARE\\Brightfold\\Sonarello XI"
REG_5, REG_4 = "Windows Registry Editor Version 5.00\r\n\r\n", "REGEDIT4\n\n"
REG_BODY = ('[' + KEY + ']\r\n; a comment\r\n@="default"\r\n"Lang"="de"\r\n"MultiMidi"=dword:00000001\r\n'
            '"MainFormLeft"=dword:ffffd8f1\r\n"SourcePath"="C:\\\\Songs\\\\\\"Live\\""\r\n'
            '"Blob"=hex:00,01,\\\r\n  ff\r\n"DestPath"=hex(1):61,00,0a,00,00,00\r\n"List"=hex(7):61,00,00,00\r\n'
            '"x"=hex(4):01,00,00,00\r\n"Old"=-\r\n\r\n[' + KEY + '\\Yamaha Genos]\r\n"SortSounds"=dword:0\r\n'
            '[-' + KEY + '\\Yamaha Tyros]\r\n')

REGISTRY = {
    "utf16": b"\xff\xfe" + (REG_5 + REG_BODY).encode("utf-16-le"),
    "utf16-high-first": b"\xfe\xff" + (REG_5 + REG_BODY).encode("utf-16-be"),
    "utf8": (REG_5 + REG_BODY).encode(), "utf8-mark": b"\xef\xbb\xbf" + (REG_5 + REG_BODY).encode(),
    "version-4": (REG_4 + REG_BODY).encode() + b'"DestPath"=hex(2):2f,f6,00\n',
    "foreign": (REG_5 + "[HKEY_CURRENT_USER\\SOFTWARE]\r\n\"a\"=\"b\"").encode(),
    "line-in-text": (REG_5 + "[" + KEY + "]\r\n\"DestPath\"=\"a\r\nb\"\r\n").encode(),
    "cut": (REG_5 + REG_BODY).encode("utf-16-le")[:301], "empty": b"",
}


# Messages that rules know, and texts of rules with a message behind each.
SYSEXS = {
    "gm": "7e7f0901f7", "gs": "41104212 40007f0041f7", "xg": "43104c00007e00f7", "dream": "4100421240101501f7",
    "roland-part": "41104212401915021af7", "roland-efx": "4110421240030001 10f7", "roland-on": "4110421240412201f7",
    "ketron": "267b0f000900f7", "korg": "427f600001001000030000f7", "bk9": "4110000054121800204401f7",
    "integra": "41100000641218002029 05f7", "integra-eq": "4110000064121800500300f7",
    "motif-es": "43107f00360222 40f7", "motif-es-part": "43107f0037031e02f7", "motif-xf": "43107f1237031f41f7",
    "motif-xs": "43107f03400321 0000f7", "system": "43104c02016e40f7", "dsp": "43104c03073240f7",
    "genos": "43104c03133240f7", "eq": "43104c02400540f7", "part": "43104c08094b40f7", "offset": "43104c0a094540f7",
    "drum": "43104c30240b40f7", "vocal": "43104c04002040f7",
    "organ": "437301060b00000106 080807070706080708000000000000010900000000f7",
    "organ-part": "437301060b0000010603 080807070706080708000000000000010900f7",
    "organ-block": "43730111005010 080807070706080708000000000000010900000000f7",
}
RULES = {
    "table": b'table A\n  "x"\n  "y"\n\n01 02-03 "n{1-2:A}"\n\0\1\3',
    "under": b'under 01 ** "a{1&15+1}"\nunder 02 ... 00 "b"\n  10-14/2 "c{2}"\nedited 01 end "d"\n\0\1\2\x12',
    "faults": b'under\n  "x"\n1 "a"\n02-01 "b"\n01 "{9}"\n01 "{0:Z}"\n01 "}{"\n... "a"\n\0\1',
}


def edit(row, column, text):
    """A text typed into a cell."""
    text = text.encode()
    return bytes([0]) + row.to_bytes(2, "big") + bytes([column, len(text)]) + text


def choose(row, column, item):
    """An item of a cell's list."""
    return bytes([1]) + row.to_bytes(2, "big") + bytes([column, item])


def insert(row, kind):
    return bytes([2]) + row.to_bytes(2, "big") + bytes([kind])


def delete(row, count):
    return bytes([3]) + row.to_bytes(2, "big") + bytes([count])


def show(track, kind=0):
    return bytes([4, track, kind])


UNDO = bytes([5])

EDITS = {
    "note": [show(2), edit(12, 1, "2.1.0"), edit(12, 5, "C4"), edit(12, 6, "3"), edit(12, 7, "64"), choose(12, 3, 4), UNDO],
    "values": [show(2), edit(7, 6, "-8192"), choose(3, 5, 9), edit(3, 7, "12"), edit(5, 5, "128"), edit(5, 1, "1:2"), UNDO],
    "metas": [show(0, 8), edit(2, 7, "90.5"), UNDO, edit(3, 7, "6/8"), choose(4, 7, 3), choose(1, 5, 13), edit(1, 7, "F#m7/C")],
    "sysex": [show(0, 7), edit(1, 7, "41 10 42 12 40 00 7F 00 41"), edit(1, 7, "zz"), edit(1, 1, "3")],
    "insert": [show(2), insert(12, 0), insert(12, 0), insert(13, 1), insert(1, 7), insert(2, 6), insert(3, 5), UNDO, delete(1, 40),
               UNDO],
    "lyric": [show(2, 8), edit(2, 7, "la***_NL_***"), edit(1, 7, "srl_ignore"), UNDO],
    "format-0": [show(10), delete(1, 2), show(1, 1), edit(1, 1, "9"), insert(1, 0), UNDO, show(2), choose(1, 3, 9)],
}


def write(target, name, data):
    folder = os.path.join(HERE, target)
    os.makedirs(folder, exist_ok=True)
    with open(os.path.join(folder, name), "wb") as f:
        f.write(data)


def main():
    shutil.rmtree(HERE, ignore_errors=True)
    for prefix, songs in (("", good_songs()), ("broken-", broken(band()))):
        for name, (instrument, first, second, file) in songs.items():
            write("fuzz_song", prefix + name, bytes([instrument, first, second, 1]) + file)
    for i, text in enumerate(MARKERS):
        write("fuzz_marker", "%02d" % i, bytes([6]) + text)
    for name, data in LISTS.items():
        write("fuzz_list", name, data)
    for name, data in REGISTRY.items():
        write("fuzz_registry", name, data)
    for name, data in POSITIONS.items():
        write("fuzz_position", name, data)
    for name, text in SYSEXS.items():
        write("fuzz_explain", name, b"\0" + bytes.fromhex(text))
    for name, text in RULES.items():
        write("fuzz_explain", "rules-" + name, b"\1" + text)
    for name, steps in EDITS.items():
        song = one_track() if name == "format-0" else band()
        write("fuzz_events", name, bytes([len(steps)]) + b"".join(steps) + song)


if __name__ == "__main__":
    main()
