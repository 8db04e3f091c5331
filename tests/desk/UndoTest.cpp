#include "desk/Undo.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <map>
#include <random>

#include "core/MidiFileWriter.h"
#include "core/TimeMap.h"
#include "helpers/PlayerBench.h"
#include "helpers/SongBuilder.h"
#include "playback/LiveTempo.h"

namespace Sonarello {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

/// A song with an undo whose hooks write down that they were called.
struct UndoBench : TestSong {
  UndoBench() {
    const auto note = [this](const char* name) { return [this, name] { Calls.push_back(name); }; };
    undo.Hooks.IsPlaying = [this] { return Playing; };
    undo.Hooks.StopButtonClick = [this] {
      Calls.push_back("stop");
      Playing = false;
    };
    undo.Hooks.TempoOffset = [this] { return Offset; };
    undo.Hooks.MoveToStart = note("start");
    undo.Hooks.Transpose = note("transpose");
    undo.Hooks.ReadAndShowLyrics = note("lyrics");
    undo.Hooks.UpdateKeyEditor = note("keys");
    undo.Hooks.UpdateEventList = note("list");
    undo.Hooks.ResetLyrics = note("reset");
    undo.Hooks.Changed = note("changed");
    undo.Hooks.MenuChanged = [this] { Menu.push_back(undo.MenuText()); };
  }
  /// Three tracks with notes, values, a tempo change, names and a sysex, as the open pipeline leaves
  /// them.
  UndoBench& Fill() {
    NewTrack().Sign(0, 3, 2).Tempo(0, 500000).Tempo(960, 400000);
    const std::uint8_t key[] = {2, 0};
    Put(NewMeta(song.Pool, MetaKeySignature, key, 970));
    const PtrMidiEvent signature = song.MidiTrack[0].TrkLastEvent;
    NewTrack().Put(NewMeta(song.Pool, MetaTrackName, "Piano", 0));
    song.SongNameEvent = song.MidiTrack[1].TrkLastEvent;
    Put(NewChannelEvent(song.Pool, 0xC0, 4, 0, 10)).Ctrl(11, 7, 100).Ctrl(12, 0, 8);
    for (int n = 0; n < 8; ++n) On(480 + n * 240, 60 + n).Off(600 + n * 240, 60 + n);
    NewTrack().Put(NewChannelEvent(song.Pool, 0xC9, 1, 0, 5)).Ctrl(6, 7, 90, 10);
    const std::uint8_t reset[] = {0x7E, 0x7F, 0x09, 0x01, 0xF7};
    Put(NewSysex(song.Pool, reset, 7));
    song.RolandDrumSysexArray[9] = song.MidiTrack[2].TrkLastEvent;
    for (int n = 0; n < 8; ++n) On(480 + n * 120, 36, 10).Off(500 + n * 120, 36, 10);
    Finish().Map();
    for (std::size_t t = 1; t < 3; ++t) {
      song.MidiTrack[t].TrkMidiIndex = t == 1 ? 0 : 9;
      song.MidiData[t == 1 ? 0 : 9].Active = true;
    }
    song.KeySignArray.resize(3);
    song.KeySignArray[0] = {1, {{signature, 2, 0}}};
    song.CountInArray[9].Notes[0] = Event(2, 4);
    for (TMyTrack& track : song.MidiTrack)
      track.TrkPlayEvent = track.TrkLoopStart = track.TrkFirstEvent;
    song.MidiFileLoaded = true;
    functions.UpdateTimeZoneData();
    functions.SetFirstValues();
    Pair();
    return *this;
  }
  [[nodiscard]] std::vector<std::uint8_t> Saved() {
    return MidiFileWriter(song, options, routes, messages, hooks).Encode("song.mid", 1);
  }
  /// Everything that a song is: its events field by field, who points at which of them, its tables.
  [[nodiscard]] std::string Picture();

  SongGate gate;
  TUndo undo{song, functions, messages, gate};
  std::vector<std::string> Calls;
  std::vector<std::string> Menu;
  bool Playing = false;
  int Offset = 0;
};

std::string UndoBench::Picture() {
  std::map<const TypMidiEvent*, std::string> places{{nullptr, "-"}};
  for (int t = 0; t < song.NumberOfSourceTracks; ++t) {
    int n = 0;
    ForEachEvent(Track(t),
                 [&](PtrMidiEvent e) { places[e] = std::to_string(t) + "/" + std::to_string(n++); });
  }
  std::string text;
  const auto put = [&](auto... values) { ((text += std::to_string(values) + " "), ...); };
  for (int t = 0; t < song.NumberOfSourceTracks; ++t) {
    const TMyTrack& track = Track(t);
    text += "\ntrack " + track.TrkName + " " + places.at(track.TrkPlayEvent) + " " +
            places.at(track.TrkLoopStart) + " ";
    put(track.TrkDelay, track.TrkEventCounter, track.TrkMidiIndex, track.TrkPatchNumber,
        track.TrkIgnore);
    ForEachEvent(track, [&](PtrMidiEvent e) {
      text += "\n";
      put(e->Position, e->TimePosition, e->DLength, e->Command, e->DType, e->MType, e->Value[0],
          e->Value[1], e->ValueOrg[0], e->ValueOrg[1], e->Selected);
      text += places.at(e->NoteOnEvent) + places.at(e->NoteOffEvent);
      for (const std::uint8_t byte : e->Meta.Bytes()) put(byte);
    });
  }
  text += "\n";
  song.ForEachReference([&](PtrMidiEvent& e) { text += places.at(e) + " "; });
  for (const TTimeZone& zone : song.TimeZone)
    put(zone.SongPosition, zone.Measure, zone.Beat, zone.Tempo, zone.TempoLongInt, zone.Time);
  for (const std::uint16_t tempo : song.BackupTempo) put(tempo);
  for (const TKeySignArray& keys : song.KeySignArray) put(keys.Elements, keys.ValArray.size());
  for (const TMidiChannelData& channel : song.MidiData)
    put(channel.Active, channel.ActiveNotes, channel.Patch);
  put(song.MaxSongPosition, song.SongLength, song.TickPositionOfFirstNote, song.SysexTrack,
      song.XF_Track, song.XF_ChordsArrayElements, song.CountInIdx);
  return text;
}

/// Moves, removes, changes and inserts events at random, on any track.
void EditAtRandom(UndoBench& b, std::mt19937& random) {
  const auto upTo = [&](std::size_t n) { return static_cast<int>(random() % n); };
  for (int n = 0; n < 30; ++n) {
    TMyTrack& track = b.Track(upTo(static_cast<std::size_t>(b.song.NumberOfSourceTracks)));
    std::vector<PtrMidiEvent> events;
    for (PtrMidiEvent e = track.TrkFirstEvent->NextEvent; !e->IsEndOfTrack(); e = e->NextEvent)
      events.push_back(e);
    const int what = upTo(5);
    if (what == 0 || events.empty()) {
      InsertByPosition(track, NewChannelEvent(b.song.Pool, 0xB3, 7, 1, upTo(2000)));
      continue;
    }
    const PtrMidiEvent e = events[static_cast<std::size_t>(upTo(events.size()))];
    if (what == 1) Remove(b.song, track, e);
    if (what == 2) MoveTo(track, e, upTo(2000));
    if (what == 3 && e->IsChannelEvent()) e->Value[0] = static_cast<std::uint8_t>(upTo(128));
    if (what == 4 && !e->Meta.empty()) e->Meta.Mutable()[0] ^= 1;
  }
}

/// What a tool may do to a song as a whole: another length, tracks more or less.
void ChangeTheWhole(UndoBench& b, std::mt19937& random) {
  Song& song = b.song;
  if (random() % 2 == 0) {
    b.NewTrack();
    song.KeySignArray.resize(song.MidiTrack.size());
    EndTrack(song.Pool, song.MidiTrack.back(), song.MaxSongPosition);
  }
  song.MaxSongPosition += static_cast<std::int32_t>(random() % 5000);
  for (const TMyTrack& track : song.MidiTrack) track.TrkLastEvent->Position = song.MaxSongPosition;
  song.TickPositionOfFirstNote += 7;
  song.MidiData[3].Active = true;
  song.MidiData[0].ActiveNotes = 99;
  song.MidiTrack[1].TrkName = "other";
  song.MidiTrack[1].TrkDelay = 5;
  song.SysexTrack = 2;
  song.XF_ChordsArrayElements = 4;
  b.functions.UpdateTimeZoneData();
  b.functions.SetFirstValues();
}

TEST(Undo, AToolAndItsUndoGiveBackTheIdenticalSong) {
  for (unsigned seed = 1; seed <= 60; ++seed) {
    SCOPED_TRACE(seed);
    std::mt19937 random(seed);
    UndoBench b;
    b.Fill();
    const std::string picture = b.Picture();
    const auto saved = b.Saved();
    const std::size_t live = b.song.Pool.Live();
    b.undo.BeginRangeCommand(TUndoKind::CopyRange, "Bereich kopieren");
    EXPECT_EQ(b.Picture(), picture);
    EXPECT_EQ(b.song.Pool.Live(), 2 * live);
    EditAtRandom(b, random);
    ChangeTheWhole(b, random);
    ASSERT_THAT(CheckSong(b.song), IsEmpty());
    EXPECT_NE(b.Picture(), picture);
    ASSERT_TRUE(b.undo.Undo());
    EXPECT_THAT(CheckSong(b.song), IsEmpty());
    EXPECT_EQ(b.Picture(), picture);
    EXPECT_EQ(b.Saved(), saved);
    EXPECT_EQ(b.song.Pool.Live(), live);
  }
}

TEST(Undo, ToolsAfterAnUndoWorkOnAWholeSong) {
  std::mt19937 random(3);
  UndoBench b;
  b.Fill();
  const std::string picture = b.Picture();
  for (int round = 0; round < 5; ++round) {
    b.undo.BeginRangeCommand(TUndoKind::WholeSong, "x");
    EditAtRandom(b, random);
    b.undo.BeginRangeCommand(TUndoKind::WholeSong, "y");
    b.undo.Discard();
    ASSERT_FALSE(b.undo.Undo());
  }
  b.song.ClearMidiMemory();
  EXPECT_EQ(b.song.Pool.Live(), 0U);
}

TEST(Undo, AnUndoneRemovalOfTracksBringsThemBack) {
  UndoBench b;
  b.Fill();
  const std::string picture = b.Picture();
  b.undo.BeginRangeCommand(TUndoKind::WholeSong, "Spur löschen");
  std::vector<TRemoval> all;
  for (PtrMidiEvent e = b.Track(2).TrkFirstEvent->NextEvent; e != nullptr; e = e->NextEvent)
    all.push_back({&b.Track(2), e});
  RemoveBatch(b.song, all);
  b.song.Pool.Release(b.Track(2).TrkFirstEvent);
  b.song.MidiTrack.pop_back();
  b.song.KeySignArray.pop_back();
  b.song.NumberOfSourceTracks = 2;
  b.functions.SetFirstValues();
  ASSERT_THAT(CheckSong(b.song), IsEmpty());
  ASSERT_TRUE(b.undo.Undo());
  EXPECT_THAT(CheckSong(b.song), IsEmpty());
  EXPECT_EQ(b.Picture(), picture);
}

TEST(Undo, ReferencesPointIntoTheSongThatCameBack) {
  UndoBench b;
  b.Fill();
  b.undo.BeginRangeCommand(TUndoKind::DeleteRange, "x");
  Remove(b.song, b.Track(1), b.song.SongNameEvent);
  Remove(b.song, b.Track(2), b.song.RolandDrumSysexArray[9]);
  Remove(b.song, b.Track(0), b.song.KeySignArray[0].ValArray[0].MidiEvent);
  ASSERT_TRUE(b.undo.Undo());
  EXPECT_EQ(b.song.SongNameEvent, b.Event(1, 1));
  EXPECT_EQ(b.song.RolandDrumSysexArray[9]->Command, Sysex);
  EXPECT_TRUE(b.song.KeySignArray[0].ValArray[0].MidiEvent->IsMeta(MetaKeySignature));
  EXPECT_EQ(b.song.FirstPatches[0], b.Event(1, 2));
  EXPECT_EQ(b.song.FirstControllers[0][7], b.Event(1, 3));
  EXPECT_EQ(b.song.MidiData[0].CtrlArray[7].Event, b.Event(1, 3));
  EXPECT_EQ(b.song.MidiData[0].PatchEvent, b.Event(1, 2));
  EXPECT_EQ(b.song.CountInArray[9].Notes[0], b.Event(2, 4));
}

TEST(Undo, TheEffectMemoryIsLeftAlone) {
  UndoBench b;
  b.Fill();
  TMyTrack& effects = b.song.DSPTracks.GenosDSPTrack;
  BeginTrack(b.song.Pool, effects);
  EndTrack(b.song.Pool, effects, b.song.MaxSongPosition);
  const PtrMidiEvent head = effects.TrkFirstEvent;
  b.undo.BeginRangeCommand(TUndoKind::WholeSong, "x");
  ASSERT_TRUE(b.undo.Undo());
  EXPECT_EQ(effects.TrkFirstEvent, head);
  EXPECT_EQ(head->Command, MetaEvent);
}

TEST(Undo, NoMemoryLeavesSongMenuAndFormerBackupAsTheyWere) {
  UndoBench b;
  b.Fill();
  const std::string original = b.Picture();
  b.undo.BeginRangeCommand(TUndoKind::TransposeRange, "first");
  b.Track(1).TrkFirstEvent->NextEvent->NextEvent->Value[0] = 77;
  b.functions.SetFirstValues();
  const std::string changed = b.Picture();
  const std::size_t live = b.song.Pool.Live();
  std::size_t nodes = 0;
  for (const TMyTrack& track : b.song.MidiTrack)
    nodes += static_cast<std::size_t>(track.TrkEventCounter);
  b.Menu.clear();
  for (std::size_t n = 1; n <= nodes; ++n) {
    b.song.Pool.FailAt(static_cast<std::int64_t>(n));
    try {
      b.undo.BeginRangeCommand(TUndoKind::CopyRange, "second");
      ADD_FAILURE() << "node " << n;
    } catch (const EMidiError& error) {
      EXPECT_STREQ(error.what(), "Error allocating memory!");
    }
    b.song.Pool.FailAt(0);
    ASSERT_EQ(b.song.Pool.Live(), live);
    ASSERT_EQ(b.Picture(), changed);
  }
  EXPECT_EQ(b.undo.MenuText(), "Undo - first");
  EXPECT_EQ(b.undo.Tag(), TUndoKind::TransposeRange);
  EXPECT_THAT(b.Menu, IsEmpty());
  ASSERT_TRUE(b.undo.Undo());
  EXPECT_EQ(b.Picture(), original);
  InGerman german;
  b.song.Pool.FailAt(1);
  EXPECT_THROW(
      {
        try {
          b.undo.BeginRecording(1, 1);
        } catch (const EMidiError& error) {
          EXPECT_STREQ(error.what(), "Speicherzuordnungsfehler: Bitte mehr Speicher!");
          throw;
        }
      },
      EMidiError);
  b.song.Pool.FailAt(0);
  EXPECT_FALSE(b.undo.IsEnabled());
}

TEST(Undo, TheStepsComeInTheirOrder) {
  UndoBench b;
  b.Fill();
  b.undo.BeginRangeCommand(TUndoKind::DeleteRange, "delete range");
  b.Playing = true;
  b.Menu.clear();
  ASSERT_TRUE(b.undo.Undo());
  EXPECT_THAT(b.Calls, ElementsAre("stop", "start", "lyrics", "keys", "list", "reset", "changed"));
  EXPECT_THAT(b.messages.Asked, ElementsAre("Undo the command \"delete range\"?"));
  EXPECT_THAT(b.messages.Shown, IsEmpty());
  EXPECT_THAT(b.Menu, ElementsAre("Undo"));
}

TEST(Undo, StopsThePlayerEvenIfTheAnswerIsNo) {
  UndoBench b;
  b.Fill();
  b.undo.BeginRangeCommand(TUndoKind::DeleteRange, "x");
  b.Playing = true;
  b.messages.Answers = {false};
  const std::string picture = b.Picture();
  EXPECT_FALSE(b.undo.Undo());
  EXPECT_THAT(b.Calls, ElementsAre("stop"));
  EXPECT_EQ(b.Picture(), picture);
  EXPECT_TRUE(b.undo.IsEnabled());
  EXPECT_EQ(b.undo.MenuText(), "Undo - x");
}

TEST(Undo, TheMenuNamesTheCommandInBothLanguages) {
  UndoBench b;
  b.Fill();
  EXPECT_EQ(b.undo.MenuText(), "Undo");
  EXPECT_FALSE(b.undo.IsEnabled());
  EXPECT_EQ(b.undo.Tag(), TUndoKind::None);
  b.undo.BeginRecording(1, 3);
  EXPECT_EQ(b.undo.MenuText(), "Undo - Recording on midi channel 3");
  InGerman german;
  b.undo.Discard();
  EXPECT_EQ(b.undo.MenuText(), "Rückgängig");
  b.undo.BeginRecording(1, 3);
  EXPECT_EQ(b.undo.MenuText(), "Rückgängig - Aufnahme auf MIDI Kanal 3");
  EXPECT_EQ(b.undo.CommandName(), "Aufnahme auf MIDI Kanal 3");
  EXPECT_EQ(b.undo.Question(),
            "Soll der Befehl \"Aufnahme auf MIDI Kanal 3\" rückgängig gemacht werden?");
  EXPECT_EQ(static_cast<int>(b.undo.Tag()), 5);
  b.undo.BeginRangeCommand(TUndoKind::CopyRange, "Bereich kopieren");
  EXPECT_EQ(b.undo.MenuText(), "Rückgängig - Bereich kopieren");
  EXPECT_EQ(static_cast<int>(b.undo.Tag()), 1);
}

TEST(Undo, IsNotOfferedTwice) {
  UndoBench b;
  b.Fill();
  b.undo.BeginRangeCommand(TUndoKind::CopyRange, "x");
  ASSERT_TRUE(b.undo.Undo());
  EXPECT_FALSE(b.undo.IsEnabled());
  b.Calls.clear();
  EXPECT_FALSE(b.undo.Undo());
  EXPECT_EQ(b.messages.Asked.size(), 1U);
  EXPECT_THAT(b.Calls, IsEmpty());
}

TEST(Undo, ASecondToolReplacesTheFirstOnesBackup) {
  UndoBench b;
  b.Fill();
  const std::size_t live = b.song.Pool.Live();
  b.undo.BeginRangeCommand(TUndoKind::CopyRange, "first");
  Remove(b.song, b.Track(1), b.Event(1, 2));
  b.functions.SetFirstValues();
  const std::string between = b.Picture();
  b.undo.BeginRangeCommand(TUndoKind::DeleteRange, "second");
  EXPECT_EQ(b.song.Pool.Live(), 2 * (live - 1));
  Remove(b.song, b.Track(1), b.Event(1, 2));
  ASSERT_TRUE(b.undo.Undo());
  EXPECT_EQ(b.Picture(), between);
}

TEST(Undo, ARecordingKeepsItsTrackOnly) {
  UndoBench b;
  b.Fill();
  const std::size_t live = b.song.Pool.Live();
  const std::string picture = b.Picture();
  b.undo.BeginRecording(1, 1);
  EXPECT_EQ(b.undo.RecBackupTrackIndex, 1);
  EXPECT_EQ(b.undo.RecBackupTrack.TrkEventCounter, b.Track(1).TrkEventCounter);
  EXPECT_THAT(b.undo.BackupMidiTrack, IsEmpty());
  InsertByPosition(b.Track(1), NewChannelEvent(b.song.Pool, 0x90, 50, 100, 700));
  Remove(b.song, b.Track(1), b.song.SongNameEvent);
  const PtrMidiEvent other = NewChannelEvent(b.song.Pool, 0xB9, 10, 1, 700);
  InsertByPosition(b.Track(2), other);
  ASSERT_TRUE(b.undo.Undo());
  EXPECT_EQ(b.song.SongNameEvent, b.Event(1, 1));
  EXPECT_THAT(CheckSong(b.song), IsEmpty());
  EXPECT_EQ(b.song.Pool.Live(), live + 1) << "what others changed meanwhile stays";
  Remove(b.song, b.Track(2), other);
  b.functions.SetFirstValues();
  EXPECT_EQ(b.Picture(), picture);
  EXPECT_EQ(b.undo.RecBackupTrackIndex, -1);
}

TEST(Undo, AReferenceThatARecordingMadeIsForgottenWithIt) {
  UndoBench b;
  b.Fill();
  b.undo.BeginRecording(1, 1);
  const PtrMidiEvent made = NewChannelEvent(b.song.Pool, 0xB0, 77, 1, 700);
  InsertByPosition(b.Track(1), made);
  b.song.PromptaRemoteCtrl00 = made;
  ASSERT_TRUE(b.undo.Undo());
  EXPECT_EQ(b.song.PromptaRemoteCtrl00, nullptr);
  EXPECT_THAT(CheckSong(b.song), IsEmpty());
}

TEST(Undo, ARecordingBeyondTheEndGivesTheOldLengthBack) {
  UndoBench b;
  b.Fill();
  const std::string picture = b.Picture();
  const std::int32_t end = b.song.MaxSongPosition;
  const auto lengthen = [&](std::int32_t to) {
    b.song.MaxSongPosition = to;
    for (const TMyTrack& track : b.song.MidiTrack) track.TrkLastEvent->Position = to;
  };
  b.undo.BeginRecording(1, 1);
  lengthen(end + 5000);
  InsertByPosition(b.Track(1), NewChannelEvent(b.song.Pool, 0xB0, 7, 1, end + 100));
  ASSERT_TRUE(b.undo.Undo());
  EXPECT_EQ(b.Picture(), picture);
  b.undo.BeginRecording(1, 1);
  lengthen(end + 5000);
  InsertByPosition(b.Track(2), NewChannelEvent(b.song.Pool, 0xB9, 7, 1, end + 300));
  ASSERT_TRUE(b.undo.Undo());
  EXPECT_EQ(b.song.MaxSongPosition, end + 300);
  EXPECT_THAT(CheckSong(b.song), IsEmpty());
}

TEST(Undo, ASongThatWasTransposedSinceIsTransposedAgain) {
  UndoBench b;
  b.Fill();
  b.undo.BeginRangeCommand(TUndoKind::CopyRange, "x");
  b.song.TransposeNew = 2;
  ASSERT_TRUE(b.undo.Undo());
  EXPECT_THAT(b.Calls, ElementsAre("start", "transpose", "lyrics", "keys", "list", "reset", "changed"));
  EXPECT_EQ(b.song.TransposeNew, 2);
  b.Calls.clear();
  b.undo.BeginRangeCommand(TUndoKind::CopyRange, "x");
  ASSERT_TRUE(b.undo.Undo());
  EXPECT_THAT(b.Calls, testing::Not(testing::Contains("transpose"))) << "it is what the backup holds";
  b.undo.BeginRangeCommand(TUndoKind::CopyRange, "x");
  b.song.ManualTransposeArray[4] = 1;
  ASSERT_TRUE(b.undo.Undo());
  EXPECT_THAT(b.Calls, testing::Contains("transpose"));
}

TEST(Undo, ATempoThatWasMovedSinceIsKept) {
  UndoBench b;
  b.Fill();
  b.Offset = 10;
  ApplyTempoOffset(b.song, b.functions, 10, TempoNumbering::Stopped);
  const std::string atTen = b.Picture();
  b.undo.BeginRangeCommand(TUndoKind::CopyRange, "x");
  ASSERT_TRUE(b.undo.Undo());
  EXPECT_EQ(b.Picture(), atTen);
  EXPECT_EQ(b.song.BackupTempo.front(), 120) << "the tempo without the offset is known";
  b.undo.BeginRangeCommand(TUndoKind::CopyRange, "x");
  ApplyTempoOffset(b.song, b.functions, -5, TempoNumbering::Stopped);
  const std::string atLess = b.Picture();
  b.Offset = -5;
  ASSERT_TRUE(b.undo.Undo());
  EXPECT_EQ(b.Picture(), atLess);
}

TEST(Undo, DeskSettingsOfTheMeantimeStay) {
  UndoBench b;
  b.Fill();
  b.song.NotesVelocities[0] = {.Minimum = 1, .Maximum = 90, .Mean = 40};
  b.undo.BeginRangeCommand(TUndoKind::CopyRange, "x");
  b.song.NotesVelocities[0] = {
      .Minimum = 5, .Maximum = 100, .Mean = 50, .Mapped = true, .NewMinimum = 20, .NewMaximum = 60};
  b.song.MidiData[0].Mute = true;
  b.song.VelocityDelta[0] = 4;
  ASSERT_TRUE(b.undo.Undo());
  const TNotesVelocities& velocities = b.song.NotesVelocities[0];
  EXPECT_EQ(velocities.Minimum, 1);
  EXPECT_EQ(velocities.Maximum, 90);
  EXPECT_EQ(velocities.Mean, 40);
  EXPECT_TRUE(velocities.Mapped);
  EXPECT_EQ(velocities.NewMaximum, 60);
  EXPECT_TRUE(b.song.MidiData[0].Mute);
  EXPECT_EQ(b.song.VelocityDelta[0], 4);
}

TEST(Undo, TracksThatAreHeldOutAreNotPaired) {
  UndoBench b;
  b.Fill();
  b.Track(2).TrkIgnore = true;
  ForEachEvent(b.Track(2), [](PtrMidiEvent e) { e->NoteOnEvent = e->NoteOffEvent = nullptr; });
  Remove(b.song, b.Track(2), b.Event(2, 5));
  b.functions.SetFirstValues();
  const std::string picture = b.Picture();
  b.undo.BeginRangeCommand(TUndoKind::CopyRange, "x");
  ASSERT_TRUE(b.undo.Undo());
  EXPECT_EQ(b.Picture(), picture);
  EXPECT_THAT(b.messages.Shown, IsEmpty());
}

TEST(Undo, NotesThatCannotBePairedAreToldOnce) {
  UndoBench b;
  b.NewTrack().NewTrack();
  for (int n = 0; n < 40; ++n) b.On(n, 60);
  b.NewTrack();
  for (int n = 0; n < 40; ++n) b.On(n, 61);
  b.Finish().Map();
  b.undo.BeginRangeCommand(TUndoKind::CopyRange, "x");
  ASSERT_TRUE(b.undo.Undo());
  EXPECT_THAT(b.messages.Shown, ElementsAre("Error processing the NoteOnOff pointers."));
  InGerman german;
  b.messages.Shown.clear();
  b.undo.BeginRangeCommand(TUndoKind::CopyRange, "x");
  b.song.MidiFileFormat = 0;
  ASSERT_TRUE(b.undo.Undo());
  EXPECT_THAT(b.messages.Shown, IsEmpty()) << "of format 0 only the first track counts";
  b.song.MidiFileFormat = 1;
  b.undo.BeginRangeCommand(TUndoKind::CopyRange, "x");
  ASSERT_TRUE(b.undo.Undo());
  EXPECT_THAT(b.messages.Shown, ElementsAre("Fehler beim Berechnen der NoteOnOff-Pointer."));
}

TEST(Undo, AToolThatFailedHalfWayIsRevertedWithoutAQuestion) {
  std::mt19937 random(7);
  UndoBench b;
  b.Fill();
  const std::string picture = b.Picture();
  b.undo.BeginRangeCommand(TUndoKind::CopyRange, "x");
  EditAtRandom(b, random);
  b.undo.Revert();
  EXPECT_EQ(b.Picture(), picture);
  EXPECT_THAT(b.messages.Asked, IsEmpty());
  EXPECT_FALSE(b.undo.IsEnabled());
  b.undo.Revert();
  EXPECT_EQ(b.Picture(), picture);
}

TEST(Undo, ANewSongForgetsTheOldOnesBackup) {
  UndoBench b;
  b.Fill();
  b.undo.BeginRangeCommand(TUndoKind::CopyRange, "x");
  b.song.ClearMidiMemory();
  b.undo.Forget();
  EXPECT_EQ(b.song.Pool.Live(), 0U);
  EXPECT_FALSE(b.undo.IsEnabled());
  EXPECT_FALSE(b.undo.Undo());
  b.song.MidiTrack.clear();
  b.song.KeySignArray.clear();
  b.song.SourceTempo.clear();
  b.song.TimeSignature.clear();
  b.Fill();
  const std::string picture = b.Picture();
  b.undo.BeginRecording(2, 10);
  ASSERT_TRUE(b.undo.Undo());
  EXPECT_EQ(b.Picture(), picture);
}

TEST(Undo, ATempoBehindTheFirstTrackCountsAsItDidBefore) {
  UndoBench b;
  b.Fill();
  const std::uint8_t fast[] = {3, 0, 0};
  InsertByPosition(b.Track(1), NewMeta(b.song.Pool, MetaTempo, fast, 700));
  b.functions.SetTimePositions();
  const std::string picture = b.Picture();
  b.undo.BeginRangeCommand(TUndoKind::CopyRange, "x");
  ASSERT_TRUE(b.undo.Undo());
  EXPECT_EQ(b.Picture(), picture);
}

TEST(Undo, ThePlayerPlaysTheSongThatCameBack) {
  PlayerBench b;
  b.NewTrack().Tempo(0, 480000).NewTrack().Ctrl(5, 0, 8).Ctrl(6, 32, 1);
  b.Put(NewChannelEvent(b.song.Pool, 0xC0, 4, 0, 7)).Ctrl(8, 7, 100);
  for (int n = 0; n < 10; ++n)
    b.On(100 + n * 100, 60 + n).Ctrl(120 + n * 100, 7, n).Off(150 + n * 100, 60 + n);
  b.Ready();
  TUndo undo(b.song, b.functions, b.messages, b.gate);
  undo.Hooks.IsPlaying = [&] { return b.player.State == TMidiPlayerState::stPlaying; };
  undo.Hooks.StopButtonClick = [&] { b.player.Stop(); };
  undo.Hooks.MoveToStart = [&] { b.player.MoveToTimePosition(0); };
  b.Start();
  b.Elapse(1200);
  const std::vector<std::string> played = b.Log();
  ASSERT_GT(played.size(), 20U);
  b.player.Stop();
  b.player.Stop();
  for (const int until : {6, 333, 1005}) {
    SCOPED_TRACE(until);
    undo.BeginRangeCommand(TUndoKind::DeleteRange, "x");
    Remove(b.song, b.Track(1), b.Event(1, 9));
    Remove(b.song, b.Track(1), b.Event(1, 5));
    b.Start();
    b.Elapse(until);
    ASSERT_TRUE(undo.Undo());
    EXPECT_EQ(b.player.State, TMidiPlayerState::stStopped);
    EXPECT_EQ(b.player.TimePosition, 0);
    EXPECT_THAT(CheckSong(b.song), IsEmpty());
    b.Start();
    b.Elapse(1200);
    EXPECT_EQ(b.Log(), played);
    b.player.Stop();
    b.player.Stop();
  }
}

}  // namespace
}  // namespace Sonarello
