// Edits of metas and sysexes.
#include <gtest/gtest.h>

#include "editors/EditorBench.h"

namespace Sonarello {

namespace {

struct MetaBench : EditorBench {
  MetaBench() { NewTrack().Tempo(0, 500'000).Sign(0, 4, 2).NewTrack(); }
  ~MetaBench() { EXPECT_TRUE(CheckSong(song).empty()); }
  MetaBench(const MetaBench&) = delete;
  MetaBench& operator=(const MetaBench&) = delete;
  /// Payload of the event of a row.
  [[nodiscard]] std::string Payload(std::int32_t row) const {
    return HexText(rows.Event(row)->Meta.Bytes());
  }
};

TEST(EventMetas, ATempoIsTypedInBeatsPerMinute) {
  MetaBench s;
  s.Ctrl(480, 7, 1).Open(0);
  EXPECT_EQ(s.Edit(1, Value2Column, "60").Text, "60");
  EXPECT_EQ(s.Payload(1), "0F 42 40");
  EXPECT_EQ(s.Event(1, 1)->TimePosition, 1000);
  EXPECT_TRUE(s.WasTold("times"));
  EXPECT_EQ(s.Edit(1, Value2Column, "90,5").Text, "91");
  EXPECT_EQ(s.Payload(1), "0A 1D C7");
  for (const char* text : {"0", "-5", "3", "fast", "", "1e99", "nan"})
    EXPECT_FALSE(s.Edit(1, Value2Column, text).Applied) << text;
}

TEST(EventMetas, ATimeSignatureKeepsItsClicks) {
  MetaBench s;
  s.song.MidiTrack[0].TrkLastEvent->Meta = Sonarello::Meta(Bytes{4, 2, 12, 9});
  s.Ctrl(1440, 7, 1).Open(0);
  EXPECT_EQ(s.Edit(2, Value2Column, "3/4").Text, "3/4");
  EXPECT_EQ(s.Payload(2), "03 02 0C 09");
  s.rows.CB_TrackListChange(1);
  EXPECT_EQ(s.Cell(1, PositionColumn), "002.01.000");
  s.rows.CB_TrackListChange(0);
  for (const char* text : {"3", "3/7", "0/4", "256/4", "4/256", "a/b", "4/0"})
    EXPECT_FALSE(s.Edit(2, Value2Column, text).Applied) << text;
}

TEST(EventMetas, AKeySignatureIsChosenByName) {
  MetaBench s;
  s.Data(0, 0x59, {0, 0}).Open();
  EXPECT_EQ(s.Edit(1, Value2Column, "Eb min").Text, "Eb min");
  EXPECT_EQ(s.Payload(1), "FD 01");
  ASSERT_EQ(s.song.KeySignArray[1].Elements, 1);
  EXPECT_EQ(s.song.KeySignArray[1].ValArray[0].SF, -3);
  EXPECT_EQ(s.song.KeySignArray[1].ValArray[0].MI, 1);
  const InGerman german;
  s.rows.ForgetTexts();
  EXPECT_EQ(s.Edit(1, Value2Column, "F# mol").Text, "F# mol");
}

TEST(EventMetas, AChordIsParsedBack) {
  MetaBench s;
  s.Data(0, 0x7F, {0x43, 0x7B, 1, 0x31, 0, 0x31, 0}).Open();
  s.edits.GetCellEditorType(Value2Column, 1);
  EXPECT_EQ(s.edits.EditXFChordPrev, "C");
  EXPECT_EQ(s.Edit(1, Value2Column, "F#m7/C").Text, "F#m7/C");
  EXPECT_EQ(s.Payload(1), "43 7B 01 44 0A 31 7F");
  EXPECT_EQ(s.Edit(1, Value2Column, "Qm").Text, "F#m7/C");
  EXPECT_TRUE(s.WasTold("lyrics"));
}

TEST(EventMetas, LyricMarksAndBreakSignsGoBackToBytes) {
  MetaBench s;
  s.Words(0, 5, "la")
      .Words(0, 1, "a\nb")
      .Words(0, 1,
             "a\xF7"
             "b")
      .Open();
  EXPECT_EQ(s.Edit(1, Value2Column, "***_NL_***lo***_NP_***").Text, "***_NL_***lo***_NP_***");
  EXPECT_EQ(s.Payload(1), "0D 6C 6F 0A");
  EXPECT_TRUE(s.WasTold("lyrics"));
  s.Edit(2, Value2Column, "a÷b¶c");
  EXPECT_EQ(s.Payload(2), "61 0A 62 0D 63");
  // A text that has the sign itself keeps it, in its own encoding.
  s.Edit(3, Value2Column, "ä÷b");
  EXPECT_EQ(s.Payload(3), "E4 F7 62");
}

TEST(EventMetas, ATextKeepsItsEncodingWhereItCan) {
  MetaBench s;
  s.Words(0, 6, "M\xFCller").Words(0, 6, "Müller").Open();
  s.Edit(1, Value2Column, "Möller");
  EXPECT_EQ(s.Payload(1), "4D F6 6C 6C 65 72");
  s.Edit(2, Value2Column, "Möller");
  EXPECT_EQ(s.Payload(2), "4D C3 B6 6C 6C 65 72");
  EXPECT_EQ(s.rows.Event(2)->DLength, 7);
  s.Edit(1, Value2Column, "Ω");
  EXPECT_EQ(s.Payload(1), "CE A9");
  EXPECT_FALSE(s.Edit(1, Value2Column, "").Applied);
}

TEST(EventMetas, ATrackNameNamesItsTrack) {
  MetaBench s;
  s.Words(0, 3, "Bass").Open();
  s.Track(1).TrkName = "Bass";
  s.Edit(1, Value2Column, "Gitarre");
  EXPECT_EQ(s.Track(1).TrkName, "Gitarre");
  s.edits.PM_UndoClick();
  EXPECT_EQ(s.Track(1).TrkName, "Bass");
}

TEST(EventMetas, TheIgnoreMarkHoldsTheTrackOutInFormat1Only) {
  MetaBench s;
  s.Words(0, 3, "Bass").Open();
  s.Edit(1, Value2Column, "srl_ignore this");
  EXPECT_TRUE(s.Track(1).TrkIgnore);
  EXPECT_EQ(s.Cell(1, Value2Column), "srl_ignore this");
  s.Edit(1, Value2Column, "Bass again");
  EXPECT_FALSE(s.Track(1).TrkIgnore);
  s.song.MidiFileFormat = 0;
  s.rows.UpdateDisplayedEvents();
  EXPECT_FALSE(s.Edit(1, Value2Column, "srl_ignore").Applied);
  EXPECT_FALSE(s.Track(0).TrkIgnore);
}

TEST(EventMetas, TheIgnoreMarkIsRefusedInFormat0) {
  EditorBench s;
  s.song.MidiFileFormat = s.song.MidiFileOrgFormat = 0;
  s.NewTrack().Words(0, 3, "Bass").Open(1);
  EXPECT_EQ(s.Edit(1, Value2Column, "srl_ignore").Text, "Bass");
  EXPECT_EQ(s.LastMessage(), "This setting is on for midifiles in Format 1 usefull!");
  const InGerman german;
  s.Edit(1, Value2Column, "srl_ignore");
  EXPECT_EQ(s.LastMessage(), "Dieser Befehl ist nur für Midifiles im Format 1 sinnvoll!");
  EXPECT_FALSE(s.Track(0).TrkIgnore);
}

TEST(EventMetas, ANewTypeBringsItsDefault) {
  MetaBench s;
  s.Words(0, 5, "la").Open();
  struct TRow {
    const char* Type;
    const char* Number;
    const char* Value;
  };
  for (const TRow& row :
       {TRow{"Text", "1", "**** "}, TRow{"Copyright info", "2", "**** "},
        TRow{"Marker", "6", "PCLP_Scroll"}, TRow{"Tempo", "81", "120"},
        TRow{"Time signature", "88", "4/4"}, TRow{"Key signature", "89", "C"},
        TRow{"XF chord", "127", "C"}, TRow{"Miditemp MP11 Meta", "75", "2A 2A 2A 2A 20"},
        TRow{"Lyrics", "5", "**** "}}) {
    EXPECT_EQ(s.Edit(1, Value1Column, row.Type).Text, row.Number);
    EXPECT_EQ(s.Cell(1, Value2Column), row.Value);
    EXPECT_EQ(s.song.XF_ChordsArrayElements, std::string(row.Type) == "XF chord" ? 1 : 0);
    EXPECT_EQ(s.song.KeySignArray[1].Elements, std::string(row.Type) == "Key signature" ? 1 : 0);
  }
  EXPECT_FALSE(s.Edit(1, Value1Column, "Nonsense").Applied);
}

TEST(EventMetas, ATypeThatBelongsElsewhereLeavesTheList) {
  EditorBench s;
  s.song.MidiFileFormat = s.song.MidiFileOrgFormat = 0;
  s.NewTrack().Words(0, 5, "la").Open(1);
  const TEditResult result = s.Edit(1, Value1Column, "Tempo");
  EXPECT_TRUE(result.Applied);
  EXPECT_EQ(result.Row, 0);
  EXPECT_EQ(s.rows.Events(), 0);
  EXPECT_TRUE(CheckSong(s.song).empty());
}

TEST(EventMetas, ASongNameThatBecomesAnotherTypeNamesTheSongNoMore) {
  MetaBench s;
  s.Words(0, 3, "Song").Open();
  s.song.SongNameEvent = s.rows.Event(1);
  s.Edit(1, Value1Column, "Text");
  EXPECT_EQ(s.song.SongNameEvent, nullptr);
  s.edits.PM_UndoClick();
  EXPECT_EQ(s.song.SongNameEvent, s.rows.Event(1));
}

TEST(EventMetas, BytesAndTimeCodesAreTypedAsTheyAreShown) {
  MetaBench s;
  s.Data(0, 0x4B, {1, 2}).Data(0, 0x54, {0x60, 0, 0, 0, 0}).Data(0, 0x7F, {9}).Open();
  EXPECT_EQ(s.Edit(1, Value2Column, "0A ff").Text, "0A FF");
  EXPECT_FALSE(s.Edit(1, Value2Column, "0A zz").Applied);
  EXPECT_EQ(s.Edit(2, Value2Column, "65:01:02:03.04").Text, "65:01:02:03.04");
  EXPECT_EQ(s.Payload(2), "61 01 02 03 04");
  EXPECT_FALSE(s.Edit(2, Value2Column, "1:2:3").Applied);
  EXPECT_EQ(s.Edit(3, Value2Column, "43 7B 01 31 08 7F 7F").Text, "Cm");
}

// --- Sysexes

TEST(EventSysexes, BytesAreTypedInHexadecimal) {
  MetaBench s;
  s.Exclusive(0, {0x43, 0x10, 0xF7}).Open();
  EXPECT_EQ(s.Edit(1, Value2Column, "7e  7F\r09 01 F7").Text, "7E 7F 09 01 F7");
  EXPECT_EQ(s.rows.Event(1)->DLength, 5);
  EXPECT_EQ(s.Edit(1, Value2Column, "7E 7F 09 03").Text, "7E 7F 09 03 F7");
  EXPECT_EQ(s.Edit(1, Value2Column, "F0 7E 7F 09 02 F7").Text, "7E 7F 09 02 F7");
  for (const char* text : {"7E 7G", "", "F7", "7E 80 F7", "7E F7 00 F7", "123"}) {
    const TEditResult result = s.Edit(1, Value2Column, text);
    EXPECT_FALSE(result.Applied) << text;
    EXPECT_EQ(result.Text, "7E 7F 09 02 F7");
    EXPECT_FALSE(result.Status.empty());
  }
}

TEST(EventSysexes, AnEditedOneHasItsOwnExplanationUntilTheListIsBuiltAnew) {
  MetaBench s;
  s.Exclusive(0, {0x43, 0x10, 0xF7}).Open();
  s.Edit(1, Value2Column, "26 7B 0F 00 02 00");
  EXPECT_EQ(s.Cell(1, LengthColumn), "Ketron Part 3: Sound part");
  s.rows.UpdateDisplayedEvents();
  EXPECT_EQ(s.Cell(1, LengthColumn), "Ketron Part 3: Voice part");
}

TEST(EventSysexes, TheChecksumOfARolandMessageCanBeComputed) {
  MetaBench s;
  s.Exclusive(0, {0x41, 0x10, 0x42, 0x12, 0x40, 0x00, 0x7F, 0x00, 0x00, 0xF7});
  s.Exclusive(0, {0x41, 0x10, 0x00, 0x00, 0x54, 0x12, 0x18, 0x00, 0x20, 0x44, 0x01, 0x11, 0xF7});
  s.Exclusive(0, {0x43, 0x10, 0x4C, 0x12, 0x40, 0x00, 0x7F, 0x00, 0x00, 0xF7});
  s.Exclusive(0, {0x41, 0x10, 0x42, 0x12, 0xF7}).Open();
  EXPECT_TRUE(s.edits.HasRolandChecksum(1));
  EXPECT_EQ(s.edits.RecomputeChecksum(1).Text, "41 10 42 12 40 00 7F 00 41 F7");
  EXPECT_FALSE(s.edits.RecomputeChecksum(1).Applied);
  // 18 + 00 + 20 + 44 + 01 = 7D; 03 makes it 80.
  EXPECT_EQ(s.edits.RecomputeChecksum(2).Text, "41 10 00 00 54 12 18 00 20 44 01 03 F7");
  EXPECT_FALSE(s.edits.HasRolandChecksum(3));
  EXPECT_FALSE(s.edits.HasRolandChecksum(4));
}

TEST(EventSysexes, ThoseTheSongNeedsAreProtected) {
  MetaBench s;
  s.Exclusive(0, {0x7E, 0x7F, 0x09, 0x01, 0xF7}).Exclusive(5, {0x41, 0x10, 0xF7});
  s.Exclusive(9, {0x7E, 0x7F, 0x09, 0x01, 0xF7}).Exclusive(9, {0x43, 0xF7}).Open();
  s.song.RolandDelayTimeSysexEvent = s.rows.Event(2);
  EXPECT_TRUE(s.edits.IsProtected(*s.rows.Event(1)));
  EXPECT_TRUE(s.edits.IsProtected(*s.rows.Event(2)));
  EXPECT_FALSE(s.edits.IsProtected(*s.rows.Event(3)));
  EXPECT_FALSE(s.edits.IsProtected(*s.rows.Event(4)));
  EXPECT_EQ(s.edits.PM_DeleteMidiEventClick({1}), 0);
  EXPECT_EQ(s.LastMessage(), "This sysex is not to be deleted!");
  EXPECT_TRUE(s.messages.Asked.empty());
  EXPECT_EQ(s.edits.PM_DeleteMidiEventClick({2, 3, 4}), 2);
  const InGerman german;
  s.edits.PM_DeleteMidiEventClick({1});
  EXPECT_EQ(s.LastMessage(), "Diesen Sysex dürfen Sie nicht löschen!");
}

}  // namespace

}  // namespace Sonarello
