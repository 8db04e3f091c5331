// Insertion and deletion of events.
#include <gtest/gtest.h>

#include "editors/EditorBench.h"

namespace Sonarello {

namespace {

using TTexts = std::vector<std::string>;

struct RowBench : EditorBench {
  RowBench() { NewTrack().Tempo(0, 500'000).Sign(0, 4, 2).NewTrack(); }
  ~RowBench() { EXPECT_TRUE(CheckSong(song).empty()); }
  RowBench(const RowBench&) = delete;
  RowBench& operator=(const RowBench&) = delete;
  [[nodiscard]] TTexts Ticks() { return Events(1); }
  /// Columns 5 to 7 of a row.
  [[nodiscard]] TTexts Values(std::int32_t row) const {
    return {Cell(row, 5), Cell(row, 6), Cell(row, 7)};
  }
};

TEST(EventInsert, EachKindComesWithItsDefault) {
  RowBench s;
  s.Ctrl(100, 1, 1, 3).Open(1, 5000);
  const auto values = [&](TEventKind kind) {
    const std::int32_t row = s.Insert(kind, 1);
    EXPECT_EQ(row, 2) << KindName(kind);
    EXPECT_EQ(s.Cell(row, PositionColumn), "001.01.100");
    const TTexts texts = s.Values(row);
    s.edits.PM_UndoClick();
    EXPECT_EQ(s.rows.Events(), 1);
    return texts;
  };
  EXPECT_EQ(values(TEventKind::Note), (TTexts{"C8", "480", "100"}));
  EXPECT_EQ(values(TEventKind::ProgramChange), (TTexts{"1", "(GM Soundset)", ""}));
  EXPECT_EQ(values(TEventKind::Controller), (TTexts{"7", "Volume", "100"}));
  EXPECT_EQ(values(TEventKind::KeyAftertouch), (TTexts{"C-2", "", "100"}));
  EXPECT_EQ(values(TEventKind::ChannelAftertouch), (TTexts{"", "0", ""}));
  EXPECT_EQ(values(TEventKind::PitchBend), (TTexts{"", "0", ""}));
  EXPECT_EQ(values(TEventKind::Sysex), (TTexts{"F0", "GM System On", "7E 7F 09 01 F7"}));
  EXPECT_EQ(values(TEventKind::Meta), (TTexts{"5", "Lyrics", "**** "}));
  EXPECT_EQ(s.Column(ChannelColumn), (TTexts{"3"}));
}

TEST(EventInsert, ALyricsRowHasItsUsualWordWhenTheListIsBuiltAnew) {
  RowBench s;
  s.Open();
  EXPECT_EQ(s.Insert(TEventKind::Meta, 1), 1);
  EXPECT_EQ(s.Cell(1, LengthColumn), "Lyrics");
  s.rows.UpdateDisplayedEvents();
  EXPECT_EQ(s.Cell(1, LengthColumn), "Lyric");
  EXPECT_TRUE(s.WasTold("lyrics"));
}

TEST(EventInsert, AnEventThatIsTakenBackLeavesItsWordToNoOther) {
  RowBench s;
  s.Open();
  s.Insert(TEventKind::Meta, 1);
  s.edits.PM_UndoClick();
  EXPECT_EQ(s.Insert(TEventKind::Controller, 1), 1);
  EXPECT_EQ(s.Cell(1, LengthColumn), "Volume");
}

TEST(EventDelete, TheEventsOfAnEffectMemoryStay) {
  RowBench s;
  s.Instrument(87);
  TMyTrack& effects = *s.song.DSPTrackOf(87);
  BeginTrack(s.song.Pool, effects);
  Append(effects, NewSysex(s.song.Pool, Bytes{0x43, 0xF7}, 0));
  EndTrack(s.song.Pool, effects, 999);
  s.Open();
  s.rows.ShowSysexs();
  EXPECT_EQ(s.edits.PM_DeleteMidiEventClick({1}), 0);
  EXPECT_EQ(s.LastMessage(), "This sysex is not to be deleted!");
  EXPECT_TRUE(s.Edit(1, Value2Column, "43 10").Applied);
  s.edits.PM_UndoClick();
  EXPECT_EQ(s.Cell(1, Value2Column), "43 F7");
}

TEST(EventInsert, MasterGetsATempo) {
  RowBench s;
  s.Open(0);
  s.Edit(1, Value2Column, "60");
  EXPECT_EQ(s.Insert(TEventKind::Note, 2), 3);
  EXPECT_EQ(s.Values(3), (TTexts{"81", "Tempo", "120"}));
  EXPECT_TRUE(s.WasTold("times"));
}

TEST(EventInsert, ANoteIsShortOnADrumChannel) {
  RowBench s;
  s.Ctrl(100, 7, 1, 10).NewTrack().Ctrl(0, 7, 1, 2).Open(1, 5000);
  s.Insert(TEventKind::Note, 1);
  EXPECT_EQ(s.Ticks(), (TTexts{"ctrl 7 ch10 @100", "on 120 ch10 @100", "off 120 ch10 @110"}));
  EXPECT_EQ(s.Event(1, 3)->Value[1], 17);
  EXPECT_EQ(s.song.MidiData[9].ActiveNotes, 1);
  s.song.MidiData[1].DrumPart = 2;
  s.rows.CB_TrackListChange(2);
  s.Insert(TEventKind::Note, 1);
  EXPECT_EQ(s.Cell(2, LengthColumn), "10");
}

TEST(EventInsert, ANoteInAnEmptyTrackMakesItAChannelsTrack) {
  RowBench s;
  s.Open();
  s.song.ActiveMidiIndex = 3;
  EXPECT_EQ(s.Insert(TEventKind::Note, 1), 1);
  EXPECT_EQ(s.Track(1).TrkMidiIndex, 3);
  EXPECT_TRUE(s.song.MidiData[3].Active);
  s.edits.PM_UndoClick();
  EXPECT_EQ(s.Track(1).TrkMidiIndex, -1);
  EXPECT_FALSE(s.song.MidiData[3].Active);
}

TEST(EventInsert, ASecondC8AtAPositionIsTakenBack) {
  RowBench s;
  s.Note(480, 960, 120).Open(1, 5000);
  const Bytes before = s.Saved();
  EXPECT_EQ(s.Insert(TEventKind::Note, 1), 0);
  EXPECT_EQ(s.LastMessage(),
            "There is already a note \"C8\" at this position!\rPlease move to another position or "
            "change the pitch\rto be able to insert another note");
  EXPECT_EQ(s.Saved(), before);
  EXPECT_EQ(s.rows.Events(), 1);
  EXPECT_FALSE(s.edits.CanUndo());
  const InGerman german;
  s.Insert(TEventKind::Note, 1);
  EXPECT_EQ(s.LastMessage(),
            "Es befindet sich bereits eine Note \"C8\" an dieser Position!\rBitte ändern Sie die "
            "Position oder die Höhe dieser Note\rum eine weitere Note einfügen zu können.");
}

TEST(EventInsert, IsTalkedAboutWhenTheSongIsWholeAgain) {
  RowBench s;
  s.Note(100, 400, 120).Ctrl(200, 7, 1).Note(500, 600, 120).Open(1, 5000);
  std::size_t shownBefore = 99;
  s.edits.Hooks.Changed = [&] { shownBefore = s.messages.Shown.size(); };
  s.Insert(TEventKind::Note, 2);
  EXPECT_EQ(shownBefore, 0U);
  EXPECT_EQ(s.messages.Shown.size(), 2U);
}

TEST(EventInsert, ANoteInFrontOfAC8IsShortened) {
  RowBench s;
  s.Ctrl(100, 7, 1).Note(300, 400, 120).Open(1, 5000);
  s.Insert(TEventKind::Note, 1);
  EXPECT_EQ(s.Ticks(),
            (TTexts{"ctrl 7 @100", "on 120 @100", "off 120 @299", "on 120 @300", "off 120 @400"}));
  EXPECT_EQ(s.LastMessage(),
            "There is already a note \"C8\" at a near position!\rTherefor is the "
            "inserted note shortened");
  s.edits.PM_UndoClick();
  const InGerman german;
  s.Insert(TEventKind::Note, 1);
  EXPECT_EQ(s.LastMessage(),
            "Es befindet sich bereits eine Note \"C8\" an einer nahen Position!\rDaher "
            "wurde die eingefügte Note entsprechend gekürzt");
}

TEST(EventInsert, AC8ThatSoundsIntoThePlaceIsShortened) {
  RowBench s;
  s.On(0, 120).Ctrl(100, 7, 1).Off(200, 120).Open(1, 5000);
  const Bytes before = s.Saved();
  s.Insert(TEventKind::Note, 2);
  EXPECT_EQ(s.Ticks(),
            (TTexts{"on 120 @0", "off 120 @99", "ctrl 7 @100", "on 120 @100", "off 120 @580"}));
  EXPECT_EQ(s.LastMessage(),
            "There is already a note \"C8\" at a near previous position!\rTherefor "
            "this note is shortened");
  s.edits.PM_UndoClick();
  EXPECT_EQ(s.Saved(), before);
  const InGerman german;
  s.Insert(TEventKind::Note, 2);
  EXPECT_EQ(s.LastMessage(),
            "Es befindet sich bereits eine Note \"C8\" in diesem Bereich!\rDaher "
            "wurde diese  Note entsprechend gekürzt");
}

TEST(EventInsert, AProgramNeverStandsBeforeTick6) {
  RowBench s;
  s.Ctrl(0, 7, 1).Ctrl(100, 7, 1).Open(1, 5000);
  s.Insert(TEventKind::ProgramChange, 1);
  EXPECT_EQ(s.Event(1, 2)->Position, 6);
  EXPECT_EQ(s.Event(1, 2)->TimePosition, 8);
  EXPECT_EQ(s.song.FirstPatches[0], s.Event(1, 2));
  EXPECT_EQ(s.song.MidiData[0].Patch, 0);
  EXPECT_TRUE(s.WasTold("first values"));
}

TEST(EventInsert, AtTheSongsEndThereIsRoomForAnEvent) {
  RowBench s;
  s.Open(1, 5000);
  s.Put(nullptr == s.Event(1, 1) ? nullptr : NewChannelEvent(s.song.Pool, Controller, 7, 1, 0));
  PtrMidiEvent last = s.Track(1).TrkLastEvent;
  Unlink(s.Track(1), last);
  last->Position = s.song.MaxSongPosition;
  InsertByPosition(s.Track(1), last);
  s.rows.UpdateDisplayedEvents();
  EXPECT_EQ(s.Insert(TEventKind::Note, 1), 1);
  EXPECT_EQ(s.Event(1, 1)->Position, 5008);
  EXPECT_EQ(s.Event(1, 3)->Position, 5010);
}

TEST(EventInsert, IsRefusedWhilePlayingAndWithoutAList) {
  RowBench s;
  s.Ctrl(0, 7, 1).Open();
  s.playing = true;
  EXPECT_EQ(s.Insert(TEventKind::Note, 1), 0);
  s.playing = false;
  EXPECT_EQ(s.edits.PM_InsertMidiEventClick(7), 0);
  EXPECT_EQ(s.LastMessage(), "Error finding midi event for Insert");
  s.rows.Clear();
  EXPECT_EQ(s.Insert(TEventKind::Note, 1), 0);
  EXPECT_EQ(s.messages.Shown.size(), 1U);
}

TEST(EventInsert, WantOfMemoryIsToldAndChangesNothing) {
  RowBench s;
  s.Ctrl(100, 7, 1).Open();
  const Bytes before = s.Saved();
  const auto insert = [&](TEventKind kind, int failAt) {
    s.song.Pool.FailAt(failAt);
    EXPECT_EQ(s.Insert(kind, 1), 0);
    s.song.Pool.FailAt(0);
    EXPECT_EQ(s.Saved(), before);
    return s.LastMessage();
  };
  EXPECT_EQ(insert(TEventKind::Controller, 1), "Error allocating memory for new midi event");
  EXPECT_EQ(insert(TEventKind::ProgramChange, 1), "Error getting memory for program change event");
  EXPECT_EQ(insert(TEventKind::Note, 2), "Error getting memory for note off event");
  const InGerman german;
  EXPECT_EQ(insert(TEventKind::Sysex, 1), "Fehler bei der Speicherzuweisung für neues Midi-Event");
  EXPECT_EQ(insert(TEventKind::ProgramChange, 1),
            "Fehler bei der Speicherzuweisung für Programm-Wechsel!");
  EXPECT_EQ(insert(TEventKind::Note, 2), "Fehler bei der Speicherzuweisung für Note-Off Event!");
}

// --- Deletion

TEST(EventDelete, TheQuestionRepeatsTheRow) {
  RowBench s;
  s.Note(0, 480, 60).Program(500, 4).Ctrl(600, 7, 99);
  s.Put(NewChannelEvent(s.song.Pool, KeyAftertouch, 60, 33, 700));
  s.Put(NewChannelEvent(s.song.Pool, PitchBend, 0, 64, 800));
  s.Exclusive(900, {0x43, 0xF7}).Words(910, 1, "Hallo").Open();
  const auto question = [&](std::int32_t row) { return s.edits.DeleteQuestion({row}); };
  EXPECT_EQ(question(1),
            "Delete the \"Note C3\" with length \"480\", velocity \"100\",\ron midi channel "
            "\"1\", at position \"001.01.000\" ?");
  EXPECT_EQ(question(2),
            "Delete the \"Program change\" with value \"5\",\ron midi channel \"1\", at "
            "position \"001.02.020\" ?");
  EXPECT_EQ(question(3),
            "Delete the \"Controller 7\" with value \"99\",\ron midi channel \"1\", at "
            "position \"001.02.120\" ?");
  EXPECT_EQ(question(4),
            "Delete the \"Key after-touch\" for note \"C3\" with value \"33\",\ron midi "
            "channel \"1\", at position \"001.02.220\" ?");
  EXPECT_EQ(question(5),
            "Delete the \"Pitch bend\" with value \"0\",\ron midi channel \"1\", at "
            "position \"001.02.320\" ?");
  EXPECT_EQ(question(6), "Delete the \"Sysex\" with value \"43 F7\",\rat position \"001.02.420\" ?");
  EXPECT_EQ(question(7),
            "Delete the \"Meta event Text\" with value \"Hallo\",\rat position "
            "\"001.02.430\" ?");
  EXPECT_EQ(s.edits.DeleteQuestion({3, 1, 2}),
            "Delete all selected events from \"001.01.000\" to \"001.02.120\" ?");
  const InGerman german;
  s.rows.ForgetTexts();
  EXPECT_EQ(question(1),
            "Soll \"Note C3\" mit Länge \"480\", Anschlagsdynamik \"100\",\rauf Midi-Kanal "
            "\"1\", bei Position \"001.01.000\" gelöscht werden?");
  EXPECT_EQ(question(4),
            "Soll \"Key after-touch\" für Note \"C3\" mit dem Wert \"33\",\rauf Midi-Kanal "
            "\"1\", bei Position \"001.02.220\" gelöscht werden?");
  EXPECT_EQ(s.edits.DeleteQuestion({1, 2}),
            "Sollen die selektierten Events von \"001.01.000\" bis "
            "\"001.02.020\" gelöscht werden?");
}

TEST(EventDelete, ANoteGoesWithItsEnd) {
  RowBench s;
  s.Note(0, 480, 60).Ctrl(600, 7, 99).Open();
  EXPECT_EQ(s.edits.PM_DeleteMidiEventClick({1}), 1);
  EXPECT_EQ(s.Ticks(), (TTexts{"ctrl 7 @600"}));
  EXPECT_EQ(s.song.MidiData[0].ActiveNotes, 0);
  EXPECT_TRUE(s.WasTold("forget"));
  EXPECT_EQ(s.edits.PM_UndoClick(), 1);
  EXPECT_EQ(s.Ticks(), (TTexts{"on 60 @0", "off 60 @480", "ctrl 7 @600"}));
  EXPECT_EQ(s.song.MidiData[0].ActiveNotes, 1);
}

TEST(EventDelete, ANoLeavesTheSongAsItWas) {
  RowBench s;
  s.Note(0, 480, 60).Open();
  s.messages.Answers = {false};
  EXPECT_EQ(s.edits.PM_DeleteMidiEventClick({1}), 0);
  EXPECT_EQ(s.rows.Events(), 1);
}

TEST(EventDelete, IsRefusedWhilePlaying) {
  RowBench s;
  s.Note(0, 480, 60).Open();
  s.playing = true;
  EXPECT_EQ(s.edits.PM_DeleteMidiEventClick({1}), 0);
  EXPECT_EQ(s.LastMessage(), "Delete not allowed during playback!");
  const InGerman german;
  s.edits.PM_DeleteMidiEventClick({1});
  EXPECT_EQ(s.LastMessage(), "Löschen nicht erlaubt während des Abspielens!");
  EXPECT_TRUE(s.messages.Asked.empty());
}

TEST(EventDelete, TheNextControllerBecomesTheFirstValue) {
  RowBench s;
  s.Ctrl(0, 7, 90).Ctrl(10, 7, 80).Open();
  s.edits.PM_DeleteMidiEventClick({1});
  EXPECT_EQ(s.song.MidiData[0].CtrlArray[7].Value, 80);
  EXPECT_EQ(s.song.FirstControllers[0][7], s.Event(1, 1));
  EXPECT_TRUE(s.WasTold("first values"));
  s.edits.PM_UndoClick();
  EXPECT_EQ(s.song.MidiData[0].CtrlArray[7].Value, 90);
}

TEST(EventDelete, ATempoTakesItsTimesAlong) {
  RowBench s;
  s.Ctrl(480, 7, 1).Open(0);
  s.Edit(1, Value2Column, "60");
  s.edits.PM_DeleteMidiEventClick({1});
  EXPECT_EQ(s.Event(1, 1)->TimePosition, 500);
  s.edits.PM_UndoClick();
  EXPECT_EQ(s.Event(1, 1)->TimePosition, 1000);
}

TEST(EventDelete, ThousandsOfRowsGoAndComeBackAtOnce) {
  RowBench s;
  for (int n = 0; n < 3000; ++n) s.Note(n * 10, n * 10 + 15, 60 + n % 3).Ctrl(n * 10 + 5, 7, n % 128);
  for (TMyTrack& track : s.song.MidiTrack) SortByPosition(track);
  s.Open();
  const Bytes before = s.Saved();
  std::vector<std::int32_t> rows;
  for (std::int32_t row = 2; row <= s.rows.Events(); row += 2) rows.push_back(row);
  EXPECT_EQ(s.edits.PM_DeleteMidiEventClick(rows), static_cast<std::int32_t>(rows.size()));
  EXPECT_EQ(s.rows.Events(), 3000);
  EXPECT_TRUE(CheckSong(s.song).empty());
  s.edits.PM_UndoClick();
  EXPECT_EQ(s.Saved(), before);
  EXPECT_EQ(s.rows.Events(), 6000);
}

TEST(EventDelete, WhatWasDeletedIsFreedWhenAnotherEditBegins) {
  RowBench s;
  s.Note(0, 480, 60).Ctrl(600, 7, 99).Open();
  const std::size_t live = s.song.Pool.Live();
  s.edits.PM_DeleteMidiEventClick({1});
  EXPECT_EQ(s.song.Pool.Live(), live);
  s.Edit(1, Value2Column, "1");
  EXPECT_EQ(s.song.Pool.Live(), live - 2);
}

}  // namespace

}  // namespace Sonarello
