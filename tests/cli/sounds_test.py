#!/usr/bin/env python3
"""Runs the commands of sonarello-cli that are about sounds from outside.

usage: sounds_test.py PROGRAM [unittest arguments]
"""
import json
import unittest

import outside
from outside import HEADER_FAULT, TEXTS, ProgramTest, conductor, smf, song, track

GM, GM2, GS = "GM Soundset", "GM2 Soundset", "Roland SC-88Pro"


def foreign():
    """A song for GS with bank 99, which no map has: on its first sound and on one in measure 3."""
    def sound(program):
        return [(b"\xb0\x00\x63"), (b"\xb0\x20\x00"), bytes([0xC0, program])]
    events = [(n * 2, data) for n, data in enumerate(sound(0))]
    events += [(1920, [0x90, 60, 90]), (2400, [0x80, 60, 64])]
    events += [(4796 + n * 2, data) for n, data in enumerate(sound(24))]
    events += [(4810, [0x90, 60, 90]), (5200, [0x80, 60, 64])]
    return smf(1, conductor(), track(*events))


class Wrong(ProgramTest):
    def test_wrong_usage_has_status_2_and_prints_no_result(self):
        path = self.file("a.mid", song())
        for words in (["fit"], ["fit", path], ["revoice", path, "-o", "x"], ["revoice", "--rules", path],
                      ["revoice", path, "--rules", path], ["name"], ["name", "--msb", "0"],
                      ["name", "--program", "128"], ["name", "--program", "0", "--msb", "-1"],
                      ["name", "--program", "0", "--channel", "0"],
                      ["name", "--program", "0", "--drum-part", "4"], ["name", "--program", "x"],
                      ["drums", "--lsb", "3"], ["drums", "--kit", "a", "--program", "0"],
                      ["sounds", "surplus"], ["sounds", "--list"], ["instruments", "--coverage", path]):
            done = self.expect(2, *words)
            self.assertEqual(done.out, "", words)
            self.assertIn("sonarello-cli: ", done.err, words)
        self.assertFalse((self.folder / "x").exists())

    def test_an_unknown_instrument_is_told_by_every_command(self):
        path = self.file("a.mid", song())
        for words in (["instruments", "--coverage"], ["sounds"], ["name", "--program", "0"], ["drums"],
                      ["fit", path, "-o", "x"], ["revoice", path, "--rules", path, "-o", "x"]):
            for lang, text in (("en", "Unknown instrument: Casio"), ("de", "Unbekanntes Instrument: Casio")):
                done = self.expect(2, *words, "-i", "Casio", "--lang", lang)
                self.assertEqual(done.out, "")
                self.assertIn(text, done.err)
        self.assertFalse((self.folder / "x").exists())

    def test_each_command_has_a_help_in_both_languages(self):
        for command in ("fit", "revoice", "sounds", "name", "drums", "instruments"):
            self.assertIn("Usage: sonarello-cli " + command, self.expect(0, command, "--help").out)
            self.assertIn("Aufruf: sonarello-cli " + command,
                          self.expect(0, command, "--help", "--lang", "de").out)


class Coverage(ProgramTest):
    def coverage(self, *words):
        return json.loads(self.expect(0, "instruments", "--coverage", "--json", *words).out)

    def test_every_instrument_has_its_line_and_the_sums_are_right(self):
        lines = self.expect(0, "instruments", "--coverage").out.splitlines()
        self.assertEqual(lines[0].split()[:2], ["Value", "Instrument"])
        self.assertEqual(len(lines), 1 + 106 + 2)
        self.assertRegex(lines[5], r"^ +0  GM Soundset +\d+ +0 +0  high +own tables$")
        told = self.coverage()
        of_state = {state: sum(i["state"] == state for i in told["instruments"])
                    for state in ("own", "partly", "fallback", "nothing")}
        self.assertEqual({state: told[state] for state in of_state}, of_state)
        self.assertEqual(told["ownRows"], sum(i["ownRows"] for i in told["instruments"]))
        self.assertEqual(lines[-1], f"{told['own']} with own tables, {told['partly']} partly, "
                         f"{told['fallback']} on fall-backs, {told['nothing']} without tables; "
                         f"{told['ownRows'] + told['fallbackRows']} rows, {told['ownRows']} of them own")

    def test_german_headings_and_sums(self):
        out = self.expect(0, "instruments", "--coverage", "--lang", "de").out
        for text in ("Eigene Zeilen", "Fehlende Listen", "eigene Tabellen", " mit Ersatz, "):
            self.assertIn(text, out)

    def test_the_state_follows_from_the_lists(self):
        for instrument in self.coverage()["instruments"]:
            lists = instrument["lists"]
            states = {entry["state"] for entry in lists if entry["holds"] in ("sounds", "kits")}
            if "real" in states:
                expected = "partly" if states & {"fallback", "missing"} else "own"
            else:
                expected = "fallback" if "fallback" in states else "nothing"
            counted = [e for e in lists if e["holds"] in ("sounds", "kits", "noteNames")]
            with self.subTest(instrument=instrument["name"]):
                self.assertEqual(instrument["state"], expected)
                for key, state in (("ownRows", "real"), ("fallbackRows", "fallback")):
                    self.assertEqual(instrument[key], sum(e["rows"] for e in counted if e["state"] == state))
                self.assertEqual(instrument["missingLists"], sum(e["state"] == "missing" for e in counted))
                for entry in lists:
                    self.assertEqual(entry["rows"] > 0, entry["state"] in ("real", "fallback"), entry)
                    self.assertEqual(entry["rows"] > 0, bool(entry["source"] and entry["sure"]), entry)

    def test_rows_are_those_that_the_lists_have(self):
        for name in (GM, GM2, "Yamaha Genos", "Ketron Event"):
            for entry in self.coverage("-i", name)["instruments"][0]["lists"]:
                if entry["holds"] in ("sounds", "kits", "noteNames"):
                    done = self.expect(0, "sounds", "-i", name, "--list", entry["list"], "--json")
                    self.assertEqual(len(json.loads(done.out)), entry["rows"], (name, entry["list"]))

    def test_one_instrument_is_told_list_by_list(self):
        out = self.expect(0, "instruments", "--coverage", "-i", "Genos").out
        self.assertTrue(out.startswith("Yamaha Genos (87): "))
        self.assertRegex(out, r"\nPanel_Voices +sounds +\d+  own +\S+ +\w+ +_Yamaha_Genos_Panel\.txt\n")
        self.assertRegex(out, r"\nCustom_Sounds +sounds +0  the user's +- +- +_Yamaha_Genos_Custom\.txt\n")
        german = self.expect(0, "instruments", "--coverage", "-i", "Genos", "--lang", "de").out
        self.assertRegex(german, r"\nPanel_Voices +Klänge +\d+  eigene ")
        told = self.coverage("-i", "Genos")["instruments"]
        self.assertEqual([i["value"] for i in told], [87])


class Sounds(ProgramTest):
    def rows(self, *words):
        return json.loads(self.expect(0, "sounds", "--json", *words).out)

    def test_the_sounds_of_general_midi(self):
        rows = [row for row in self.rows("-i", GM) if not row["kit"]]
        self.assertEqual([row["program"] for row in rows], list(range(128)))
        self.assertEqual((rows[0]["name"], rows[0]["msb"], rows[0]["lsb"]), ("Acoustic Grand Piano", 0, 0))
        out = self.expect(0, "sounds", "-i", GM).out.splitlines()
        self.assertRegex(out[0], r"^List +Category +Sound +MSB  LSB  Prog 0-127$")
        self.assertRegex(out[1], r"^SourceData +Acoustic Grand Piano +0 +0 +0$")
        self.assertRegex(self.expect(0, "sounds", "-i", GM, "--lang", "de").out,
                         r"^Liste +Kategorie +Klang +MSB  LSB  Prog 0-127\n")

    def test_kits_are_rows_too(self):
        kits = [row for row in self.rows("-i", GM2) if row["kit"]]
        self.assertTrue(all(row["msb"] == 120 for row in kits))
        self.assertEqual({0, 8, 16, 24, 25, 32, 40, 48, 56}, {row["program"] for row in kits})

    def test_a_search_finds_parts_of_names_in_any_case(self):
        found = self.rows("-i", GM, "--search", "gRAND piano")
        self.assertIn(0, [row["program"] for row in found])
        self.assertTrue(all("grand piano" in row["name"].lower() for row in found))
        self.assertLess(len(found), 128)

    def test_umlauts_of_the_users_own_list_are_found_in_any_case(self):
        self.file("_Yamaha_Genos_Custom.txt", "Eigene\tGroße Überraschung\t1\t5\n".encode("latin-1"))
        words = ("-i", "Genos", "--data-path", str(self.folder), "--search")
        for text in ("ÜBERRASCHUNG", "große ü"):
            self.assertEqual(self.rows(*words, text),
                             [{"list": "Custom_Sounds", "category": "Eigene", "subCategory": "",
                               "name": "Große Überraschung", "kit": False, "msb": 63, "lsb": 1,
                               "program": 5}])
        self.assertEqual(self.rows(*words, "Uberraschung"), [])

    def test_faulty_rows_of_the_users_own_list_are_told_line_by_line(self):
        self.file("_Yamaha_Genos_Custom.txt", b"Own\tGood\t1\t5\nOwn\tBad\t1\t500\n")
        done = self.expect(0, "sounds", "-i", "Genos", "--data-path", str(self.folder), "--list", "Custom_S")
        self.assertEqual(len(done.out.splitlines()), 2)
        self.assertNotIn("\r", done.err)
        self.assertTrue(done.err.startswith("sonarello-cli: "), done.err)
        self.assertIn("500", done.err)

    def test_a_list_goes_by_its_name_or_a_part_of_it(self):
        whole = self.rows("-i", "Genos", "--list", "gm2_SOUNDS")
        self.assertEqual({row["list"] for row in whole}, {"GM2_Sounds"})
        parts = {row["list"] for row in self.rows("-i", "Genos", "--list", "gm2")}
        self.assertEqual(parts, {"GM2_Sounds", "GM2_Drums"})

    def test_an_unknown_list_is_told_with_the_lists(self):
        done = self.expect(2, "sounds", "-i", "Genos", "--list", "Nothing")
        self.assertEqual(done.out, "")
        self.assertIn('--list: there is no "Nothing" (Panel_Voices, ', done.err)
        self.assertIn('"Nothing" gibt es nicht',
                      self.expect(2, "sounds", "-i", "Genos", "--list", "Nothing", "--lang", "de").err)

    def test_no_match_is_an_empty_result(self):
        words = ("sounds", "-i", GM, "--search", "no such sound")
        done = self.expect(0, *words)
        self.assertEqual((done.out, done.err), ("", "sonarello-cli: No sound found\n"))
        self.assertEqual(self.expect(0, *words, "--lang", "de").err, "sonarello-cli: Kein Klang gefunden\n")
        quiet = self.expect(0, *words, "--json", "-q")
        self.assertEqual((quiet.out, quiet.err), ("[]\n", ""))


class Name(ProgramTest):
    def name(self, instrument, *words):
        return json.loads(self.expect(0, "name", "-i", instrument, "--json", *words).out)

    def test_a_known_sound_is_named_and_nothing_else(self):
        done = self.expect(0, "name", "-i", GM, "--msb", "0", "--lsb", "0", "--program", "0")
        self.assertEqual((done.out, done.err), ("Acoustic Grand Piano\n", ""))
        self.assertEqual(self.name(GM2, "--msb", "121", "--lsb", "1", "--program", "0"),
                         {"name": "Acoustic Grand Piano (wide)", "known": True, "drums": False,
                          "mended": None, "list": "SourceData"})

    def test_a_song_without_bank_select_means_the_instruments_first_bank(self):
        for instrument in (GM, GM2):
            told = self.name(instrument, "--program", "0")
            self.assertEqual((told["name"], told["known"]), ("Acoustic Grand Piano", True))

    def test_a_mended_sound_is_told_with_what_is_written(self):
        words = ("name", "-i", GS, "--msb", "99", "--program", "0")
        self.assertEqual(self.expect(0, *words).out, "Piano 1\nmended: MSB 0 would be written\n")
        self.assertEqual(self.expect(0, *words, "--lang", "de").out,
                         "Piano 1\nersetzt: geschrieben würde MSB 0\n")
        told = self.name(GS, *words[3:])
        self.assertEqual((told["known"], told["mended"]), (False, {"msb": 0, "lsb": None, "program": None}))

    def test_without_repair_an_unknown_sound_is_told_to_be_unknown(self):
        words = ("name", "-i", GS, "--msb", "99", "--program", "0", "--set", "AutoProgChange=0")
        self.assertIn("\nunknown: ", self.expect(0, *words).out)
        self.assertIn("\nunbekannt: ", self.expect(0, *words, "--lang", "de").out)
        told = self.name(GS, *words[3:])
        self.assertEqual((told["known"], told["mended"]), (False, None))

    def test_channel_and_drum_part_decide_that_drums_play(self):
        self.assertFalse(self.name(GS, "--program", "0", "--channel", "1")["drums"])
        self.assertTrue(self.name(GS, "--program", "0", "--channel", "10")["drums"])
        self.assertFalse(self.name(GS, "--program", "0", "--channel", "10", "--drum-part", "0")["drums"])
        self.assertTrue(self.name(GS, "--program", "0", "--channel", "3", "--drum-part", "2")["drums"])
        self.assertTrue(self.name(GM, "--program", "0", "--channel", "10")["drums"])


class Drums(ProgramTest):
    def drums(self, instrument, *words):
        return json.loads(self.expect(0, "drums", "-i", instrument, "--json", *words).out)

    def test_the_notes_of_general_midi(self):
        kit = self.drums(GM, "--program", "0")
        notes = {entry["note"]: entry for entry in kit["notes"]}
        self.assertEqual(set(notes), set(range(35, 82)))
        self.assertEqual((notes[36]["key"], notes[60]["key"]), ("C1", "C3"))
        self.assertIn("cowbell", notes[56]["name"].lower())
        lines = self.expect(0, "drums", "-i", GM, "--program", "0").out.splitlines()
        self.assertEqual(len(lines), 1 + 47)
        self.assertIn("Standard", lines[0])
        self.assertRegex(lines[22], r"^ 56  G#2  .*[Cc]owbell")

    def test_a_kit_goes_by_its_address_or_its_name(self):
        by_address = self.drums(GM2, "--msb", "120", "--lsb", "0", "--program", "8")
        self.assertEqual(by_address["kit"].split()[0], "Room")
        by_name = self.drums(GM2, "--kit", "ROOM")
        self.assertEqual((by_name["program"], by_name["notes"]), (8, by_address["notes"]))

    def test_without_kit_the_kits_are_listed(self):
        kits = self.drums(GM2)
        self.assertEqual([(k["msb"], k["lsb"], k["program"]) for k in kits],
                         [(120, 0, p) for p in (0, 8, 16, 24, 25, 32, 40, 48, 56)])
        self.assertEqual(kits[0]["noteNames"], len(self.drums(GM2, "--program", "0")["notes"]))
        out = self.expect(0, "drums", "-i", GM2).out.splitlines()
        self.assertEqual(out[0].split(), "MSB LSB Prog 0-127 Kit Note names List".split())
        self.assertEqual(len(out), 10)
        self.assertIn("Notennamen", self.expect(0, "drums", "-i", GM2, "--lang", "de").out)

    def test_a_name_without_a_single_kit_is_told(self):
        none = self.expect(2, "drums", "-i", GM2, "--kit", "Nothing")
        self.assertIn("Unknown kit: Nothing", none.err)
        several = self.expect(2, "drums", "-i", GM2, "--kit", "r", "--lang", "de")
        self.assertIn('Mehrere Kits passen zu "r":', several.err)
        self.assertIn("(120/0/8)", several.err)
        self.assertEqual(none.out + several.out, "")

    def test_an_address_without_kit_is_an_empty_result(self):
        words = ("drums", "-i", GM2, "--msb", "120", "--program", "99")
        done = self.expect(0, *words)
        self.assertEqual((done.out, done.err), ("", "sonarello-cli: No kit found: 120/-/99\n"))
        self.assertEqual(self.expect(0, *words, "--lang", "de").err,
                         "sonarello-cli: Kein Kit gefunden: 120/-/99\n")
        quiet = self.expect(0, *words, "-q", "--json")
        self.assertEqual((quiet.out, quiet.err), ("null\n", ""))


class Revoice(ProgramTest):
    RULE = "Old\t0\t0\t5\tNew\t0\t0\t24\n"

    def test_sounds_are_replaced_and_counted(self):
        self.file("a.mid", song())
        self.file("rules.txt", ("# comment\n\n" + self.RULE).encode())
        words = ("revoice", "a.mid", "-i", GM, "--rules", "rules.txt", "-o", "b.mid")
        done = self.expect(0, *words)
        self.assertEqual((done.out, done.err), ("a.mid: 1 sound replaced\n", ""))
        shown = json.loads(self.expect(0, "show", "b.mid", "-i", GM, "--json").out)
        self.assertEqual(shown["channels"][0]["program"], 24)
        self.assertEqual(self.expect(0, *words, "--lang", "de").out, "a.mid: 1 Klang ersetzt\n")
        self.assertEqual(json.loads(self.expect(0, *words, "--json").out),
                         [{"file": "a.mid", "output": "b.mid", "saved": True, "format": 1, "replaced": 1,
                           "inserted": 0, "protocol": [], "messages": []}])

    def test_rules_in_another_encoding_are_read(self):
        self.file("a.mid", song())
        self.file("rules.txt", self.RULE.replace("Old", "Flöte").encode("utf-16"))
        done = self.expect(0, "revoice", "a.mid", "-i", GM, "--rules", "rules.txt", "-o", "b.mid")
        self.assertEqual(done.out, "a.mid: 1 sound replaced\n")

    def test_faulty_rules_are_told_by_line_and_nothing_is_written(self):
        self.file("a.mid", song())
        for rules, line in (("a\tb\n", 1), (self.RULE + "\n" + self.RULE, 3),
                            ("# x\n" + self.RULE.replace("24", "128"), 2)):
            self.file("rules.txt", rules.encode())
            for lang, word in (("en", "line"), ("de", "Zeile")):
                done = self.expect(1, "revoice", "a.mid", "-i", GM, "--rules", "rules.txt", "-o", "out/",
                                   "--lang", lang, "-q")
                self.assertTrue(done.err.startswith(f"rules.txt: {word} {line}"), done.err)
                self.assertEqual(done.out, "")
        self.assertFalse((self.folder / "out").exists())

    def test_rules_that_cannot_be_read_are_told(self):
        self.file("a.mid", song())
        (self.folder / "folder").mkdir()
        for rules, english, german in (("gone", "there is no such file", "Die Datei gibt es nicht"),
                                       ("folder", "the file cannot be read", "lässt sich nicht lesen")):
            words = ("revoice", "a.mid", "-i", GM, "--rules", rules, "-o", "x.mid")
            self.assertEqual(self.expect(1, *words).err, f"{rules}: {english}\n")
            self.assertIn(german, self.expect(1, *words, "--lang", "de").err)
        self.assertFalse((self.folder / "x.mid").exists())

    def test_a_sound_without_bank_selects_is_told_with_its_place(self):
        self.file("a.mid", song(False))
        self.file("rules.txt", self.RULE.encode())
        words = ("revoice", "a.mid", "-i", GM, "--rules", "rules.txt", "-o", "b.mid", "--set",
                 "AutoProgChange=0")
        done = self.expect(0, *words)
        self.assertEqual(done.out, "a.mid: 0 sounds replaced\n")
        self.assertRegex(done.err, r"^a\.mid: 001\.01\.\d+: Kanal 1 - Ctrl00 fehlt!\n$")
        self.assertEqual(self.expect(0, *words, "--lang", "de").err, done.err)
        quiet = self.expect(0, *words, "--quiet", "--json")
        self.assertEqual(quiet.err, "")
        line = json.loads(quiet.out)[0]["protocol"][0]
        self.assertEqual(f"a.mid: {line['text']}\n", done.err)
        self.assertEqual(line["track"], 1)

    def test_a_destination_that_the_instrument_lacks_is_told(self):
        self.file("a.mid", song())
        self.file("rules.txt", b"Old\t0\t0\t5\tOdd\t99\t0\t24\n")
        words = ("revoice", "a.mid", "-i", GS, "--rules", "rules.txt", "-o", "b.mid")
        self.assertEqual(self.expect(0, *words).err,
                         "rules.txt: the instrument does not have this sound: Odd (99/0/24)\n")
        self.assertIn("Das Instrument hat diesen Klang nicht: Odd (99/0/24)",
                      self.expect(0, *words, "--lang", "de").err)
        self.assertEqual(self.expect(0, *words, "-q").err, "")

    def test_several_files_go_into_a_folder_and_a_bad_one_stops_nothing(self):
        self.file("a.mid", song())
        self.file("b.mid", HEADER_FAULT)
        self.file("c.mid", song())
        self.file("rules.txt", self.RULE.encode())
        done = self.expect(1, "revoice", "a.mid", "b.mid", "c.mid", "-i", GM, "--rules", "rules.txt", "-o",
                           "out")
        self.assertEqual(done.out, "a.mid: 1 sound replaced\nc.mid: 1 sound replaced\n")
        self.assertEqual(done.err.splitlines(),
                         [f"b.mid: {TEXTS['header'][1]}", "2/3 files saved, 1 not"])
        self.assertEqual({p.name for p in (self.folder / "out").iterdir()}, {"a.mid", "c.mid"})


class Fit(ProgramTest):
    def test_the_report_names_the_sixteen_sounds_as_saved(self):
        self.file("a.mid", song())
        done = self.expect(0, "fit", "a.mid", "-i", GM2, "-o", "b.mid")
        self.assertEqual(done.err, "")
        for text in ("File          a.mid\n", "Saved as      b.mid\n", "Title         Grüße\n",
                     "Instrument    GM2 Soundset (16)\n",
                     "\nChannels with a sound: 2; sound changes mended: 0, unknown: 0\n"):
            self.assertIn(text, done.out)
        self.assertRegex(done.out, r"\n 1 +121 +0 +5 +Electric Piano 2\n 2 +- +- +- +-\n")
        told, = json.loads(self.expect(0, "fit", "a.mid", "-i", GM2, "-o", "b.mid", "--json").out)
        shown = json.loads(self.expect(0, "show", "b.mid", "-i", GM2, "--json").out)
        self.assertEqual([channel["sound"] for channel in told["channels"]],
                         [channel["sound"] for channel in shown["channels"]])
        self.assertEqual(told["channels"][0], {"channel": 1, "state": "fits", "sound": "Electric Piano 2",
                                               "msb": 121, "lsb": 0, "program": 5})
        self.assertEqual((told["mended"], told["unknown"]), ([], []))

    def test_the_file_is_the_one_that_save_writes(self):
        self.file("a.mid", foreign())
        for words in ([], ["--format", "0"], ["--set", "AutoProgChange=0"]):
            self.expect(0, "fit", "a.mid", "-i", GS, "-o", "b.mid", *words)
            self.expect(0, "save", "a.mid", "-i", GS, "-o", "c.mid", *words)
            self.assertEqual((self.folder / "b.mid").read_bytes(), (self.folder / "c.mid").read_bytes())

    def test_mended_and_unknown_sounds_are_told_with_their_places(self):
        self.file("a.mid", foreign())
        words = ("fit", "a.mid", "-i", GS, "-o", "b.mid")
        out = self.expect(0, *words).out
        self.assertRegex(out, r"\n 1  ~ +0 +\d+ +0  Piano 1\n")
        self.assertRegex(out, r"\nMended:\n.*\n 1  99/\d+/0 \S.*  0/\d+/0 Piano 1 +001\.01\.\d+\n")
        self.assertRegex(out, r"\nUnknown to the instrument:\n.*\n 1  99/\d+/24 \S.*  003\.03\.000\n")
        self.assertIn("Channels with a sound: 1; sound changes mended: 1, unknown: 1\n", out)
        german = self.expect(0, *words, "--lang", "de").out
        for text in ("Ersetzt:\n", "Dem Instrument unbekannt:\n", "~  ersetzt",
                     "Kanäle mit Klang: 1; Klangwechsel ersetzt: 1, unbekannt: 1"):
            self.assertIn(text, german)
        told, = json.loads(self.expect(0, *words, "--json").out)
        self.assertEqual(told["counts"], {"channels": 1, "mended": 1, "unknown": 1})
        self.assertEqual(told["channels"][0]["state"], "mended")
        mended, unknown = told["mended"][0], told["unknown"][0]
        self.assertEqual((mended["channel"], mended["asked"]["msb"], mended["saved"]["msb"],
                          mended["saved"]["name"]), (1, 99, 0, "Piano 1"))
        self.assertEqual((unknown["saved"]["msb"], unknown["saved"]["program"]), (99, 24))
        self.assertEqual(unknown["places"][0]["position"], "003.03.000")

    def test_without_repair_nothing_is_mended(self):
        self.file("a.mid", foreign())
        told, = json.loads(self.expect(0, "fit", "a.mid", "-i", GS, "-o", "b.mid", "--json", "--set",
                                       "AutoProgChange=0").out)
        self.assertEqual(told["counts"], {"channels": 1, "mended": 0, "unknown": 2})
        self.assertEqual(told["channels"][0]["state"], "unknown")

    def test_many_places_of_one_sound_are_counted(self):
        events = [(0, b"\xb0\x00\x63"), (2, b"\xb0\x20\x00")]
        events += [(1920 * n + 1000, b"\xc0\x05") for n in range(7)] + [(20000, [0x90, 60, 90])]
        self.file("a.mid", smf(1, conductor(), track(*events, (20100, [0x80, 60, 64]))))
        words = ("fit", "a.mid", "-i", GS, "-o", "b.mid", "--set", "AutoProgChange=0")
        self.assertIn(", … (7 places)\n", self.expect(0, *words).out)
        self.assertIn(", … (7 Stellen)\n", self.expect(0, *words, "--lang", "de").out)
        told, = json.loads(self.expect(0, *words, "--json").out)
        self.assertEqual(len(told["unknown"][0]["places"]), 7)

    def test_several_files_get_a_page_each_and_a_refused_one_its_message(self):
        self.file("a.mid", song())
        self.file("b.mid", HEADER_FAULT)
        self.file("c.mid", song(False))
        words = ("fit", "a.mid", "b.mid", "c.mid", "-i", GM, "-o", "out")
        done = self.expect(1, *words)
        pages = done.out.split("\n\nFile  ")
        self.assertEqual(len(pages), 2)
        self.assertIn("Saved as      out/c.mid", pages[1])
        self.assertEqual(done.err.splitlines(),
                         [f"b.mid: {TEXTS['header'][1]}", "2/3 files saved, 1 not"])
        self.assertEqual(self.expect(1, *words, "-q").err, f"b.mid: {TEXTS['header'][1]}\n")
        told = json.loads(self.expect(1, *words, "--json").out)
        self.assertEqual([entry["saved"] for entry in told], [True, False, True])
        self.assertNotIn("channels", told[1])

    def test_a_source_in_the_target_folder_is_kept_unless_allowed(self):
        self.file("a.mid", song())
        before = (self.folder / "a.mid").read_bytes()
        done = self.expect(1, "fit", "a.mid", "-i", GM, "-o", ".", "--no")
        self.assertEqual(done.out, "")
        self.assertEqual((self.folder / "a.mid").read_bytes(), before)
        self.expect(0, "fit", "a.mid", "-i", GM, "-o", ".", "--yes")
        self.assertNotEqual((self.folder / "a.mid").read_bytes(), before)

    def test_texts_of_a_file_cannot_steer_the_terminal(self):
        self.file("evil.mid", smf(1, conductor(b"\x1b[31mred\r\n"), track((0, b"\xc0\x05"))))
        out = self.expect(0, "fit", "evil.mid", "-i", GM, "-o", "b.mid").out
        self.assertNotIn("\x1b", out)
        self.assertIn("\\x1B[31mred\\r\\n", out)


if __name__ == "__main__":
    outside.main()
