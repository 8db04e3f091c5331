// The event list: which events make a row, what stands in its columns, and the lists beside it.
#include "editors/EventRows.h"

#include <gmock/gmock.h>

#include "editors/EditorBench.h"

namespace Sonarello {

namespace {

using testing::ElementsAre;
using TTexts = std::vector<std::string>;

std::string Name(TAddress a) {
  return std::to_string(a.CC00) + "/" + std::to_string(a.CC32) + "/" + std::to_string(a.Patch);
}

struct RowsBench : EditorBench {
  RowsBench() {
    rows.Texts.Hooks.ProgramChangeName = [](int, const TAddress& a) { return Name(a); };
    rows.Hooks.PatchName = [](int channel) { return "Sound " + std::to_string(channel); };
    NewTrack().NewTrack();
  }
  RowsBench& Format0() {
    song.MidiFileFormat = song.MidiFileOrgFormat = 0;
    return *this;
  }
};

// --- Columns

TEST(EventRows, ANoteIsToldWithKeyLengthAndVelocity) {
  RowsBench s;
  s.Note(480, 1200, 60, 3).Open();
  EXPECT_EQ(s.Fields(1), (TTexts{" 1", "001.02.000", "000:00.500", "3", "Note", "C3", "720", "100"}));
  const InGerman german;
  s.rows.ShowEventsOnTrack(1);
  EXPECT_EQ(s.Cell(1, TimeColumn), "000:00,500");
}

TEST(EventRows, TheTrackHasABlankInFrontBelowNine) {
  RowsBench s;
  for (int n = 0; n < 9; ++n) s.NewTrack().Ctrl(0, 7, n);
  s.Open(8);
  EXPECT_EQ(s.Cell(1, TrackColumn), " 8");
  s.rows.CB_TrackListChange(9);
  EXPECT_EQ(s.Cell(1, TrackColumn), "9");
}

TEST(EventRows, TheChannelIsTheOneThatTheStripGoesOutOn) {
  RowsBench s;
  s.Ctrl(0, 7, 1).Open();
  s.song.MidiData[0].MidiChannel = 4;
  s.rows.ShowEventsOnTrack(1);
  EXPECT_EQ(s.Cell(1, ChannelColumn), "5");
}

TEST(EventRows, ADrumKeyHasItsNumberAndNameWhereADrumEditorShowsTheChannel) {
  RowsBench s;
  s.Note(0, 10, 36, 10).Open();
  s.rows.Texts.Hooks.DrumName = [](int channel, int key) -> std::optional<std::string> {
    return channel == 9 && key == 36 ? std::optional<std::string>("Kick") : std::nullopt;
  };
  s.rows.ShowEventsOnTrack(1);
  EXPECT_EQ(s.Cell(1, Value1Column), "36 Kick");
}

TEST(EventRows, GermanKeyNamesFollowTheChordSettingNotTheLanguage) {
  RowsBench s;
  s.Note(0, 10, 71).Open();
  EXPECT_EQ(s.Cell(1, Value1Column), "B3");
  s.rows.Texts.UseGermanChords = true;
  s.rows.ShowEventsOnTrack(1);
  EXPECT_EQ(s.Cell(1, Value1Column), "H3");
}

TEST(EventRows, NotesAreMatchedFirstInFirstOut) {
  RowsBench s;
  s.On(0, 60).On(100, 60).Off(150, 60).Off(400, 60).On(500, 62).Off(510, 61).Open();
  EXPECT_EQ(s.Column(LengthColumn), (TTexts{"150", "300", ""}));
}

TEST(EventRows, AThirtyThirdOpenNoteHasNoLength) {
  RowsBench s;
  for (int n = 0; n < 33; ++n) s.On(n, 60);
  for (int n = 0; n < 33; ++n) s.Off(100 + n, 60);
  s.Open();
  const TTexts lengths = s.Column(LengthColumn);
  EXPECT_EQ(lengths[0], "100");
  EXPECT_EQ(lengths[31], "100");
  EXPECT_EQ(lengths[32], "");
}

TEST(EventRows, ControllersHaveTheirNames) {
  RowsBench s;
  s.Ctrl(0, 0, 3).Ctrl(0, 91, 40).Ctrl(0, 3, 5).Ctrl(0, 127, 0).Open();
  EXPECT_EQ(s.Column(Value1Column), (TTexts{"0", "91", "3", "127"}));
  EXPECT_EQ(s.Column(LengthColumn), (TTexts{"Bank MSB", "Hall Depth", "", "Poly Mode On"}));
  EXPECT_EQ(s.Column(Value2Column), (TTexts{"3", "40", "5", "0"}));
}

TEST(EventRows, AProgramTakesTheBanksSinceTheLastOne) {
  RowsBench s;
  s.Ctrl(20, 0, 1).Ctrl(20, 32, 2).Program(20, 3).Program(30, 4).Ctrl(40, 32, 7).Program(50, 5).Open();
  s.rows.CB_FilterChange(2);
  EXPECT_EQ(s.Column(Value2Column), (TTexts{"1/2/3", "-1/-1/4", "-1/7/5"}));
  EXPECT_EQ(s.Column(Value1Column), (TTexts{"4", "5", "6"}));
  EXPECT_EQ(s.Cell(1, LengthColumn), "(GM Soundset)");
}

TEST(EventRows, ABankThatWasRemovedCountsNoMore) {
  RowsBench s;
  s.Ctrl(20, 0, 1).Program(20, 3).Open();
  MarkRemoved(s.Event(1, 1));
  s.rows.ShowEventsOnTrack(1);
  EXPECT_EQ(s.Column(Value2Column), (TTexts{"-1/-1/3"}));
}

TEST(EventRows, ARemoteControlCommandIsToldAsSuch) {
  RowsBench s;
  s.Ctrl(0, 0, 77, 16).Ctrl(2, 32, 3, 16).Program(4, 9, 16).Ctrl(20, 0, 77).Program(20, 9).Open();
  s.rows.CB_FilterChange(2);
  EXPECT_EQ(s.Cell(1, Value2Column), "Prompta remote control for position 310");
  EXPECT_EQ(s.Cell(2, Value2Column), "77/-1/9");
  const InGerman german;
  s.rows.ShowEventsOnTrack(1);
  EXPECT_EQ(s.Cell(1, Value2Column), "Prompta Fernbedienung für Position 310");
}

TEST(EventRows, AftertouchAndPitchBendAreToldWithTheirValues) {
  RowsBench s;
  s.Put(NewChannelEvent(s.song.Pool, KeyAftertouch, 60, 33, 0));
  s.Put(NewChannelEvent(s.song.Pool, ChannelAftertouch, 44, 0, 0));
  s.Put(NewChannelEvent(s.song.Pool, PitchBend, 0, 0, 0));
  s.Put(NewChannelEvent(s.song.Pool, PitchBend, 127, 127, 0));
  s.Open();
  EXPECT_EQ(s.Column(KindColumn),
            (TTexts{"Key after-touch", "Ch. after-touch", "Pitch bend", "Pitch bend"}));
  EXPECT_EQ(s.Column(Value1Column), (TTexts{"C3", "", "", ""}));
  EXPECT_EQ(s.Column(LengthColumn), (TTexts{"", "44", "-8192", "8191"}));
  EXPECT_EQ(s.Column(Value2Column), (TTexts{"33", "", "", ""}));
}

TEST(EventRows, SysexesShowTheirBytesAndTheirExplanation) {
  RowsBench s;
  s.Exclusive(0, {0x7E, 0x7F, 0x09, 0x01, 0xF7});
  s.Exclusive(0, {0x0A});
  s.Track(1).TrkLastEvent->Command = SysexEscape;
  s.Open();
  EXPECT_EQ(s.Fields(1)[5] + "|" + s.Fields(1)[6] + "|" + s.Fields(1)[7],
            "F0|GM System On|7E 7F 09 01 F7");
  EXPECT_EQ(s.Fields(2)[5] + "|" + s.Fields(2)[6] + "|" + s.Fields(2)[7], "F7||0A");
}

TEST(EventRows, MetasAreToldByTheirTypes) {
  RowsBench s;
  s.Words(0, 1, "a\nb\rc").Words(0, 5, "\n").Words(0, 5, "\r").Words(0, 5, "x\ny").Words(0, 7, "cue");
  s.Data(0, 0x4B, {1, 0xAB}).Tempo(0, 0).Data(0, 0x54, {0x60, 1, 2, 3, 4}).Data(0, 0x58, {6, 3, 24, 8});
  s.Data(0, 0x59, {0xFD, 1}).Data(0, 0x7F, {0x43, 0x7B, 0, 1, 2, 3, 4, 5, 6});
  s.Data(0, 0x7F, {0x43, 0x7B, 1, 0x45, 10, 0x31, 0x7F}).Data(0, 0x7F, {1, 2}).Words(0, 0x60, "??");
  s.Words(0, 2, "\xA9 M\xFCller");
  s.Open();
  EXPECT_EQ(s.Column(Value2Column),
            (TTexts{"a÷b¶c", "***_NP_***", "***_NL_***", "x***_NP_***y", "cue", "01 AB", "120",
                    "64:01:02:03.04", "6/8", "Eb min", "43 7B 00 01 02 03 04 05 06", "G#m7/C", "01 02",
                    "??", "© Müller"}));
  EXPECT_EQ(s.Column(LengthColumn),
            (TTexts{"Text", "Lyric", "Lyric", "Lyric", "Cue point", "Miditemp MP11 Meta", "Tempo",
                    "SMPTE Offset", "Time signature", "Key signature", "XF Version ID", "XF chord",
                    "Seq.specific", "Unknown meta event", "Copyright info"}));
  EXPECT_EQ(s.Cell(7, Value1Column), "81");
  const InGerman german;
  s.rows.ShowEventsOnTrack(1);
  EXPECT_EQ(s.Cell(10, Value2Column), "Eb mol");
  EXPECT_EQ(s.Cell(12, LengthColumn), "XF-Akkord");
  EXPECT_EQ(s.Cell(14, LengthColumn), "Unbekanntes Meta-Event");
  EXPECT_EQ(s.Cell(1, KindColumn), "Meta Event");
}

TEST(EventRows, CutMetasAreToldAsFarAsTheyGo) {
  RowsBench s;
  s.Data(0, 0x51, {7})
      .Data(0, 0x58, {4})
      .Data(0, 0x54, {1})
      .Data(0, 0x59, {1})
      .Data(0, 0x58, {4, 99, 1, 1});
  s.Open();
  EXPECT_EQ(s.Column(Value2Column), (TTexts{"07", "04", "01", "G", "4/4611686018427387904"}));
}

// --- Which events make a row

TEST(EventRows, RemovedEventsNoteOffsHeadAndEndMakeNoRow) {
  RowsBench s;
  s.Note(0, 10, 60).Ctrl(20, 7, 1).Ctrl(30, 7, 2).Open();
  MarkRemoved(s.Event(1, 3));
  s.rows.ShowEventsOnTrack(1);
  EXPECT_EQ(s.Column(KindColumn), (TTexts{"Note", "Controller"}));
  EXPECT_EQ(s.rows.CounterLabel(), "2");
}

TEST(EventRows, AnOddCommandIsUnknown) {
  RowsBench s;
  s.Put(NewEvent(s.song.Pool));
  s.Track(1).TrkLastEvent->Command = 0xF3;
  s.Track(1).TrkLastEvent->DLength = 1;
  s.Open();
  EXPECT_EQ(s.Fields(1), (TTexts{" 1", "001.01.000", "000:00.000", "-", "...unknown", "", "", ""}));
}

TEST(EventRows, EachFilterShowsItsKind) {
  RowsBench s;
  s.Note(0, 10, 60).Program(10, 1).Ctrl(10, 7, 1);
  for (const Status status : {KeyAftertouch, ChannelAftertouch, PitchBend})
    s.Put(NewChannelEvent(s.song.Pool, status, 1, 1, 20));
  s.Exclusive(30, {1, 0xF7}).Words(40, 1, "x").Open();
  for (int filter = 1; filter <= 8; ++filter) {
    s.rows.CB_FilterChange(filter);
    ASSERT_EQ(s.rows.Events(), 1) << filter;
    EXPECT_EQ(s.Cell(1, KindColumn), KindName(static_cast<TEventKind>(filter - 1)));
  }
  s.rows.CB_FilterChange(0);
  EXPECT_EQ(s.rows.Events(), 8);
}

TEST(EventRows, AFormat0SongIsSpreadOverItsSeventeenEntries) {
  RowsBench s;
  s.Format0();
  s.song.MidiTrack.clear();
  s.NewTrack().Tempo(0, 500'000).Words(0, 3, "Song").Data(0, 0x7F, {1}).Words(0, 0x20, "x");
  s.Exclusive(0, {1, 0xF7}).Ctrl(10, 7, 1, 1).Ctrl(10, 7, 1, 10).Note(20, 30, 60, 10).Open(0);
  EXPECT_EQ(s.Column(LengthColumn), (TTexts{"Tempo"}));
  s.rows.CB_TrackListChange(1);
  EXPECT_EQ(s.Column(LengthColumn), (TTexts{"Track name", "Seq.specific", "Volume"}));
  s.rows.CB_TrackListChange(10);
  EXPECT_EQ(s.Column(KindColumn), (TTexts{"Sysex", "Controller", "Note"}));
  s.rows.CB_TrackListChange(2);
  EXPECT_EQ(s.rows.Events(), 0);
  s.rows.ShowSysexs();
  EXPECT_EQ(s.Column(KindColumn), (TTexts{"Sysex"}));
}

TEST(EventRows, TheSysexListShowsTheEffectMemoryWithItsPlaceholders) {
  RowsBench s;
  s.Instrument(87);
  TMyTrack& effects = *s.song.DSPTrackOf(87);
  BeginTrack(s.song.Pool, effects);
  Append(effects, NewSysex(s.song.Pool, Bytes{0x43, 0xF7}, 0));
  effects.TrkLastEvent->DLength = 0;
  EndTrack(s.song.Pool, effects, 999);
  s.Open();
  s.rows.ShowSysexs();
  EXPECT_EQ(s.rows.ChannelLabel(), "Sysexs");
  EXPECT_EQ(s.Column(Value2Column), (TTexts{"43 F7"}));
  EXPECT_EQ(s.Cell(1, TrackColumn), "99");
  s.options.YamahaDSPsEnabled = false;
  s.rows.ShowSysexs();
  EXPECT_EQ(s.rows.Events(), 0);
}

TEST(EventRows, AnEmptyListSaysWhatItHasNot) {
  RowsBench s;
  s.Open();
  const TTexts english = {"No events found",
                          "No notes found",
                          "No program changes found",
                          "No controllers found",
                          "No key after-toouch found",
                          "No channel after-touch found",
                          "No pitch bend found",
                          "No sysex found",
                          "No meta found"};
  const TTexts german = {"keine Events vorhanden",
                         "keine Noten gefunden",
                         "keine Programm-Wechsel gefunden",
                         "keine Controller gefunden",
                         "keine Noten After-touch gefunden",
                         "keine Kanal After-touch gefunden",
                         "keine Pitch-Bend gefunden",
                         "keine Sysex gefunden",
                         "keine Metas gefunden"};
  for (std::size_t filter = 0; filter < english.size(); ++filter) {
    s.rows.CB_FilterChange(static_cast<int>(filter));
    EXPECT_EQ(s.Fields(1), (TTexts{"-", "-", "-", "-", "-", "-", english[filter], "-"}));
    const InGerman language;
    s.rows.ForgetTexts();
    EXPECT_EQ(s.Cell(1, LengthColumn), german[filter]);
  }
  EXPECT_EQ(s.rows.CounterLabel(), "0");
  EXPECT_EQ(s.rows.Rows(), 1);
}

// --- ListPos and position

TEST(EventRows, EveryEventKnowsItsRow) {
  RowsBench s;
  s.Ctrl(10, 7, 1).Note(20, 30, 60).Ctrl(40, 7, 2).Open();
  s.rows.CB_FilterChange(3);
  std::vector<std::int32_t> places;
  ForEachEvent(s.Track(1), [&](PtrMidiEvent e) { places.push_back(e->ListPos); });
  EXPECT_THAT(places, ElementsAre(1, 1, 1, 1, 2, 2));
}

TEST(EventRows, TheSelectionFollowsTheSong) {
  RowsBench s;
  s.Note(480, 960, 60).Ctrl(1440, 7, 1).Open(1, 4800);
  std::int32_t now = 0;
  s.rows.Hooks.TimePosition = [&] { return now; };
  EXPECT_FALSE(s.rows.SyncDisplayToMidiPosition());
  now = 600;  // the note-off of the first row comes next
  EXPECT_FALSE(s.rows.SyncDisplayToMidiPosition());
  now = 1001;
  EXPECT_TRUE(s.rows.SyncDisplayToMidiPosition());
  EXPECT_EQ(s.rows.EventListPosition, 2);
  now = 100'000;
  EXPECT_FALSE(s.rows.SyncDisplayToMidiPosition());
}

TEST(EventRows, TheSelectionStandsInTheMiddleOfWhatIsSeen) {
  RowsBench s;
  for (int n = 0; n < 100; ++n) s.Ctrl(n, 7, n);
  s.Open();
  s.rows.EventListPosition = 50;
  EXPECT_EQ(s.rows.DisplayEventListPosition(20), 40);
  s.rows.EventListPosition = 3;
  EXPECT_EQ(s.rows.DisplayEventListPosition(20), 1);
  s.rows.EventListPosition = 99;
  EXPECT_EQ(s.rows.DisplayEventListPosition(20), 81);
}

// --- The lists beside the rows

TEST(EventRows, TheTrackListNamesTracksAndChannels) {
  RowsBench s;
  s.Ctrl(0, 7, 1, 5).Note(10, 20, 60, 5);
  s.NewTrack().Ctrl(0, 7, 1, 1).Ctrl(0, 7, 1, 2);
  s.NewTrack();
  s.Track(3).TrkName =
      "Br\xFC"
      "cke";
  s.Open();
  s.rows.UpdateDisplayedEvents();
  EXPECT_EQ(s.rows.TrackLines(), (TTexts{"Master", "Ch: 5, Sound 4", "Track 2", "Brücke"}));
  EXPECT_EQ(s.rows.ChannelLabel(), "Ch: 5");
  s.rows.CB_TrackListChange(2);
  EXPECT_EQ(s.rows.ChannelLabel(), "Ch: All");
  const InGerman german;
  s.rows.UpdateDisplayedEvents();
  EXPECT_EQ(s.rows.TrackLines(), (TTexts{"Master", "K: 5, Sound 4", "Spur 2", "Brücke"}));
  EXPECT_EQ(s.rows.ChannelLabel(), "K: Alle");
}

TEST(EventRows, AFormat0SongListsItsChannels) {
  RowsBench s;
  s.Format0();
  s.song.MidiTrack.clear();
  s.NewTrack().Note(0, 10, 60, 2).Open(0);
  ASSERT_EQ(s.rows.TrackLines().size(), 17U);
  EXPECT_EQ(s.rows.TrackLines()[1], "Ch: 1, noteless");
  EXPECT_EQ(s.rows.TrackLines()[2], "Ch: 2, Sound 1");
  EXPECT_EQ(s.rows.ChannelLabel(), "Ch: -");
  s.rows.CB_TrackListChange(16);
  EXPECT_EQ(s.rows.ChannelLabel(), "Ch: 16");
  const InGerman german;
  s.rows.UpdateDisplayedEvents();
  EXPECT_EQ(s.rows.TrackLines()[1], "K: 1, notenlos");
}

TEST(EventRows, FilterEntriesAndTheirLabel) {
  EXPECT_EQ(FilterLines(),
            (TTexts{"All events", "Notes", "Program changes", "Controller", "Key after-touch",
                    "Ch. after-touch", "Pitch bend", "Sysex", "Meta events"}));
  EXPECT_EQ(FilterLabel(0) + FilterLabel(3), "ShowShow only");
  const InGerman german;
  EXPECT_EQ(FilterLines(), (TTexts{"Alles", "Noten", "Program change", "Controller", "Key after-touch",
                                   "Ch. after-touch", "Pitch Bend", "Sysex", "Meta Events"}));
  EXPECT_EQ(FilterLabel(0) + FilterLabel(3), "ZeigeZeige nur");
}

TEST(EventRows, ColumnHeadsInBothLanguages) {
  TTexts heads;
  for (int column = 0; column < EventColumnCount; ++column) heads.push_back(ColumnHead(column));
  EXPECT_EQ(heads, (TTexts{" Trk", " Position", " Time", " Chn", " Type", " Value 1", " Length / Expl.",
                           " Value 2"}));
  const InGerman german;
  EXPECT_EQ(ColumnHead(0) + ColumnHead(2) + ColumnHead(6), " Sp Zeit Länge / Erklärung");
}

TEST(EventRows, MasterShowsAllKindsAndInsertsMetasOnly) {
  RowsBench s;
  s.Ctrl(0, 7, 1).Open();
  s.rows.CB_FilterChange(3);
  s.rows.CB_InsertChange(2);
  s.rows.CB_TrackListChange(0);
  EXPECT_EQ(s.rows.FilterIndex(), 0);
  EXPECT_FALSE(s.rows.InsertEnabled());
  EXPECT_EQ(s.rows.InsertIndex(), 7);
  EXPECT_EQ(s.rows.InsertLines().size(), 8U);
  s.rows.CB_TrackListChange(1);
  EXPECT_EQ(s.rows.FilterIndex(), 3);
  EXPECT_TRUE(s.rows.InsertEnabled());
  EXPECT_EQ(s.rows.InsertIndex(), 2);
}

TEST(EventRows, TheInsertListOfAFormat0SongFollowsTheEntry) {
  RowsBench s;
  s.Format0();
  s.song.MidiTrack.clear();
  s.NewTrack().Open(1);
  EXPECT_EQ(s.rows.InsertLines(), (TTexts{"Note", "Program change", "Controller", "Key after-touch",
                                          "Ch. after-touch", "Pitch bend", "Meta event"}));
  s.rows.CB_TrackListChange(10);
  EXPECT_EQ(s.rows.InsertLines().back(), "Sysex");
  s.rows.CB_InsertChange(6);
  s.rows.CB_TrackListChange(5);
  EXPECT_EQ(s.rows.InsertLines().size(), 6U);
  EXPECT_EQ(s.rows.InsertIndex(), 0);
}

TEST(EventRows, AnUpdateKeepsTheSelectionAndGoesNowhereWithoutASong) {
  RowsBench s;
  for (int n = 0; n < 9; ++n) s.Ctrl(n, 7, n);
  s.Open();
  s.rows.EventListPosition = 5;
  s.rows.UpdateDisplayedEvents();
  EXPECT_EQ(s.rows.EventListPosition, 5);
  s.song.MidiFileLoaded = false;
  s.rows.UpdateDisplayedEvents();
  EXPECT_EQ(s.rows.Events(), 9);
  s.rows.Clear();
  EXPECT_EQ(s.rows.Events(), 0);
  EXPECT_EQ(s.rows.ShowingTrack, -1);
}

TEST(EventRows, AListThatOthersChangedIsNotRead) {
  RowsBench s;
  s.Ctrl(0, 7, 1).Ctrl(5, 7, 2).Open();
  Remove(s.song, s.Track(1), s.Event(1, 1));
  EXPECT_EQ(s.rows.Event(1), nullptr);
  EXPECT_EQ(s.Cell(2, KindColumn), "");
  s.rows.UpdateDisplayedEvents();
  EXPECT_EQ(s.rows.Events(), 1);
}

// --- Search and copy

TEST(EventRows, ATextIsFoundInAnyColumnInAnyCase) {
  RowsBench s;
  s.Ctrl(0, 7, 1).Words(10, 1, "Über den Wolken").Ctrl(20, 7, 2).Note(30, 40, 60).Open();
  EXPECT_EQ(s.rows.Find("über", 0, false), 2);
  EXPECT_EQ(s.rows.Find("volume", 1, false), 3);
  EXPECT_EQ(s.rows.Find("volume", 3, false), 1);
  EXPECT_EQ(s.rows.Find("volume", 3, true), 1);
  EXPECT_EQ(s.rows.Find("volume", 1, true), 3);
  EXPECT_EQ(s.rows.Find("c3", 4, false), 4);
  EXPECT_EQ(s.rows.Find("nothing", 1, false), std::nullopt);
  EXPECT_EQ(s.rows.Find("", 1, false), std::nullopt);
}

TEST(EventRows, ASearchCanBeEnded) {
  RowsBench s;
  for (int n = 0; n < 9000; ++n) s.Ctrl(n, 7, 1);
  s.Open();
  int asked = 0;
  EXPECT_EQ(s.rows.Find("nothing", 0, false, [&](double) { return ++asked < 2; }), std::nullopt);
  EXPECT_EQ(asked, 2);
}

TEST(EventRows, RowsAreCopiedAsLines) {
  RowsBench s;
  s.Ctrl(0, 7, 1).Ctrl(480, 10, 64).Open();
  EXPECT_EQ(s.rows.TextOfRows({1, 2}),
            " 1\t001.01.000\t000:00.000\t1\tController\t7\tVolume\t1\n"
            " 1\t001.02.000\t000:00.500\t1\tController\t10\tPanorama\t64\n");
}

}  // namespace

}  // namespace Sonarello
