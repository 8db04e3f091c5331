"""Tests the event list in words, from outside."""
import outside
from outside import ProgramTest, format0, meta, smf, song, track


class Rows(ProgramTest):
    def rows(self, path, *words):
        lines = self.expect(0, "rows", path, *words).out.splitlines()
        return [line.split("\t") for line in lines]

    def test_each_row_has_eight_fields(self):
        rows = self.rows(self.file("a.mid", song()), "--track", "1", "--set", "AutoSysex=0")
        self.assertTrue(all(len(row) == 8 for row in rows))
        self.assertIn([" 1", "003.01.000", "000:04.000", "1", "Note", "C3", "960", "90"], rows)
        self.assertIn([" 1", "001.01.000", "000:00.000", "-", "Sysex", "F0", "GM System On",
                       "7E 7F 09 01 F7"], rows)

    def test_german_rows_have_german_words(self):
        rows = self.rows(self.file("a.mid", song()), "--track", "0", "--lang", "de")
        self.assertEqual({row[4] for row in rows}, {"Meta Event"})
        self.assertIn("000:00,000", {row[2] for row in rows})
        self.assertIn("Grüße", {row[7] for row in rows})

    def test_a_filter_chooses_a_kind_and_an_empty_list_says_so(self):
        path = self.file("a.mid", song())
        self.assertEqual({row[4] for row in self.rows(path, "--track", "2", "--filter", "1")}, {"Note"})
        self.assertEqual(self.rows(path, "--track", "2", "--filter", "6"),
                         [["-", "-", "-", "-", "-", "-", "No pitch bend found", "-"]])

    def test_the_entries_of_a_song_in_one_track_are_its_channels(self):
        path = self.file("a.mid", format0())
        rows = self.rows(path, "--track", "2", "--set", "UnmixFormat0=0", "--filter", "1")
        self.assertEqual([row[5] for row in rows], ["D3"])
        self.expect(2, "rows", path, "--track", "17", "--set", "UnmixFormat0=0")

    def test_a_text_cannot_break_its_line(self):
        path = self.file("a.mid", smf(1, track((0, meta(6, b"a\tb\nc"))), track((0, [0xC0, 1]))))
        self.assertIn(r"a\tb\nc", {row[7] for row in self.rows(path, "--track", "0")})

    def test_wrong_usage_has_status_2(self):
        path = self.file("a.mid", song())
        for words in ([], ["--track", "9"], ["--track", "1", "--filter", "9"], ["--track", "1", "--sysex"]):
            self.assertEqual(self.expect(2, "rows", path, *words).out, "", words)


if __name__ == "__main__":
    outside.main()
