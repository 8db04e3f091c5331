#!/usr/bin/env python3
"""Runs the command of sonarello-cli that explains sysexes from outside.

usage: explain_test.py PROGRAM [unittest arguments]
"""
import json
import subprocess
import unittest

import outside
from outside import ProgramTest

GM_ON, XG_ON, PAN = "7E 7F 09 01 F7", "43 10 4C 00 00 7E 00 F7", "43 10 4C 08 09 0E 40 F7"
GM_TEXT, XG_TEXT, PAN_TEXT = "GM System On", "XG System On", "Yamaha MultiPart 10 - Pan"


class Explain(ProgramTest):
    def lines(self, *words):
        return self.expect(0, "explain", *words).out.splitlines()

    def feed(self, data, *words, status=0):
        done = subprocess.run([outside.PROGRAM, "explain", *words], input=data, capture_output=True,
                              timeout=60, check=False)
        self.assertEqual(done.returncode, status, done.stderr)
        return done.stdout.decode(), done.stderr.decode()

    def test_each_message_has_its_line(self):
        self.assertEqual(self.lines(GM_ON, XG_ON, PAN), [GM_TEXT, XG_TEXT, PAN_TEXT])

    def test_a_message_that_nobody_knows_has_an_empty_line(self):
        self.assertEqual(self.lines("00 20 F7", GM_ON, ""), ["", GM_TEXT, ""])

    def test_blanks_and_case_do_not_matter(self):
        for text in ("7E7F0901F7", "7e 7f 09 01 f7", "  7E7F\t0901  F7 ", "7e7F 0901f7"):
            self.assertEqual(self.lines(text), [GM_TEXT], text)

    def test_the_leading_F0_may_be_typed(self):
        self.assertEqual(self.lines("F0 " + GM_ON), [GM_TEXT])
        self.assertEqual(self.lines("F0" + XG_ON.replace(" ", "")), [XG_TEXT])

    def test_bytes_without_quotes_are_one_message_up_to_its_end(self):
        self.assertEqual(self.lines(*GM_ON.split()), [GM_TEXT])
        self.assertEqual(self.lines(*GM_ON.split(), *XG_ON.split()), [GM_TEXT, XG_TEXT])
        self.assertEqual(self.lines("F0", *GM_ON.split(), "F0", *PAN.split()), [GM_TEXT, PAN_TEXT])
        self.assertEqual(self.lines("26", PAN, "26"), ["Ketron Sysex", PAN_TEXT, "Ketron Sysex"])

    def test_a_message_is_told_as_it_stands(self):
        self.assertEqual(self.lines("7E 7F 09 01", "41 10 42 12 40"), ["", "Roland Sysex"])

    def test_blanks_of_a_name_stay(self):
        self.assertEqual(self.expect(0, "explain", "43 10 7F 00 36 10 08 40 F7").out,
                         "Yamaha Motif ES - Master EQ 3 Gain \n")

    def test_standard_input_holds_a_message_per_line(self):
        out, err = self.feed(f"{GM_ON}\n\n{XG_ON}\r\n00\n{PAN}".encode())
        self.assertEqual(out, f"{GM_TEXT}\n\n{XG_TEXT}\n\n{PAN_TEXT}\n")
        self.assertEqual(err, "")
        self.assertEqual(self.feed(b""), ("", ""))

    def test_a_bad_line_is_told_and_the_others_go_on(self):
        out, err = self.feed(f"{GM_ON}\n7E 7G\n{XG_ON}\n7E9\n".encode(), status=1)
        self.assertEqual(out, f"{GM_TEXT}\n\n{XG_TEXT}\n\n")
        self.assertEqual(err.splitlines(), ['sonarello-cli: line 2: "7G" is no hexadecimal number',
                                            'sonarello-cli: line 4: "7E9": a byte has two digits'])

    def test_bad_digits_are_wrong_usage_and_nothing_is_explained(self):
        for lang, word, text in (("en", "7G", '"7G" is no hexadecimal number'),
                                 ("de", "7G", '"7G" ist keine Hexadezimalzahl'),
                                 ("en", "0x7E", '"0x7E" is no hexadecimal number'),
                                 ("en", "7E,7F", '"7E,7F" is no hexadecimal number'),
                                 ("en", "7", '"7": a byte has two digits'),
                                 ("de", "7E 7F0", '"7F0": Ein Byte hat zwei Stellen'),
                                 ("en", "Grün", '"Grün" is no hexadecimal number'),
                                 ("en", "\x1b[1m", '"\\x1B[1m" is no hexadecimal number')):
            done = self.expect(2, "explain", GM_ON, word, "--lang", lang)
            self.assertEqual(done.out, "")
            self.assertEqual(done.err, f"sonarello-cli: {text}\n")

    def test_json_names_the_bytes_and_what_they_are(self):
        told = json.loads(self.expect(0, "explain", "--json", "f07e7f0901f7", "00", "").out)
        self.assertEqual(told, [{"bytes": GM_ON, "explanation": GM_TEXT},
                                {"bytes": "00", "explanation": None},
                                {"bytes": "", "explanation": None}])
        out, _ = self.feed(f"{XG_ON}\nx\n".encode(), "--json", status=1)
        self.assertEqual(json.loads(out), [{"bytes": XG_ON, "explanation": XG_TEXT}, None])
        self.assertEqual(json.loads(self.feed(b"", "--json")[0]), [])

    def test_names_are_the_same_in_german(self):
        self.assertEqual(self.expect(0, "explain", PAN, "--lang", "de").out, PAN_TEXT + "\n")

    def test_its_help_in_both_languages(self):
        out = self.expect(0, "explain", "--help").out
        self.assertIn("Usage: sonarello-cli explain [OPTIONS] [HEX...]", out)
        self.assertIn("Messages:", out)
        self.assertIn("without them a message per line of standard input", " ".join(out.split()))
        out = self.expect(0, "explain", "--help", "--lang", "de").out
        self.assertIn("Aufruf: sonarello-cli explain", out)
        self.assertIn("Meldungen:", out)
        self.assertIn("Files:", self.expect(0, "show", "--help").out)


if __name__ == "__main__":
    outside.main()
