#include "playback/Transpose.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <atomic>
#include <thread>

#include "helpers/SentLog.h"
#include "helpers/SongBuilder.h"

namespace Sonarello {
namespace {

using testing::Each;
using testing::ElementsAre;
using testing::IsEmpty;

/// A song and its transposition. Channels count from 1.
struct Desk : TestSong {
  TMidiChannelData& Data(int channel) {
    return song.MidiData.at(static_cast<std::size_t>(channel - 1));
  }
  /// The sound of a channel; -1 leaves a bank unset.
  void Sound(int channel, int CC00, int CC32, int Patch) {
    if (CC00 >= 0) Data(channel).CtrlArray[0].Value = static_cast<std::uint8_t>(CC00);
    if (CC32 >= 0) Data(channel).CtrlArray[32].Value = static_cast<std::uint8_t>(CC32);
    Data(channel).Patch = static_cast<std::int8_t>(Patch);
  }
  /// A track with one note of each key, on a channel that is active.
  Desk& Notes(const std::vector<int>& keys, int channel = 1) {
    NewTrack();
    std::int32_t tick = 0;
    for (const int key : keys) {
      On(tick, key, channel).Off(tick + 5, key, channel);
      tick += 10;
    }
    Data(channel).Active = true;
    return *this;
  }
  void KeySignature(int SF, int MI = 0) {
    const std::array bytes = {static_cast<std::uint8_t>(SF), static_cast<std::uint8_t>(MI)};
    Put(NewMeta(song.Pool, MetaKeySignature, bytes, song.MidiTrack.back().TrkLastEvent->Position));
    song.KeySignArray.resize(song.MidiTrack.size());
    song.KeySignArray.back().ValArray.push_back({song.MidiTrack.back().TrkLastEvent, SF, MI});
    ++song.KeySignArray.back().Elements;
  }
  void Chord(int root, int bass) {
    const std::array bytes = {std::uint8_t{0x43}, std::uint8_t{0x7B},
                              std::uint8_t{0x01}, static_cast<std::uint8_t>(root),
                              std::uint8_t{8},    static_cast<std::uint8_t>(bass),
                              std::uint8_t{127}};
    Put(NewMeta(song.Pool, MetaSequencerSpecific, bytes, song.MidiTrack.back().TrkLastEvent->Position));
    song.XF_Track = static_cast<std::int32_t>(song.MidiTrack.size()) - 1;
    ++song.XF_ChordsArrayElements;
  }
  /// Transposes and gives the keys of a track: those of the note-ons, which the note-offs must equal.
  std::vector<int> Keys(int shift, int track = 0) {
    transpose.TransposeChange(shift, false);
    std::vector<int> on;
    std::vector<int> off;
    ForEachEvent(Track(track), [&](PtrMidiEvent e) {
      if (e->Kind() == NoteOn) on.push_back(e->Value[0]);
      if (e->Kind() == NoteOff) off.push_back(e->Value[0]);
    });
    EXPECT_EQ(on, off);
    return on;
  }
  void Octave(int channel, int octaves) {
    song.ManualTransposeArray.at(static_cast<std::size_t>(channel - 1)) =
        static_cast<std::int8_t>(octaves);
  }
  void Intelligent(int mode) { transpose.Settings = {true, mode}; }

  SongGate gate;
  TRealtimeData realtime;
  SentLog log;
  TTranspose transpose{song, routes, gate, realtime, log.Sender()};
};

// --- Notes

TEST(Transpose, MovesNotesAndBringsThemBack) {
  Desk desk;
  desk.Notes({0, 60, 72, 127}).Finish();
  EXPECT_THAT(desk.Keys(3), ElementsAre(3, 63, 75, 118));
  EXPECT_THAT(desk.Keys(-2), ElementsAre(10, 58, 70, 125)) << "from how they were loaded";
  EXPECT_THAT(desk.Keys(0), ElementsAre(0, 60, 72, 127));
}

TEST(Transpose, FoldsNotesIntoTheRange) {
  EXPECT_EQ(FoldKey(0), 0);
  EXPECT_EQ(FoldKey(127), 127);
  EXPECT_EQ(FoldKey(-1), 11);
  EXPECT_EQ(FoldKey(-12), 0);
  EXPECT_EQ(FoldKey(-13), 11);
  EXPECT_EQ(FoldKey(-24), 0);
  EXPECT_EQ(FoldKey(128), 116);
  EXPECT_EQ(FoldKey(139), 127);
  EXPECT_EQ(FoldKey(140), 116);
  EXPECT_EQ(FoldKey(151), 127);
  for (int key = -40; key < 170; ++key) {
    EXPECT_GE(FoldKey(key), 0);
    EXPECT_LE(FoldKey(key), 127);
    EXPECT_EQ((FoldKey(key) - key) % 12, 0) << "the tone stays what it was";
  }
}

TEST(Transpose, BringsBackNotesThatWereFolded) {
  Desk desk;
  std::vector<int> all;
  for (int key = 0; key < KeyCount; ++key) all.push_back(key);
  desk.Notes(all).Finish();
  desk.Intelligent(2);
  for (const int shift : {12, -11, 5, -24}) desk.Keys(shift);
  EXPECT_EQ(desk.Keys(0), all);
}

TEST(Transpose, NeverTouchesChannel10) {
  Desk desk;
  desk.Notes({36, 60}, 10).Finish();
  EXPECT_THAT(desk.Keys(5), ElementsAre(36, 60));
}

TEST(Transpose, PassesOverDrumPartsAndInactiveChannels) {
  Desk desk;
  desk.Notes({60}, 3).Notes({60}, 4).Finish();
  desk.Data(3).DrumPart = 2;
  desk.Data(4).Active = false;
  EXPECT_THAT(desk.Keys(5, 0), ElementsAre(60));
  EXPECT_THAT(desk.Keys(5, 1), ElementsAre(60));
}

TEST(Transpose, GivesAChannelItsNotesBackThatBecomesDrums) {
  Desk desk;
  desk.Notes({60}, 3).Finish();
  EXPECT_THAT(desk.Keys(5), ElementsAre(65));
  desk.Data(3).DrumPart = 1;
  EXPECT_THAT(desk.Keys(7), ElementsAre(60));
  desk.Event(0, 1)->Value[0] = 61;  // the drum editor's own work
  EXPECT_EQ(desk.Event(0, 1)->ValueOrg[0], 60);
  desk.Event(0, 2)->Value[0] = 61;
  EXPECT_THAT(desk.Keys(0), ElementsAre(61)) << "only once";
}

TEST(Transpose, PassesOverIgnoredTracks) {
  Desk desk;
  desk.Notes({60}).Notes({60}).Finish();
  desk.Track(0).TrkIgnore = true;
  EXPECT_THAT(desk.Keys(5, 0), ElementsAre(60));
  EXPECT_THAT(desk.Keys(5, 1), ElementsAre(65));
}

TEST(Transpose, FindsAChannelsNotesOnEveryTrack) {
  Desk desk;
  desk.NewTrack().On(0, 60, 1).On(0, 62, 2).On(0, 36, 10).Ctrl(1, 60, 60, 1);
  desk.Off(5, 60, 1).Off(5, 62, 2).Off(5, 36, 10);
  desk.Data(1).Active = desk.Data(2).Active = desk.Data(10).Active = true;
  desk.Finish();
  EXPECT_THAT(desk.Keys(2), ElementsAre(62, 64, 36));
  EXPECT_EQ(desk.Event(0, 4)->Value[0], 60) << "a controller is no note";
}

TEST(Transpose, AddsTheChannelsOctave) {
  Desk desk;
  desk.Notes({60}).Finish();
  desk.Octave(1, 1);
  EXPECT_THAT(desk.Keys(2), ElementsAre(74));
  desk.Octave(1, -1);
  EXPECT_THAT(desk.Keys(2), ElementsAre(50));
  EXPECT_THAT(desk.Keys(0), ElementsAre(48));
}

TEST(Transpose, MovesOctavesByOneAtMost) {
  Desk desk;
  desk.Notes({60}, 2).Finish();
  desk.transpose.MoveOctave(1, 1, false);
  EXPECT_EQ(desk.Event(0, 1)->Value[0], 72);
  desk.transpose.MoveOctave(1, 1, false);
  EXPECT_EQ(desk.song.ManualTransposeArray[1], 1);
  for (int i = 0; i < 3; ++i) desk.transpose.MoveOctave(1, -1, false);
  EXPECT_EQ(desk.song.ManualTransposeArray[1], -1);
  EXPECT_EQ(desk.Event(0, 1)->Value[0], 48);
}

// --- Folding by channels

TEST(IntelligentTranspose, FoldsEachChannelByItsLimit) {
  const std::vector<std::vector<int>> limits = {{6, 6, 5, 4, 3, 6, 5, 4, 3, 6, 6, 5, 4, 3, 6, 3},
                                                {3, 3, 6, 5, 4, 3, 6, 5, 4, 3, 3, 6, 5, 4, 3, 4},
                                                {4, 4, 3, 6, 5, 4, 3, 6, 5, 4, 4, 3, 6, 5, 4, 5},
                                                {5, 5, 4, 3, 6, 5, 4, 3, 6, 5, 5, 4, 3, 6, 5, 6}};
  for (int mode = 1; mode <= 4; ++mode)
    for (int channel = 0; channel < ChannelCount; ++channel) {
      const int limit = limits[static_cast<std::size_t>(mode - 1)][static_cast<std::size_t>(channel)];
      EXPECT_EQ(FoldedShift(channel, limit, mode), limit) << mode << " " << channel;
      EXPECT_EQ(FoldedShift(channel, limit + 1, mode), limit - 11) << mode << " " << channel;
      EXPECT_EQ(FoldedShift(channel, -limit, mode), -limit) << mode << " " << channel;
      EXPECT_EQ(FoldedShift(channel, -limit - 1, mode), 11 - limit) << mode << " " << channel;
      EXPECT_EQ(FoldedShift(channel, 0, mode), 0);
    }
}

TEST(IntelligentTranspose, TakesAnUnknownModeForTheFirst) {
  for (const int mode : {0, 5, -1}) EXPECT_EQ(FoldedShift(15, 4, mode), FoldedShift(15, 4, 1));
}

TEST(IntelligentTranspose, MovesTheVoicesApart) {
  Desk desk;
  desk.Notes({60}, 1).Notes({60}, 3).Notes({60}, 5).Finish();
  desk.Intelligent(1);
  EXPECT_THAT(desk.Keys(5, 0), ElementsAre(65));
  EXPECT_THAT(desk.Keys(5, 1), ElementsAre(65));
  EXPECT_THAT(desk.Keys(5, 2), ElementsAre(53));
  desk.Octave(5, 1);
  EXPECT_THAT(desk.Keys(5, 2), ElementsAre(65)) << "the octave by hand is not folded";
  desk.transpose.Settings.IntelligentTranspose = false;
  EXPECT_THAT(desk.Keys(5, 2), ElementsAre(77));
}

// --- Which sounds

TEST(TransposeRules, LeaveDrumBanksAlone) {
  struct {
    int Instrument, CC00, CC32;
  } const kits[] = {{5, 126, 0},  {5, 127, 0},   {6, 127, 0},   {7, 126, 0},   {8, 127, 0},
                    {19, 126, 0}, {19, 127, -1}, {22, 92, 0},   {24, 0, 4},    {24, -1, 4},
                    {16, 120, 0}, {82, 120, 5},  {87, 62, 1},   {31, 120, 0},  {25, 86, 64},
                    {26, 63, 32}, {26, 127, 0},  {69, 63, 40},  {71, 88, 101}, {71, 96, 0},
                    {13, 15, 0},  {95, 21, 0},   {102, 127, 9}, {37, 120, 0},  {53, 120, 0},
                    {61, 86, 0},  {45, 92, 3},   {74, 126, 1},  {9, 127, 0}};
  for (const auto& kit : kits) {
    EXPECT_TRUE(IsDrumBank(kit.Instrument, kit.CC00, kit.CC32)) << kit.Instrument << " " << kit.CC00;
    EXPECT_EQ(TransposeRuleOf(kit.Instrument, kit.CC00, kit.CC32, 0), TransposeRule::None);
  }
}

TEST(TransposeRules, KnowBanksThatAreNoDrums) {
  struct {
    int Instrument, CC00, CC32;
  } const sounds[] = {{0, 127, 0},  {0, 120, 0},  {5, 0, 0},   {19, 64, 0}, {22, 0, 4},
                      {24, 0, 3},   {26, 63, 0},  {71, 88, 1}, {87, 63, 0}, {87, 121, 0},
                      {-1, 127, 0}, {87, -1, -1}, {199, 0, 0}};
  for (const auto& sound : sounds) {
    EXPECT_FALSE(IsDrumBank(sound.Instrument, sound.CC00, sound.CC32))
        << sound.Instrument << " " << sound.CC00;
    EXPECT_EQ(TransposeRuleOf(sound.Instrument, sound.CC00, sound.CC32, 0), TransposeRule::Plain);
  }
}

TEST(TransposeRules, KnowSoundsOfTheirOwn) {
  EXPECT_EQ(TransposeRuleOf(39, 15, 0, 25), TransposeRule::PitchClass);
  EXPECT_EQ(TransposeRuleOf(39, 15, 7, 26), TransposeRule::PitchClass);
  EXPECT_EQ(TransposeRuleOf(39, 15, 0, 24), TransposeRule::Plain);
  EXPECT_EQ(TransposeRuleOf(39, 14, 0, 25), TransposeRule::Plain);
  EXPECT_EQ(TransposeRuleOf(54, 8, 0, 7), TransposeRule::PitchClass);
  EXPECT_EQ(TransposeRuleOf(54, 8, 1, 7), TransposeRule::Plain);
  EXPECT_EQ(TransposeRuleOf(62, 8, 0, 7), TransposeRule::Plain);
}

TEST(Transpose, LooksAtTheInstrumentOfTheChannelsRoute) {
  Desk desk;
  desk.Notes({60}, 3).Finish();
  desk.Sound(3, 127, 0, 0);
  EXPECT_THAT(desk.Keys(5), ElementsAre(65)) << "bank 127 means nothing to GM";
  desk.routes.Table.resize(2);
  desk.routes.Table[1].InstrumValue = 19;
  desk.song.MidiOutIndex[2] = 1;
  EXPECT_THAT(desk.Keys(5), ElementsAre(60));
  desk.song.MidiOutIndex[2] = 9;
  EXPECT_THAT(desk.Keys(5), ElementsAre(65)) << "a route that is gone is route 0";
}

TEST(Transpose, SparesTheNoiseKeysOfMegaVoices) {
  Desk desk;
  desk.Notes({95, 96, 127}, 1).Finish();
  desk.Instrument(87);
  desk.Sound(1, 8, 0, 1);
  EXPECT_THAT(desk.Keys(2), ElementsAre(97, 96, 127));
  desk.Sound(1, 8, 32, 1);
  EXPECT_THAT(desk.Keys(2), ElementsAre(97, 98, 117)) << "other voices of that bank have none";
  for (const int value : {9, 18, 31, 41, 54, 59, 62, 70, 74, 80, 87, 97}) {
    EXPECT_TRUE(HasNoiseKeys(value, 8, 31)) << value;
    EXPECT_FALSE(HasNoiseKeys(value, 0, 0)) << value;
  }
  EXPECT_FALSE(HasNoiseKeys(0, 8, 0));
}

TEST(Transpose, KeepsSoundsOfThePitchClassRuleInTheirOctaves) {
  Desk desk;
  desk.Notes({12, 15, 16, 27, 28, 39, 40, 47, 48, 59, 60, 71}).Finish();
  desk.Instrument(39);
  desk.Sound(1, 15, 0, 25);
  // Octaves begin at E (16, 28, 40) for the keys from 12 to 47, else at C.
  EXPECT_THAT(desk.Keys(1), ElementsAre(13, 4, 17, 16, 29, 28, 41, 48, 49, 48, 61, 60));
  EXPECT_THAT(desk.Keys(-1), ElementsAre(11, 14, 27, 26, 39, 38, 51, 46, 59, 58, 71, 70));
  EXPECT_THAT(desk.Keys(0), ElementsAre(12, 15, 16, 27, 28, 39, 40, 47, 48, 59, 60, 71));
  desk.Intelligent(1);
  EXPECT_THAT(desk.Keys(1), ElementsAre(13, 4, 17, 16, 29, 28, 41, 48, 49, 48, 61, 60));
}

TEST(TransposedKey, StaysAboveTheLowestStringByTheFloorRule) {
  const auto key = [](int from, int shift, bool intelligent, int octaves = 0) {
    return int{TransposedKey(from, TransposeRule::Floor, 0, shift, octaves, {intelligent, 1})};
  };
  EXPECT_EQ(key(30, -2, true), 28);
  EXPECT_EQ(key(30, -3, true), 39);
  EXPECT_EQ(key(18, -3, true), 39);  // 15 + 12 is below 28
  EXPECT_EQ(key(40, 7, true), 47) << "never folded by channels";
  EXPECT_EQ(key(30, -3, false), 27);
  EXPECT_EQ(key(20, 0, true), 20) << "without a shift all notes are as they were";
  EXPECT_EQ(key(36, 0, true, -1), 36);
  EXPECT_EQ(key(126, 3, true), 117);
}

// --- Keys and chords

TEST(KeySignatures, GoRoundTheCircleOfFifths) {
  const int circle[] = {0, -5, 2, -3, 4, -1, 6, 1, -4, 3, -2, 5};
  for (int i = 0; i < 12; ++i) {
    EXPECT_EQ(TransposeKeySignature(0, i), circle[i]);
    EXPECT_EQ(TransposeKeySignature(circle[i], -i), 0);
    EXPECT_EQ(TransposeKeySignature(circle[i], 12), circle[i]);
    EXPECT_EQ(TransposeKeySignature(circle[i], -24), circle[i]);
  }
  for (const int none : {7, -7, -6, 100}) EXPECT_EQ(TransposeKeySignature(none, 3), none);
}

TEST(KeySignatures, FollowTheSongAndComeBack) {
  Desk desk;
  desk.NewTrack();
  desk.KeySignature(0);
  desk.KeySignature(-5, 1);
  desk.KeySignature(7);
  desk.KeySignature(-6);
  desk.Finish();
  const auto bytes = [&] {
    std::vector<int> found;
    ForEachEvent(desk.Track(0), [&](PtrMidiEvent e) {
      if (e->IsMeta(MetaKeySignature)) found.push_back(static_cast<std::int8_t>(e->Meta[0]));
    });
    return found;
  };
  desk.transpose.TransposeChange(2, false);
  EXPECT_THAT(bytes(), ElementsAre(2, -3, 7, -6));
  desk.transpose.TransposeChange(-1, false);
  EXPECT_THAT(bytes(), ElementsAre(5, 0, 7, -6));
  EXPECT_EQ(desk.Event(0, 2)->Meta[1], 1) << "minor stays minor";
  desk.transpose.TransposeChange(0, false);
  EXPECT_THAT(bytes(), ElementsAre(0, -5, 7, -6));
}

TEST(KeySignatures, MayHaveBeenRemoved) {
  Desk desk;
  desk.NewTrack();
  desk.KeySignature(1);
  desk.KeySignature(1);
  desk.Finish();
  MarkRemoved(desk.Event(0, 1));
  Remove(desk.song, desk.Track(0), desk.Event(0, 2));
  desk.transpose.TransposeChange(2, false);
  EXPECT_EQ(desk.Event(0, 1)->Meta[0], 1);
}

TEST(ChordRoots, AreSpelledByTheKey) {
  EXPECT_EQ(TransposeChordRoot(0x31, 2, 0), 0x32);   // C to D
  EXPECT_EQ(TransposeChordRoot(0x37, 1, 0), 0x31);   // B to C
  EXPECT_EQ(TransposeChordRoot(0x31, -1, 0), 0x37);  // C to B
  EXPECT_EQ(TransposeChordRoot(0x31, 1, 0), 0x41);   // C#
  EXPECT_EQ(TransposeChordRoot(0x31, 1, -5), 0x22);  // Db
  EXPECT_EQ(TransposeChordRoot(0x31, 3, 0), 0x23);   // Eb
  EXPECT_EQ(TransposeChordRoot(0x31, 3, 4), 0x42);   // D#
  EXPECT_EQ(TransposeChordRoot(0x31, 10, 3), 0x46);  // A#
  EXPECT_EQ(TransposeChordRoot(0x27, 2, 0), 0x31);   // Bb to C
  EXPECT_EQ(TransposeChordRoot(0x51, 1, 0), 0x23);   // C## to Eb
  EXPECT_EQ(TransposeChordRoot(0x01, 3, 0), 0x31);   // Cbbb to C
  EXPECT_EQ(TransposeChordRoot(0x67, 1, 0), 0x23);   // B### to Eb
}

TEST(ChordRoots, StayAsTheyAreWithoutAShiftOrANote) {
  EXPECT_EQ(TransposeChordRoot(0x43, 0, 0), 0x43) << "no new spelling without need";
  EXPECT_EQ(TransposeChordRoot(0x43, 12, 0), 0x43);
  for (const int none : {0x00, 0x30, 0x38, 0x7F, 0x71, 0xFF})
    EXPECT_EQ(TransposeChordRoot(static_cast<std::uint8_t>(none), 5, 0), none);
}

std::vector<std::pair<int, int>> ChordsOf(Desk& desk, int shift) {
  desk.transpose.TransposeChange(shift, false);
  std::vector<std::pair<int, int>> chords;
  for (int t = 0; t < desk.song.NumberOfSourceTracks; ++t)
    ForEachEvent(desk.Track(t), [&](PtrMidiEvent e) {
      if (e->IsMeta(MetaSequencerSpecific)) chords.push_back({e->Meta[3], e->Meta[5]});
    });
  return chords;
}

TEST(XFChords, FollowTheSongAndComeBack) {
  Desk desk;
  desk.NewTrack();
  desk.Chord(0x31, 0x35);
  desk.Chord(0x22, 0x7F);  // Db, no bass
  desk.Chord(0x7F, 0x7F);
  desk.Finish();
  EXPECT_THAT(ChordsOf(desk, 2),
              ElementsAre(std::pair(0x32, 0x36), std::pair(0x23, 0x7F), std::pair(0x7F, 0x7F)));
  EXPECT_THAT(ChordsOf(desk, 1),
              ElementsAre(std::pair(0x41, 0x26), std::pair(0x32, 0x7F), std::pair(0x7F, 0x7F)));
  EXPECT_THAT(ChordsOf(desk, 0),
              ElementsAre(std::pair(0x31, 0x35), std::pair(0x22, 0x7F), std::pair(0x7F, 0x7F)))
      << "in their own spelling";
  EXPECT_EQ(desk.Event(0, 1)->Meta[4], 8) << "the type stays";
  EXPECT_THAT(CheckSong(desk.song), IsEmpty());
}

TEST(XFChords, AreSpelledByTheTransposedKey) {
  Desk desk;
  desk.NewTrack();
  desk.KeySignature(-1);  // F
  desk.Chord(0x34, 0x7F);
  desk.Finish();
  EXPECT_THAT(ChordsOf(desk, 3), ElementsAre(std::pair(0x26, 0x7F)));  // Ab
  EXPECT_THAT(ChordsOf(desk, 1), ElementsAre(std::pair(0x44, 0x7F)));  // F#, six sharps
}

TEST(XFChords, CountAsTheyAreOnceSomebodyChangedThem) {
  Desk desk;
  desk.NewTrack();
  desk.Chord(0x31, 0x7F);
  desk.Finish();
  ChordsOf(desk, 2);
  desk.Event(0, 1)->Meta.Mutable()[3] = 0x35;
  EXPECT_THAT(ChordsOf(desk, 2), ElementsAre(std::pair(0x36, 0x7F)));
  EXPECT_THAT(ChordsOf(desk, 0), ElementsAre(std::pair(0x35, 0x7F)));
}

TEST(XFChords, AreThoseOfTheXFTrack) {
  Desk desk;
  desk.NewTrack();
  desk.Chord(0x31, 0x7F);
  desk.NewTrack();
  desk.Chord(0x31, 0x7F);
  desk.Finish();
  EXPECT_THAT(ChordsOf(desk, 2), ElementsAre(std::pair(0x31, 0x7F), std::pair(0x32, 0x7F)));
  desk.song.XF_Track = 7;
  EXPECT_THAT(ChordsOf(desk, 4), ElementsAre(std::pair(0x31, 0x7F), std::pair(0x32, 0x7F)));
}

TEST(XFChords, ShareNoBytesWithOtherMetas) {
  Desk desk;
  desk.NewTrack();
  const std::array other = {std::uint8_t{0x43}, std::uint8_t{0x7B}, std::uint8_t{0x02},
                            std::uint8_t{0x31}, std::uint8_t{0},    std::uint8_t{0x31},
                            std::uint8_t{0}};
  desk.Put(NewMeta(desk.song.Pool, MetaSequencerSpecific, other, 0));
  desk.Put(NewMeta(desk.song.Pool, MetaSequencerSpecific, std::span(other).first(3), 0));
  desk.Chord(0xFF, 0x31);
  desk.Finish();
  desk.transpose.TransposeChange(2, false);
  EXPECT_EQ(desk.Event(0, 1)->Meta[3], 0x31);
  EXPECT_EQ(desk.Event(0, 3)->Meta[5], 0x31) << "no chord that anybody could have written";
}

// --- What sounds

TEST(Transpose, EndsSoundsWithTheNextStartWhileStopped) {
  Desk desk;
  desk.Notes({60}).Finish();
  desk.transpose.TransposeChange(3, false);
  EXPECT_THAT(desk.log.Lines, IsEmpty());
  for (std::size_t c = 0; c < ChannelCount; ++c) EXPECT_EQ(desk.realtime.Realtime[c].AllSoundOff, 1);
}

TEST(Transpose, EndsSoundsAtOnceWhilePlaying) {
  Desk desk;
  desk.Notes({60}).Finish();
  desk.routes.Table.resize(2);
  desk.song.MidiOutIndex[1] = 1;
  desk.realtime.Realtime[2].MidiChannel = 7;
  desk.transpose.Hooks.EndNotes = [&](int route, int channel) {
    desk.log.Lines.push_back("end " + std::to_string(route) + "/" + std::to_string(channel));
  };
  desk.transpose.TransposeChange(3, true);
  ASSERT_EQ(desk.log.Lines.size(), 48U);
  EXPECT_THAT(std::vector(desk.log.Lines.begin(), desk.log.Lines.begin() + 9),
              ElementsAre("end 0/0", "0> B0 78 00", "0> B0 7B 00", "end 1/1", "1> B1 78 00",
                          "1> B1 7B 00", "end 0/7", "0> B7 78 00", "0> B7 7B 00"));
  EXPECT_EQ(desk.log.Lines.back(), "0> BF 7B 00");
  EXPECT_EQ(desk.realtime.Realtime[0].AllSoundOff, -1);
}

TEST(Transpose, TellsThatTheSongHasChanged) {
  Desk desk;
  desk.Notes({60}).Finish();
  std::vector<std::string> calls;
  desk.transpose.Hooks.ShowNotes = [&] { calls.push_back("notes"); };
  desk.transpose.Hooks.Changed = [&] { calls.push_back("changed"); };
  desk.transpose.TransposeChange(3, false);
  EXPECT_THAT(calls, ElementsAre("notes", "changed"));
  EXPECT_EQ(desk.song.TransposeNew, 3);
}

TEST(Transpose, StartsAnewWithTheNextSong) {
  Song song;
  song.TransposeNew = 5;
  song.ManualTransposeArray[3] = 1;
  song.ResetChannels();
  EXPECT_EQ(song.TransposeNew, 0);
  EXPECT_THAT(song.ManualTransposeArray, Each(0));
}

TEST(Transpose, ReadsWellFromAnotherThread) {
  Desk desk;
  desk.Notes(std::vector<int>(5000, 60)).Finish();
  std::atomic<bool> done = false;
  std::atomic<int> strange = 0;
  std::thread player([&] {
    const TypMidiEvent* e = desk.Track(0).TrkFirstEvent;
    while (!done) {
      const auto held = desk.gate.Enter();
      for (int i = 0; i < 100; ++i) {
        e = e->NextEvent == nullptr ? desk.Track(0).TrkFirstEvent : e->NextEvent;
        if (e->IsChannelEvent() && (e->Value[0] < 54 || e->Value[0] > 66)) ++strange;
      }
    }
  });
  for (int i = 0; i < 60; ++i) desk.transpose.TransposeChange(i % 13 - 6, true);
  done = true;
  player.join();
  EXPECT_EQ(strange, 0);
}

}  // namespace
}  // namespace Sonarello
