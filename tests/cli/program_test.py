#!/usr/bin/env python3
"""Runs sonarello-cli from outside: each command, each option, each exit status.

usage: program_test.py PROGRAM [unittest arguments]
"""
import json
import os
import pty
import subprocess

import outside
from outside import HEADER_FAULT, TEXTS, ProgramTest, conductor, format0, meta, smf, song, track

# Running status over a meta: the second note has no status of its own.
SURVIVING = smf(1, conductor(), track((0, [0x90, 60, 90]), (10, [0x80, 60, 64]),
                                      (20, meta(1, b"x")), (30, [60, 0])))


class Usage(ProgramTest):
    def test_help_and_version_go_to_standard_output(self):
        for words in (["--help"], ["-h"], ["--version"], ["show", "--help"], ["save", "-h"]):
            done = self.expect(0, *words)
            self.assertTrue(done.out)
            self.assertEqual(done.err, "")
        self.assertRegex(self.run_program("--version").out, r"^sonarello-cli \d+\.\d+\.\d+\n$")

    def test_help_names_every_command_and_speaks_the_users_language(self):
        english = self.run_program("--help").out
        for word in ("show", "events", "decode", "save", "fit", "revoice", "new", "instruments", "sounds",
                     "name", "drums", "PrevCommandMode"):
            self.assertIn(word, english)
        self.assertIn("Aufruf:", self.run_program("--help", lang="de_DE.UTF-8").out)
        self.assertIn("Aufruf:", self.run_program("--help", "--lang", "de").out)
        self.assertIn("Usage:", self.run_program("--help", "--lang", "en", lang="de_DE").out)

    def test_wrong_usage_has_status_2_and_prints_no_result(self):
        path = self.file("a.mid", song())
        for words in ([], ["show"], ["dance"], ["show", path, path], ["save", path],
                      ["show", path, "--lang", "fr"], ["show", path, "-i", "nothing"],
                      ["show", path, "-i", "sx"], ["show", path, "--set", "Nothing=1"],
                      ["show", path, "--set", "AutoSysex=perhaps"], ["events", path, "--track", "x"],
                      ["events", path, "--track", "99"], ["events", path, "--channel", "17"],
                      ["save", path, "-o", "x", "--format", "2"], ["new", "-o", "x", "--tempo", "5"]):
            done = self.expect(2, *words)
            self.assertEqual(done.out, "", words)
            self.assertIn("sonarello-cli: ", done.err, words)
        self.assertFalse((self.folder / "x").exists())

    def test_instruments_are_listed_in_display_order(self):
        lines = self.expect(0, "instruments").out.splitlines()
        self.assertEqual(len(lines), 106)
        self.assertEqual(lines[0], "102  Deebach MAX II")
        self.assertEqual(lines[-1], " 19  Yamaha XG Soundset")
        listed = json.loads(self.expect(0, "instruments", "--json").out)
        self.assertEqual(listed[4], {"value": 0, "name": "GM Soundset"})


class Show(ProgramTest):
    def test_the_song_is_shown_in_both_languages(self):
        path = self.file("a.mid", song())
        english = self.expect(0, "show", path, "-i", "Genos").out
        for text in ("Grüße", "Yamaha Genos (87)", "120 bpm", "4/4", "480 ticks", "3 measures",
                     "channel 10, 4 notes, 002.01.000", "002.01.000 (Tick 1920), 0:02.000"):
            self.assertIn(text, english)
        german = self.expect(0, "show", path, "--lang", "de").out
        for text in ("Takte", "Vorzähler", "Kanal 10, 4 Noten"):
            self.assertIn(text, german)

    def test_json_tells_the_same(self):
        path = self.file("a.mid", song())
        shown = json.loads(self.expect(0, "show", path, "--json", "-i", "87", "--changes").out)
        self.assertEqual(shown["title"], "Grüße")
        self.assertEqual(shown["instrument"], {"name": "Yamaha Genos", "value": 87})
        self.assertEqual(shown["format"], {"read": 1, "working": 1})
        self.assertEqual(shown["tempi"][0]["bpm"], 120)
        self.assertEqual(shown["countIn"]["notes"], 4)
        self.assertEqual(shown["firstNote"]["tick"], 1920)
        self.assertIsNone(shown["noteCheck"])
        self.assertEqual(len(shown["channels"]), 16)
        piano = shown["channels"][0]
        self.assertTrue(piano["active"])
        self.assertEqual((piano["program"], piano["notes"]), (5, 1))
        self.assertTrue(piano["sound"])
        self.assertIsNone(shown["channels"][1]["sound"])
        self.assertEqual(piano["controllers"]["7"], {"value": 90, "placeholder": False})
        self.assertEqual(piano["controllers"]["10"], {"value": 64, "placeholder": True})
        self.assertFalse(shown["channels"][1]["active"])
        self.assertIsNone(shown["channels"][1]["controllers"]["7"])
        whats = {(c["kind"], c["what"]) for c in shown["changes"]}
        self.assertIn(("dropped", "Sysex 7E 7F 09 01 F7"), whats)
        self.assertIn(("moved", "Program change 5, channel 1"), whats)

    def test_placeholders_stand_in_brackets(self):
        out = self.expect(0, "show", self.file("a.mid", song()), "-i", "GM Soundset").out
        row = next(line.split() for line in out.splitlines() if line.startswith(" 1  *"))
        self.assertEqual(row, ("1 * 1 0 0 5 Electric Piano 2 - 1 90 (64) (127) (64) (64) (64) (64) (40) "
                               "(0) (0) (0)").split())

    def test_changes_tell_what_and_why(self):
        path = self.file("a.mid", song())
        self.assertNotIn("Sysex 7E", self.expect(0, "show", path, "-i", "Genos").out)
        self.assertRegex(self.expect(0, "show", path, "-i", "Genos", "--changes").out,
                         r"1  001\.01\.000 +0  dropped +Sysex 7E 7F 09 01 F7  ")
        self.assertRegex(self.expect(0, "show", path, "-i", "0", "--changes", "--lang", "de").out,
                         r"verschoben +Programmwechsel 5, Kanal 1 ")

    def test_settings_reach_the_pipeline(self):
        path = self.file("a.mid", song())
        shown = json.loads(self.expect(0, "show", path, "--json", "--set", "removecountin=on",
                                       "--set", "RemoveCountInRadical=1").out)
        self.assertIsNone(shown["countIn"])
        self.assertEqual(shown["firstNote"]["tick"], 1920)
        self.assertEqual(shown["channels"][9]["notes"], 1)
        unmixed = json.loads(self.expect(0, "show", self.file("0.mid", format0()), "--json").out)
        self.assertEqual((unmixed["format"], unmixed["tracks"]), ({"read": 0, "working": 1}, 17))
        kept = json.loads(self.expect(0, "show", self.file("0.mid", format0()), "--json", "--set",
                                      "UnmixFormat0=0").out)
        self.assertEqual((kept["format"], kept["tracks"]), ({"read": 0, "working": 0}, 1))

    def test_a_refused_file_has_status_1_and_its_message(self):
        for lang in (0, 1):
            for name, data in (("short", b"MThd"), ("header", HEADER_FAULT)):
                path = self.file(name + ".mid", data)
                done = self.expect(1, "show", path, "--lang", ("de", "en")[lang], "--quiet")
                self.assertEqual(done.err, f"{path}: {TEXTS[name][lang]}\n")
                self.assertEqual(done.out, "")
        missing = self.expect(1, "show", "gone.mid")
        self.assertEqual(missing.err, 'gone.mid: Error opening the midi file\n  "gone.mid"\n')

    def test_texts_of_a_file_cannot_steer_the_terminal(self):
        path = self.file("evil.mid", smf(1, conductor(b"\x1b[31m\x9bred\r\n"), track((0, b"\xc0\x05"))))
        done = self.expect(0, "show", path, "--changes")
        self.assertNotIn("\x1b", done.out)
        self.assertNotIn("\x9b", done.out)
        self.assertIn("\\x1B[31m\\x9Bred\\r\\n", done.out)
        self.assertEqual(json.loads(self.expect(0, "show", path, "--json").out)["title"],
                         "\x1b[31m\x9bred\r\n")

    def test_the_diagnostic_file_is_written_where_asked_only(self):
        path = self.file("a.mid", smf(1, conductor(), track((0, [0x90, 60, 90]))))
        out = self.expect(0, "show", path).out
        self.assertIn("Note check    Found 1 Note-Ons without Note-Offs", out)
        self.assertFalse((self.folder / "_NoteOnOff.txt").exists())
        self.expect(0, "show", path, "--data-path", str(self.folder))
        self.assertIn("Found 1 Note-Ons", (self.folder / "_NoteOnOff.txt").read_text())


class Events(ProgramTest):
    def test_each_event_is_a_line_of_ten_fields(self):
        rows = self.events(self.file("a.mid", song()), "--decoded")
        self.assertTrue(all(len(row) == 10 for row in rows))
        self.assertEqual(rows[0], "0 0 0 FF 1 2 33 0 0 00".split())
        self.assertIn("1 0 0 F0 5 2 -1 0 0 7E7F0901F7".split(), rows)
        self.assertIn("1 0 0 B0 3 1 -1 7 90 -".split(), rows)
        self.assertIn("1 0 0 C0 2 1 -1 5 0 -".split(), rows)
        self.assertIn("2 1980 0 89 3 1 -1 37 17 -".split(), rows)
        self.assertEqual(rows[-1], "2 4810 0 FF 0 2 47 0 0 -".split())

    def test_the_opened_song_has_times_and_is_fitted(self):
        rows = self.events(self.file("a.mid", song()), "-i", "Genos")
        self.assertIn("1 4800 5000 80 3 1 -1 60 64 -".split(), rows)
        self.assertIn("1 377 393 C0 2 1 -1 5 0 -".split(), rows)
        self.assertIn("1 0 0 F0 0 2 -1 0 0 7E7F0901F7".split(), rows)
        self.assertTrue(any(row[9] == "43104C00007E00F7" for row in rows))

    def test_decoded_is_untouched_by_fitting(self):
        path = self.file("a.mid", song())
        self.assertEqual(self.events(path, "--decoded", "-i", "Genos", "--set", "InsertSongName=1"),
                         self.events(path, "--decoded", "-i", "0", "--set", "AutoSysex=0"))

    def test_a_track_or_a_channel_can_be_asked_for(self):
        path = self.file("a.mid", song())
        self.assertEqual({row[0] for row in self.events(path, "--track", "2")}, {"2"})
        commands = {row[3] for row in self.events(path, "--channel", "10")}
        self.assertTrue(commands and all(command[1] == "9" for command in commands))
        self.assertEqual(self.events(path, "--channel", "7"), [])

    def test_json_holds_the_same_fields(self):
        path = self.file("a.mid", song())
        rows = self.events(path)
        listed = json.loads(self.expect(0, "events", path, "--json").out)
        self.assertEqual([[str(e["Track"]), str(e["Position"]), str(e["TimePosition"]), e["Command"],
                           str(e["DLength"]), str(e["DType"]), str(e["MType"]), str(e["Value"][0]),
                           str(e["Value"][1]), e["Meta"] or "-"] for e in listed], rows)
        self.assertEqual(json.loads(self.expect(0, "events", path, "--json", "--channel", "7").out), [])


class Decode(ProgramTest):
    def test_each_file_gets_a_line_in_the_order_given(self):
        good, bad = self.file("a.mid", song()), self.file("b.mid", HEADER_FAULT)
        done = self.expect(1, "decode", good, bad, good)
        self.assertEqual(done.out, f"{good}\tok\n{bad}\tError in midi file header - 1!\n{good}\tok\n")
        self.assertEqual(done.err, "")
        self.expect(0, "decode", good)

    def test_line_breaks_of_a_message_are_written_out(self):
        bad = self.file("b.mid", smf(1, conductor(), track((0, [0x90, 0x85, 1]))))
        self.assertEqual(self.expect(1, "decode", bad).out,
                         f"{bad}\tError in Midifile at position: 0\\rValue1 = 133\\r"
                         "shouldn't be greater than 127!\n")
        self.assertIn("\tFehler im Midifile bei Position: 0\\rWert1 = 133\\rEs dürfte nicht größer als",
                      self.expect(1, "decode", bad, "--lang", "de").out)

    def test_a_file_that_the_other_mode_opens_gets_a_hint(self):
        path = self.file("r.mid", SURVIVING)
        self.expect(0, "decode", path)
        done = self.expect(1, "decode", path, "--set", "PrevCommandMode=0")
        self.assertEqual(done.err, f"{path}: hint: can be read with --set PrevCommandMode=1\n")
        self.assertEqual(self.expect(1, "decode", path, "--set", "PrevCommandMode=0", "-q").err, "")

    def test_json_holds_the_verdicts(self):
        path, bad = self.file("r.mid", SURVIVING), self.file("b.mid", HEADER_FAULT)
        done = self.expect(1, "decode", path, bad, "--json", "--set", "PrevCommandMode=0")
        first, second = json.loads(done.out)
        self.assertEqual(first["opensWithPrevCommandMode"], 1)
        self.assertEqual(second, {"file": bad, "ok": False, "message": TEXTS["header"][1]})

    def test_odd_names_keep_to_their_line(self):
        for name in ("with space.mid", "Grüße.mid", "--json", "-o", "a\tb\nc.mid"):
            self.file(name, song())
            shown = name.replace("\n", "\\n").replace("\t", "\\t")
            self.assertEqual(self.expect(0, "decode", "--", name).out, f"{shown}\tok\n")
        latin = os.fsdecode(b"Gr\xfc\xdfe.mid")
        self.file(latin, song())
        self.assertEqual(self.expect(0, "decode", latin).out, f"{latin}\tok\n")
        self.assertEqual(json.loads(self.expect(0, "decode", latin, "--json").out)[0]["file"],
                         "Grüße.mid")


class Save(ProgramTest):
    def test_a_file_is_saved_in_its_own_format_or_the_one_asked_for(self):
        one, zero = self.file("1.mid", song()), self.file("0.mid", format0())
        for source, words, form in ((one, [], 1), (zero, [], 0), (one, ["--format", "0"], 0),
                                    (zero, ["--format", "1"], 1)):
            done = self.expect(0, "save", source, "-o", "out.mid", *words)
            self.assertEqual((done.out, done.err), ("", ""))
            data = (self.folder / "out.mid").read_bytes()
            self.assertEqual(data[:10], b"MThd\x00\x00\x00\x06\x00" + bytes([form]))
            self.expect(0, "decode", "out.mid")

    def test_a_saved_song_is_saved_again_unchanged(self):
        source = self.file("a.mid", song())
        self.expect(0, "save", source, "-o", "b.mid", "-i", "Genos")
        self.expect(0, "save", "b.mid", "-o", "c.mid", "-i", "Genos")
        self.assertEqual((self.folder / "b.mid").read_bytes(), (self.folder / "c.mid").read_bytes())

    def test_several_files_go_into_a_folder_and_a_bad_one_stops_nothing(self):
        names = [f"{n}.mid" for n in range(20)]
        for n, name in enumerate(names):
            self.file(name, HEADER_FAULT if n % 7 == 3 else song())
        done = self.expect(1, "save", *names, "-o", "fitted/songs")
        saved = {p.name for p in (self.folder / "fitted/songs").iterdir()}
        self.assertEqual(saved, {n for i, n in enumerate(names) if i % 7 != 3})
        self.assertEqual(done.err.splitlines(),
                         [f"{n}.mid: {TEXTS['header'][1]}" for n in (3, 10, 17)] +
                         ["17/20 files saved, 3 not"])
        self.assertEqual(done.out, "")

    def test_quiet_tells_of_refused_files_only(self):
        self.file("a.mid", song())
        self.file("b.mid", HEADER_FAULT)
        done = self.expect(1, "save", "a.mid", "b.mid", "-o", "out", "-q")
        self.assertEqual(done.err, f"b.mid: {TEXTS['header'][1]}\n")
        self.assertEqual(self.expect(0, "save", "a.mid", "-o", "out/", "-q").err, "")

    def test_json_lists_what_became_of_each_file(self):
        self.file("a.mid", song())
        self.file("b.mid", HEADER_FAULT)
        listed = json.loads(self.expect(1, "save", "a.mid", "b.mid", "-o", "out", "--json").out)
        self.assertEqual(listed, [
            {"file": "a.mid", "output": "out/a.mid", "saved": True, "format": 1, "messages": []},
            {"file": "b.mid", "output": "out/b.mid", "saved": False,
             "messages": [TEXTS["header"][1]]}])

    def test_a_source_that_lies_in_the_target_folder_is_kept_unless_allowed(self):
        for name in ("a.mid", "b.mid"):
            self.file(name, song())
        before = (self.folder / "a.mid").read_bytes()
        done = self.expect(1, "save", "a.mid", "b.mid", "-o", ".")
        self.assertIn("the target is itself a source", done.err)
        self.assertEqual((self.folder / "a.mid").read_bytes(), before)
        self.expect(1, "save", "a.mid", "-o", ".", "--no")
        self.expect(0, "save", "a.mid", "b.mid", "-o", ".", "--yes")
        self.assertNotEqual((self.folder / "a.mid").read_bytes(), before)

    def test_a_file_named_as_the_target_is_replaced(self):
        self.file("a.mid", song())
        self.file("old.mid", b"old")
        self.expect(0, "save", "a.mid", "-o", "old.mid")
        self.expect(0, "decode", "old.mid")
        self.expect(0, "save", "a.mid", "-o", "a.mid")
        self.expect(0, "decode", "a.mid")

    def test_two_sources_with_one_target_are_wrong_usage(self):
        (self.folder / "x").mkdir()
        self.file("a.mid", song())
        self.file("x/a.mid", song())
        self.assertIn("out/a.mid", self.expect(2, "save", "a.mid", "x/a.mid", "-o", "out").err)
        self.assertFalse((self.folder / "out").exists())

    def test_a_target_that_cannot_be_written_has_status_1(self):
        self.file("a.mid", song())
        done = self.expect(1, "save", "a.mid", "-o", "no/such/folder.mid")
        self.assertIn('Error saving the midifile "no/such/folder.mid"', done.err)
        self.file("plain", b"")
        self.assertIn("plain", self.expect(1, "save", "a.mid", "a.mid.", "-o", "plain").err)
        self.assertEqual((self.folder / "plain").read_bytes(), b"")

    def test_a_refused_source_leaves_the_target_as_it_was(self):
        self.file("b.mid", HEADER_FAULT)
        self.file("old.mid", b"old")
        self.expect(1, "save", "b.mid", "-o", "old.mid")
        self.assertEqual((self.folder / "old.mid").read_bytes(), b"old")


class New(ProgramTest):
    def test_a_new_song_is_as_wished(self):
        self.expect(0, "new", "-o", "n.mid", "--timebase", "384", "--signature", "6/8", "--tempo", "93",
                    "-i", "Genos")
        shown = json.loads(self.expect(0, "show", "n.mid", "--json", "-i", "Genos").out)
        self.assertEqual((shown["timeBase"], shown["tracks"]), (384, 17))
        self.assertEqual((shown["signatures"][0]["numerator"], shown["signatures"][0]["denominator"]), (6, 8))
        self.assertEqual(round(shown["tempi"][0]["bpm"]), 93)
        self.assertEqual(shown["length"]["measures"], 4)
        self.assertIsNone(shown["firstNote"])
        self.assertTrue(all(channel["active"] for channel in shown["channels"]))

    def test_a_new_song_opens_and_saves_unchanged(self):
        self.expect(0, "new", "-o", "n.mid", "-i", "Genos")
        self.expect(0, "save", "n.mid", "-o", "m.mid", "-i", "Genos")
        self.assertEqual((self.folder / "n.mid").read_bytes(), (self.folder / "m.mid").read_bytes())

    def test_json_and_a_target_that_cannot_be_written(self):
        told = json.loads(self.expect(0, "new", "-o", "n.mid", "--json").out)
        self.assertEqual(told, {"output": "n.mid", "saved": True, "format": 1})
        self.assertIn("Error saving", self.expect(1, "new", "-o", "no/n.mid").err)


class Streams(ProgramTest):
    def test_a_reader_that_goes_away_is_no_failure(self):
        notes = [(n * 10, [0x90 if n % 2 == 0 else 0x80, 60, 90]) for n in range(20000)]
        path = self.file("long.mid", smf(1, conductor(), track(*notes)))
        with subprocess.Popen([outside.PROGRAM, "events", path], stdout=subprocess.PIPE,
                              stderr=subprocess.PIPE) as process:
            process.stdout.read(100)
            process.stdout.close()
            self.assertEqual(process.stderr.read(), b"")
            self.assertEqual(process.wait(60), 0)

    def test_results_that_cannot_be_written_have_status_1(self):
        path = self.file("a.mid", song())
        for words in (["show", path], ["events", path], ["instruments"], ["--help"]):
            with open("/dev/full", "wb") as full:
                done = subprocess.run([outside.PROGRAM, *words], stdout=full, stderr=subprocess.PIPE, timeout=60,
                                      check=False)
            self.assertEqual(done.returncode, 1, words)
            self.assertIn(b"No space left", done.stderr)

    def on_terminal(self, *words, typed=b"", results=False):
        """Status and standard error of a run that has a terminal; with its results if wished."""
        main, terminal = pty.openpty()
        with subprocess.Popen([outside.PROGRAM, *words], stdin=terminal, stderr=terminal,
                              stdout=terminal if results else subprocess.DEVNULL,
                              cwd=self.folder) as process:
            os.close(terminal)
            os.write(main, typed)
            told = b""
            try:
                while data := os.read(main, 4096):
                    told += data
            except OSError:
                pass  # the terminal is gone with the program
            status = process.wait(60)
        os.close(main)
        return status, told.decode()

    def test_progress_is_shown_on_a_terminal_only(self):
        for name in ("a.mid", "b.mid"):
            self.file(name, song())
        self.assertNotIn("\r", self.expect(0, "save", "a.mid", "b.mid", "-o", "out").err)
        self.assertIn("\x1b[K2/2 b.mid", self.on_terminal("save", "a.mid", "b.mid", "-o", "out")[1])
        self.assertNotIn("\x1b", self.on_terminal("save", "a.mid", "b.mid", "-o", "out", "-q")[1])

    def test_results_do_not_run_into_the_line_of_the_progress(self):
        self.file("a.mid", song())
        self.file("b.mid", HEADER_FAULT)
        told = self.on_terminal("fit", "a.mid", "b.mid", "-o", "out", results=True)[1]
        self.assertIn("\x1b[K1/2 a.mid\r\x1b[KFile  ", told)

    def test_a_question_is_asked_on_a_terminal(self):
        for name in ("a.mid", "b.mid"):
            self.file(name, song())
        before = (self.folder / "a.mid").read_bytes()
        status, told = self.on_terminal("save", "a.mid", "-o", ".", "--lang", "en", typed=b"n\n")
        self.assertEqual(status, 1)
        self.assertIn('Do you really want to overwrite the midifile "./a.mid"? [y/N]', told)
        self.assertEqual((self.folder / "a.mid").read_bytes(), before)
        status, told = self.on_terminal("save", "a.mid", "-o", ".", "--lang", "de", typed=b"j\n")
        self.assertEqual(status, 0)
        self.assertIn('Wollen Sie die Datei "./a.mid" überschreiben? [j/N]', told)
        self.assertNotEqual((self.folder / "a.mid").read_bytes(), before)


if __name__ == "__main__":
    outside.main()
