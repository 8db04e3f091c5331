// Edits of cells: which can be edited, what is understood, what happens then.
#include <gmock/gmock.h>

#include "editors/EditorBench.h"

namespace Sonarello {

namespace {

using TTexts = std::vector<std::string>;

struct CellsBench : EditorBench {
  CellsBench() {
    NewTrack().Tempo(0, 500'000).Sign(0, 4, 2);
    NewTrack();
  }
  ~CellsBench() { EXPECT_TRUE(CheckSong(song).empty()) << CheckSong(song).front(); }
  CellsBench(const CellsBench&) = delete;
  CellsBench& operator=(const CellsBench&) = delete;
  [[nodiscard]] TTexts Ticks() { return Events(1); }
};

// --- What may be edited

TEST(EventCells, EachKindHasItsEditors) {
  CellsBench s;
  s.Note(0, 10, 60).Program(20, 1).Ctrl(30, 7, 1);
  for (const Status status : {KeyAftertouch, ChannelAftertouch, PitchBend})
    s.Put(NewChannelEvent(s.song.Pool, status, 1, 1, 40));
  s.Exclusive(50, {1, 0xF7}).Words(60, 1, "x").Data(70, 0x59, {0, 0}).Open();
  const std::vector<std::string> editable = {"13567", "135", "1357", "13", "13",
                                             "136",   "17",  "157",  "157"};
  for (std::size_t n = 0; n < editable.size(); ++n) {
    const auto row = static_cast<std::int32_t>(n) + 1;
    std::string columns;
    for (int column = 0; column < EventColumnCount; ++column)
      if (!s.edits.GetCellReadOnly(column, row)) columns += std::to_string(column);
    EXPECT_EQ(columns, editable[n]) << s.Cell(row, KindColumn);
  }
  EXPECT_TRUE(s.edits.GetCellReadOnly(PositionColumn, 0));
  EXPECT_TRUE(s.edits.GetCellReadOnly(PositionColumn, 10));
}

TEST(EventCells, ListsOfferWhatCanBeChosen) {
  CellsBench s;
  s.Note(0, 10, 60).Ctrl(30, 7, 1).Ctrl(31, 64, 0).Words(60, 5, "x").Data(70, 0x59, {1, 0}).Open();
  EXPECT_EQ(s.edits.GetCellEditorType(ChannelColumn, 1).Items.size(), 16U);
  const TCellEditing key = s.edits.GetCellEditorType(Value1Column, 1);
  EXPECT_EQ(key.Items.size(), 128U);
  EXPECT_EQ(key.Text, "C3");
  const TCellEditing controller = s.edits.GetCellEditorType(Value1Column, 2);
  EXPECT_EQ(controller.Items.size(), NamedControllers().size());
  EXPECT_EQ(controller.Text, "Volume");
  EXPECT_EQ(s.edits.GetCellEditorType(Value2Column, 2).Editor, TCellEditor::Text);
  EXPECT_EQ(s.edits.GetCellEditorType(Value2Column, 3).Items, (TTexts{"0", "127"}));
  const TCellEditing type = s.edits.GetCellEditorType(Value1Column, 4);
  EXPECT_EQ(type.Items,
            (TTexts{"Text", "Copyright info", "Track name", "Instrument name", "Lyrics", "Marker",
                    "Cue Point", "Program Name", "Device Name", "Miditemp MP11 Meta", "Tempo",
                    "Time signature", "Key signature", "XF chord"}));
  EXPECT_EQ(type.Text, "Lyrics");
  EXPECT_EQ(s.edits.GetCellEditorType(Value2Column, 5).Items.size(), 30U);
}

TEST(EventCells, AnUnchangedTextChangesNothing) {
  CellsBench s;
  s.Ctrl(30, 7, 1).Open();
  EXPECT_FALSE(s.Edit(1, Value2Column, "1").Applied);
  EXPECT_FALSE(s.edits.CanUndo());
  EXPECT_EQ(s.edits.EditOnRow[static_cast<std::size_t>(TEventEdit::CtrlValue)], 0);
  s.rows.Showing = false;
  EXPECT_FALSE(s.edits.CellEditDone(Value2Column, 1, "5").Applied);
  EXPECT_EQ(s.Event(1, 1)->Value[1], 1);
}

TEST(EventCells, BanksAndProgramsAreWarnedOf) {
  CellsBench s;
  s.Ctrl(30, 0, 1).Program(40, 1).Ctrl(50, 7, 1).Open();
  const std::string start =
      "The controllers \"0\" and \"32\", together with the program change,\rform the sound selection. "
      "If you change one of these parameter,\rthe sound selection could be wrong!\r\r";
  s.edits.GetCellEditorType(PositionColumn, 1);
  EXPECT_EQ(s.LastMessage(), start +
                                 "Change the position only if you know exactly what you are "
                                 "doing,\relse press ESC.");
  s.edits.GetCellEditorType(ChannelColumn, 2);
  EXPECT_EQ(s.LastMessage(), start +
                                 "Change the midi channel only if you know exactly what you are "
                                 "doing,\relse press ESC.");
  s.messages.Shown.clear();
  s.edits.GetCellEditorType(PositionColumn, 3);
  s.edits.GetCellEditorType(Value2Column, 1);
  EXPECT_TRUE(s.messages.Shown.empty());
  s.Edit(1, Value2Column, "5");
  EXPECT_EQ(s.LastMessage(), start + "Leave the change only if you know exactly what you are doing.");
  const InGerman german;
  s.Edit(2, Value1Column, "7");
  EXPECT_EQ(s.LastMessage(),
            "Die Controller \"0\" und \"32\", zusammen mit dem Programm-Wechsel\rbilden die "
            "Sound-Auswahl. Wenn Sie einen dieser Parameter ändern\rstimmt, unter Umständen, die "
            "Sound-Auswahl nicht mehr!\r\rBelassen Sie die Änderung nur wenn Sie genau wissen was Sie "
            "tun.");
}

TEST(EventCells, ARowWhoseEventIsGoneIsTold) {
  CellsBench s;
  s.Ctrl(0, 7, 1).Ctrl(5, 7, 2).Open();
  s.edits.GetCellEditorType(Value2Column, 2);
  Remove(s.song, s.Track(1), s.Event(1, 1));
  const TEditResult result = s.edits.CellEditDone(Value2Column, 2, "9");
  EXPECT_FALSE(result.Applied);
  EXPECT_EQ(result.Text, "2");
  EXPECT_EQ(s.LastMessage(), "Error searching for midi event to change the value of controller.");
}

// --- Positions

TEST(EventCells, APositionIsReadInItsShortForms) {
  CellsBench s;
  s.Ctrl(0, 7, 1).Open(1, 40'000);
  EXPECT_EQ(s.Edit(1, PositionColumn, "12").Text, "012.01.000");
  EXPECT_EQ(s.Edit(1, PositionColumn, "2:3:100").Text, "002.03.100");
  EXPECT_EQ(s.Edit(1, PositionColumn, "2:3.").Text, "002.03.000");
  EXPECT_EQ(s.Edit(1, PositionColumn, "3.2").Text, "003.02.000");
  EXPECT_EQ(s.Edit(1, PositionColumn, "0.0.5").Text, "001.01.005");
  EXPECT_EQ(s.Event(1, 1)->TimePosition, 5);
}

TEST(EventCells, APositionThatIsNoneKeepsTheOldText) {
  CellsBench s;
  s.Ctrl(480, 7, 1).Open(1, 40'000);
  for (const char* text : {"", "x", "1.x.0", "-1.1.0", "1.1.-3", ".2.3", "1.2.3.4", "999999999999"}) {
    const TEditResult result = s.Edit(1, PositionColumn, text);
    EXPECT_FALSE(result.Applied) << text;
    EXPECT_EQ(result.Text, "001.02.000");
    EXPECT_FALSE(result.Status.empty());
  }
}

TEST(EventCells, EachLimitOfAPositionHasItsMessage) {
  CellsBench s;
  s.Ctrl(480, 7, 1).Open(1, 3830);  // ends at 003.01.000
  s.Edit(1, PositionColumn, "4.1.0");
  EXPECT_EQ(s.LastMessage(),
            "Position not valid: measures greater than 3 are not allowed. Please enter again!");
  s.Edit(1, PositionColumn, "1.5.0");
  EXPECT_EQ(s.LastMessage(),
            "Position not valid: beats greater than 4 are not allowed. Please enter again!");
  s.Edit(1, PositionColumn, "1.1.481");
  EXPECT_EQ(s.LastMessage(),
            "Position not valid: ticks greater than 480 are not allowed. Please enter again!");
  s.Edit(1, PositionColumn, "3.2.0");
  EXPECT_EQ(s.LastMessage(), "Position greater than 003.01.000 is not allowed. Please enter again!");
  EXPECT_EQ(s.Edit(1, PositionColumn, "1.1.480").Text, "001.02.000");
  const InGerman german;
  s.Edit(1, PositionColumn, "4.1.0");
  EXPECT_EQ(s.LastMessage(),
            "Position ungültig: Takt darf nicht grösser als 3 sein. Bitte erneut eingeben!");
  s.Edit(1, PositionColumn, "1.5.0");
  EXPECT_EQ(s.LastMessage(),
            "Position ungültig: Schlag darf nicht grösser als 4 sein. Bitte erneut eingeben!");
  s.Edit(1, PositionColumn, "1.1.500");
  EXPECT_EQ(s.LastMessage(),
            "Position ungültig: Ticks darf nicht grösser als 480 sein. Bitte erneut eingeben!");
  s.Edit(1, PositionColumn, "3.4.0");
  EXPECT_EQ(s.LastMessage(), "Position darf nicht grösser als 003.01.000 sein. Bitte erneut eingeben!");
}

TEST(EventCells, InEighthsATickReachesToHalfAQuarter) {
  CellsBench s;
  s.song.MidiTrack[0].TrkLastEvent->Meta = Sonarello::Meta(Bytes{6, 3, 24, 8});
  s.Ctrl(0, 7, 1).Open(1, 9000);
  s.Edit(1, PositionColumn, "1.1.241");
  EXPECT_NE(s.LastMessage().find("ticks greater than 240"), std::string::npos);
  EXPECT_EQ(s.Edit(1, PositionColumn, "1.6.239").Text, "001.06.239");
}

TEST(EventCells, AnEventGoesBehindAllOfItsTick) {
  CellsBench s;
  s.Ctrl(0, 7, 1).Ctrl(480, 10, 2).Ctrl(480, 11, 3).Ctrl(960, 1, 4).Open();
  EXPECT_EQ(s.Edit(1, PositionColumn, "1.2.0").Row, 3);
  EXPECT_EQ(s.Ticks(), (TTexts{"ctrl 10 @480", "ctrl 11 @480", "ctrl 7 @480", "ctrl 1 @960"}));
  EXPECT_TRUE(s.WasTold("changed"));
}

TEST(EventCells, AProgramTakesItsBanksAlong) {
  CellsBench s;
  s.Ctrl(100, 0, 1).Ctrl(200, 7, 9).Ctrl(240, 32, 2).Program(300, 3).Open(1, 9000);
  s.Edit(4, PositionColumn, "2.1.0");
  EXPECT_EQ(s.Ticks(), (TTexts{"ctrl 7 @200", "ctrl 0 @1916", "ctrl 32 @1918", "meta @1920"}));
  EXPECT_EQ(s.rows.Index.Bank(4), (TBankMemory{1, 2}));
  // At the song's start there is no room in front: the order stays.
  s.Edit(4, PositionColumn, "1.1.1");
  EXPECT_EQ(s.Ticks(), (TTexts{"ctrl 0 @0", "ctrl 32 @0", "meta @1", "ctrl 7 @200"}));
}

TEST(EventCells, ANoteMovesWithItsEnd) {
  CellsBench s;
  s.Note(0, 300, 60).Ctrl(600, 7, 1).Open(1, 5000);
  EXPECT_EQ(s.Edit(1, PositionColumn, "2.1.0").Row, 2);
  EXPECT_EQ(s.Ticks(), (TTexts{"ctrl 7 @600", "on 60 @1920", "off 60 @2220"}));
  EXPECT_EQ(s.Cell(2, LengthColumn), "300");
}

TEST(EventCells, ANoteThatReachesBeyondTheSongEndsWithIt) {
  CellsBench s;
  s.Note(0, 900, 60).Open(1, 1910);
  s.Edit(1, PositionColumn, "1.4.0");
  EXPECT_EQ(s.Ticks(), (TTexts{"on 60 @1440", "off 60 @1920"}));
}

TEST(EventCells, ANoteIsCutInFrontOfTheNextEqualOne) {
  CellsBench s;
  s.Note(0, 480, 60).Note(1200, 1400, 60).Open(1, 5000);
  s.Edit(1, PositionColumn, "1.3.0");
  EXPECT_EQ(s.Ticks(), (TTexts{"on 60 @960", "off 60 @1199", "on 60 @1200", "off 60 @1400"}));
  EXPECT_EQ(s.Cell(1, LengthColumn), "239");
  EXPECT_EQ(s.Event(1, 2)->TimePosition, s.Event(1, 3)->TimePosition - 1);
  EXPECT_EQ(s.LastMessage(),
            "Another note starts at \"001.03.240\", therefor the note will be shortened!");
  const InGerman german;
  s.Edit(1, LengthColumn, "400");
  EXPECT_EQ(s.LastMessage(),
            "Eine andere gleiche Note fängt bei \"001.03.240\", daher wurde diese Note verküzt!");
}

TEST(EventCells, ANoteWithoutEndStaysWhereItIs) {
  CellsBench s;
  s.On(0, 60).Open(1, 5000);
  EXPECT_FALSE(s.Edit(1, PositionColumn, "2.1.0").Applied);
  EXPECT_EQ(s.LastMessage(), "Error searching for midi event to change the position of note.");
  EXPECT_FALSE(s.Edit(1, LengthColumn, "100").Applied);
  EXPECT_EQ(s.LastMessage(), "Error searching for midi event to change the note length.");
  EXPECT_EQ(s.Ticks(), (TTexts{"on 60 @0"}));
}

TEST(EventCells, WhatIsDueNextStaysDueWhenAnotherEventMoves) {
  CellsBench s;
  s.Ctrl(0, 7, 1).Ctrl(480, 10, 2).Open(1, 5000);
  s.playing = true;
  s.Track(1).TrkPlayEvent = s.Event(1, 1);
  EXPECT_TRUE(s.Edit(1, PositionColumn, "1.4.0").Applied);
  EXPECT_EQ(s.Track(1).TrkPlayEvent, s.Event(1, 1));
  EXPECT_EQ(s.Event(1, 1)->Value[0], 10);
}

TEST(EventCells, ASoundingNoteEndsWhenItIsMovedDuringPlayback) {
  CellsBench s;
  s.Note(0, 480, 60, 3).Open(1, 5000);
  s.Edit(1, Value2Column, "50");
  EXPECT_FALSE(s.WasTold("end notes of 2"));
  s.playing = true;
  s.Edit(1, PositionColumn, "1.4.0");
  EXPECT_TRUE(s.WasTold("end notes of 2"));
}

// --- Length

TEST(EventCells, ALengthHasItsLimits) {
  CellsBench s;
  s.Note(0, 480, 60).Open(1, 989);
  EXPECT_FALSE(s.Edit(1, LengthColumn, "1").Applied);
  EXPECT_EQ(s.LastMessage(), "Note length too short!");
  EXPECT_EQ(s.Edit(1, LengthColumn, "2").Text, "2");
  EXPECT_EQ(s.Edit(1, LengthColumn, "5000").Text, "998");
  EXPECT_EQ(s.LastMessage(), "Note length cut to fit the song length!");
  EXPECT_FALSE(s.Edit(1, LengthColumn, "long").Applied);
  const InGerman german;
  s.Edit(1, LengthColumn, "-7");
  EXPECT_EQ(s.LastMessage(), "Notenlänge zu kurz!");
  s.Edit(1, LengthColumn, "999999999999");
  EXPECT_EQ(s.LastMessage(), "Notenlänge zu lang, daher wurde diese gekürzt!");
}

// --- Values

TEST(EventCells, KeyChannelAndVelocityOfANote) {
  CellsBench s;
  s.Note(0, 480, 60).Note(500, 600, 62).Open();
  EXPECT_EQ(s.Edit(1, Value1Column, "D3").Text, "D3");
  EXPECT_EQ(s.Edit(1, ChannelColumn, "9").Text, "9");
  EXPECT_EQ(s.Edit(1, Value2Column, "5").Text, "5");
  EXPECT_EQ(s.Ticks(), (TTexts{"on 62 ch9 @0", "off 62 ch9 @480", "on 62 @500", "off 62 @600"}));
  EXPECT_EQ(s.Cell(1, LengthColumn), "480");
  EXPECT_EQ(s.Track(1).TrkMidiIndex, 16);
  EXPECT_EQ(s.song.MidiData[8].ActiveNotes, 1);
  EXPECT_EQ(s.song.MidiData[0].ActiveNotes, 1);
  EXPECT_TRUE(s.song.MidiData[8].Active);
  for (const char* text : {"0", "128", "loud", ""}) EXPECT_FALSE(s.Edit(1, Value2Column, text).Applied);
  for (const char* text : {"0", "17", "x"}) EXPECT_FALSE(s.Edit(1, ChannelColumn, text).Applied);
  EXPECT_FALSE(s.Edit(1, Value1Column, "J3").Applied);
}

TEST(EventCells, TheChosenChannelIsTheOneThatIsShownThen) {
  CellsBench s;
  s.Ctrl(0, 7, 1, 3).Open();
  s.song.MidiData[0].MidiChannel = 4;
  s.song.MidiData[4].MidiChannel = 0;
  EXPECT_EQ(s.Edit(1, ChannelColumn, "1").Text, "1");
  EXPECT_EQ(s.Event(1, 1)->Channel(), 4);
}

TEST(EventCells, APitchBendHasItsLimits) {
  CellsBench s;
  s.Put(NewChannelEvent(s.song.Pool, PitchBend, 0, 64, 0)).Finish();
  s.Open();
  EXPECT_FALSE(s.Edit(1, LengthColumn, "8192").Applied);
  EXPECT_EQ(s.Edit(1, LengthColumn, "8191").Text, "8191");
  EXPECT_EQ(s.Event(1, 1)->Value, (std::array<std::uint8_t, 2>{127, 127}));
  EXPECT_EQ(s.Edit(1, LengthColumn, "-8192").Text, "-8192");
  EXPECT_FALSE(s.Edit(1, LengthColumn, "-8193").Applied);
}

TEST(EventCells, AControllerTakesASensibleValueWithItsName) {
  CellsBench s;
  s.Ctrl(0, 7, 99).Open();
  EXPECT_EQ(s.Edit(1, Value1Column, "Panorama").Text, "10");
  EXPECT_EQ(s.Cell(1, Value2Column), "64");
  s.Edit(1, Value1Column, "Expression");
  EXPECT_EQ(s.Cell(1, Value2Column), "127");
  s.Edit(1, Value1Column, "Modulation");
  EXPECT_EQ(s.Cell(1, Value2Column), "0");
  s.Edit(1, Value2Column, "55");
  s.Edit(1, Value1Column, "Volume");
  EXPECT_EQ(s.Cell(1, Value2Column), "55");
  EXPECT_EQ(s.song.FirstControllers[0][7], s.Event(1, 1));
  EXPECT_EQ(s.song.FirstControllers[0][1], nullptr);
  EXPECT_EQ(s.Edit(1, Value1Column, "3").Text, "3");
  EXPECT_FALSE(s.Edit(1, Value1Column, "128").Applied);
  s.Edit(1, Value1Column, "Bank LSB");
  EXPECT_EQ(s.Cell(1, Value2Column), "0");
  EXPECT_NE(s.LastMessage().find("Leave the change"), std::string::npos);
}

TEST(EventCells, AValueInFrontOfTheFirstNoteIsTheChannelsFirstValue) {
  CellsBench s;
  s.Ctrl(0, 7, 99, 2).Ctrl(20, 7, 50, 2).Ctrl(900, 7, 60, 2).Open();
  s.song.TickPositionOfFirstNote = 480;
  s.Edit(2, Value2Column, "51");
  EXPECT_EQ(s.song.MidiData[1].CtrlArray[7].Value, 51);
  EXPECT_TRUE(s.WasTold("controller 7 of 1"));
  s.Edit(3, Value2Column, "61");
  EXPECT_EQ(s.song.MidiData[1].CtrlArray[7].Value, 51);
  EXPECT_FALSE(s.Edit(3, Value2Column, "128").Applied);
}

TEST(EventCells, AProgramCountsFromOne) {
  CellsBench s;
  s.Program(0, 4).Open();
  EXPECT_EQ(s.Edit(1, Value1Column, "128").Text, "128");
  EXPECT_EQ(s.Event(1, 1)->Value[0], 127);
  EXPECT_EQ(s.song.MidiData[0].Patch, 127);
  EXPECT_FALSE(s.Edit(1, Value1Column, "0").Applied);
  EXPECT_FALSE(s.Edit(1, Value1Column, "129").Applied);
}

// --- Undo

TEST(EventCells, TheLastEditCanBeTakenBackOnce) {
  CellsBench s;
  s.Ctrl(0, 7, 1).Ctrl(480, 10, 2).Open(1, 5000);
  EXPECT_EQ(s.edits.UndoText(), "Undo");
  const Bytes before = s.Saved();
  s.Edit(1, PositionColumn, "1.4.0");
  EXPECT_EQ(s.edits.UndoText(), "Undo - change position");
  EXPECT_EQ(s.edits.PM_UndoClick(), 1);
  EXPECT_EQ(s.Saved(), before);
  EXPECT_FALSE(s.edits.CanUndo());
  EXPECT_EQ(s.edits.PM_UndoClick(), 0);
}

TEST(EventCells, AnUndoOfAnotherTrackPairsItsNotes) {
  CellsBench s;
  s.Note(0, 480, 60).Note(1200, 1400, 60).NewTrack().Ctrl(0, 7, 1).Open(1, 5000);
  s.Edit(1, PositionColumn, "1.3.0");
  s.rows.CB_TrackListChange(2);
  s.edits.PM_UndoClick();
  EXPECT_EQ(s.Ticks(), (TTexts{"on 60 @0", "off 60 @480", "on 60 @1200", "off 60 @1400"}));
  EXPECT_EQ(s.Event(1, 1)->NoteOffEvent, s.Event(1, 2));
  EXPECT_TRUE(s.rows.Index.IsCurrent());
}

TEST(EventCells, AnUndoStopsThePlayer) {
  CellsBench s;
  s.Ctrl(0, 7, 1).Open();
  s.Edit(1, Value2Column, "5");
  s.playing = true;
  s.edits.PM_UndoClick();
  EXPECT_TRUE(s.WasTold("stop"));
  EXPECT_EQ(s.Event(1, 1)->Value[1], 1);
}

TEST(EventCells, WhatOthersChangedMeanwhileCannotBeTakenBack) {
  CellsBench s;
  s.Ctrl(0, 7, 1).Open();
  s.Edit(1, Value2Column, "5");
  s.edits.ClearBackupedData();
  EXPECT_FALSE(s.edits.CanUndo());
}

}  // namespace

}  // namespace Sonarello
