// Counting, lengthening and pairing of notes.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>
#include <filesystem>
#include <fstream>
#include <random>
#include <sstream>

#include "helpers/SongBuilder.h"

namespace Sonarello {
namespace {

using ::testing::ElementsAre;

double SecondsOf(const std::function<void()>& work) {
  const auto start = std::chrono::steady_clock::now();
  work();
  return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

// --- Counting

std::string Verdict(TestSong& s) {
  std::string message = "old";
  const bool clean = s.functions.CheckForNoteOnsNoteOffs(message);
  EXPECT_EQ(clean, message.empty());
  return message;
}

TEST(NoteCheck, PassesACleanSong) {
  TestSong s;
  s.NewTrack()
      .On(0, 60)
      .On(0, 60)
      .Off(10, 60)
      .Off(20, 60)
      .On(20, 61, 10)
      .Off(30, 61, 10)
      .Finish()
      .Map();
  EXPECT_EQ(Verdict(s), "");
}

TEST(NoteCheck, ReportsANoteOffWithoutNoteOn) {
  TestSong s;
  s.NewTrack().Off(480, 60, 2).Finish().Map();
  EXPECT_EQ(Verdict(s), "Found 1 Note-Offs without Note-Ons,\r\nCh.02, Pos. 001.02.000, Note C3(60)");
  const InGerman german;
  EXPECT_EQ(Verdict(s),
            "Es wurden 1 Note-Offs ohne Note-Ons gefunden,\r\nCh.02, Pos. 001.02.000, Note C3(60)");
}

TEST(NoteCheck, ReportsANoteOnWithoutNoteOff) {
  TestSong s;
  s.NewTrack().On(0, 127, 16).On(960, 127, 16).Off(961, 127, 16).Finish().Map();
  EXPECT_EQ(Verdict(s), "Found 1 Note-Ons without Note-Offs,\r\nCh.16, Pos. 001.03.000, Note G8(127)")
      << "the position is that of the last note-on";
  const InGerman german;
  EXPECT_EQ(Verdict(s),
            "Es wurden 1 Note-Ons ohne Note-Offs gefunden,\r\nCh.16, Pos. 001.03.000, Note G8(127)");
}

TEST(NoteCheck, TellsOffsAheadOfOnsByChannelAndKey) {
  TestSong s;
  s.NewTrack().On(0, 1, 1).Off(5, 60, 3).Off(6, 59, 3).Off(7, 61, 1).Finish().Map();
  EXPECT_EQ(Verdict(s),
            "Found 3 Note-Offs without Note-Ons,"
            "\r\nCh.01, Pos. 001.01.007, Note C#3(61)"
            "\r\nCh.03, Pos. 001.01.006, Note B2(59)"
            "\r\nCh.03, Pos. 001.01.005, Note C3(60)");
}

TEST(NoteCheck, CountsKeysAndTakesThePositionWhereTheCountGoesBelowZero) {
  TestSong s;
  s.NewTrack().Off(5, 60).Off(7, 60).On(9, 60).Off(20, 60).Finish().Map();
  EXPECT_EQ(Verdict(s), "Found 1 Note-Offs without Note-Ons,\r\nCh.01, Pos. 001.01.020, Note C3(60)");
  TestSong balanced;
  balanced.NewTrack().Off(5, 60).On(9, 60).Finish().Map();
  EXPECT_EQ(Verdict(balanced), "") << "only the sum counts";
}

TEST(NoteCheck, ReportsOnlyTheFirstFaultyTrack) {
  TestSong s;
  s.NewTrack().NewTrack().On(1, 60).NewTrack().Off(2, 60).Finish().Map();
  EXPECT_EQ(Verdict(s), "Found 1 Note-Ons without Note-Offs,\r\nCh.01, Pos. 001.01.001, Note C3(60)");
}

TEST(NoteCheck, PassesOverIgnoredTracksAndRemovedNotes) {
  TestSong s;
  s.NewTrack().On(1, 60).NewTrack().On(1, 60).Finish().Map();
  s.Track(0).TrkIgnore = true;
  MarkRemoved(s.Event(1, 1));
  EXPECT_EQ(Verdict(s), "");
}

class NoteCheckFile : public ::testing::Test {
 protected:
  void SetUp() override {
    folder = std::filesystem::temp_directory_path() /
             ("sonarello-notecheck-" + std::to_string(std::random_device{}()));
    std::filesystem::create_directory(folder);
    song.NewTrack().Off(480, 60, 2).Finish().Map();
    song.song.MidiFileName = "/music/Straße.mid";
    song.options.DataPath = folder.string();
  }
  void TearDown() override { std::filesystem::remove_all(folder); }

  [[nodiscard]] std::string Content() const {
    std::ostringstream text;
    text << std::ifstream(folder / "_NoteOnOff.txt", std::ios::binary).rdbuf();
    return text.str();
  }

  std::filesystem::path folder;
  TestSong song;
};

TEST_F(NoteCheckFile, HoldsTheNameAnEmptyLineAndTheMessage) {
  const std::string message = Verdict(song);
  EXPECT_EQ(Content(), "/music/Straße.mid\r\n\r\n" + message + "\r\n");
}

TEST_F(NoteCheckFile, ReplacesTheEarlierOne) {
  std::ofstream(folder / "_NoteOnOff.txt") << std::string(5000, 'x');
  Verdict(song);
  EXPECT_EQ(Content().substr(0, 7), "/music/");
  EXPECT_LT(Content().size(), 200U);
}

TEST_F(NoteCheckFile, IsNotWrittenForACleanSong) {
  TestSong clean;
  clean.NewTrack().Finish().Map();
  clean.options.DataPath = folder.string();
  EXPECT_EQ(Verdict(clean), "");
  EXPECT_TRUE(std::filesystem::is_empty(folder));
}

TEST_F(NoteCheckFile, CostsNothingButTheFileWhenTheFolderCannotBeWritten) {
  song.options.DataPath = (folder / "nowhere").string();
  EXPECT_NE(Verdict(song), "");
  song.options.DataPath = "";
  EXPECT_NE(Verdict(song), "");
  EXPECT_TRUE(song.messages.Shown.empty());
  EXPECT_TRUE(std::filesystem::is_empty(folder));
}

// --- Lengthening

TestSong& Lengthen(TestSong& s, int minimum) {
  s.options.MinNoteLength = minimum;
  s.Pair().Map();
  s.functions.CheckForZeroLength();
  EXPECT_THAT(CheckSong(s.song), ElementsAre());
  return s;
}

TEST(ShortNotes, EndBehindWhatStandsAtTheirNewTick) {
  TestSong s;
  s.NewTrack().On(100, 60).Off(100, 60).Ctrl(105, 1, 0).Ctrl(110, 2, 0).Ctrl(111, 3, 0).Finish();
  Lengthen(s, 10);
  EXPECT_THAT(s.Events(),
              ElementsAre("on 60 @100", "ctrl 1 @105", "ctrl 2 @110", "off 60 @110", "ctrl 3 @111"));
  EXPECT_EQ(s.Event(0, 4)->TimePosition, 115);
  EXPECT_EQ(s.Track(0).TrkEventCounter, 7);
}

TEST(ShortNotes, StayInFrontOfTheirNewTickWhenNothingStandsBetween) {
  // Only an event that would be overtaken has the list mended. This is deliberate.
  TestSong s;
  s.NewTrack().On(100, 60).Off(100, 60).On(110, 60).Off(200, 60).Finish();
  Lengthen(s, 10);
  EXPECT_THAT(s.Events(), ElementsAre("on 60 @100", "off 60 @110", "on 60 @110", "off 60 @200"));
}

TEST(ShortNotes, OfTheMinimumAreLongEnough) {
  TestSong s;
  s.NewTrack().On(100, 60).On(100, 61).Off(109, 61).Off(110, 60).Finish();
  Lengthen(s, 10);
  EXPECT_THAT(s.Events(), ElementsAre("on 60 @100", "on 61 @100", "off 61 @110", "off 60 @110"));
}

TEST(ShortNotes, ThatEndAtOneTickKeepTheOrderOfTheirEnds) {
  TestSong s;
  s.NewTrack().On(0, 60).On(0, 61).Off(1, 61).Off(2, 60).Ctrl(3, 1, 0).Finish();
  Lengthen(s, 10);
  EXPECT_THAT(s.Events(), ElementsAre("on 60 @0", "on 61 @0", "ctrl 1 @3", "off 61 @10", "off 60 @10"));
}

TEST(ShortNotes, MayPassOneAnother) {
  TestSong s;
  s.NewTrack().On(0, 60).On(5, 61).Off(6, 61).Off(7, 60).Ctrl(8, 1, 0).Ctrl(12, 2, 0).Finish();
  Lengthen(s, 10);
  EXPECT_THAT(s.Events(), ElementsAre("on 60 @0", "on 61 @5", "ctrl 1 @8", "off 60 @10", "ctrl 2 @12",
                                      "off 61 @15"));
}

TEST(ShortNotes, EndWithTheSongAtTheLatest) {
  TestSong s;
  s.NewTrack().On(980, 60).Off(985, 60).Ctrl(989, 1, 0).Finish();
  Lengthen(s, 5000);
  EXPECT_THAT(s.Events(), ElementsAre("on 60 @980", "ctrl 1 @989", "off 60 @999"));
  EXPECT_EQ(s.Track(0).TrkLastEvent->Position, 999);
  s.functions.CheckForZeroLength();
  EXPECT_THAT(s.Events(), ElementsAre("on 60 @980", "ctrl 1 @989", "off 60 @999"));
}

TEST(ShortNotes, AreLeftAloneWithoutAMinimum) {
  for (const int minimum : {0, -5}) {
    TestSong s;
    s.NewTrack().On(100, 60).Off(100, 60).Ctrl(105, 1, 0).Finish();
    Lengthen(s, minimum);
    EXPECT_THAT(s.Events(), ElementsAre("on 60 @100", "off 60 @100", "ctrl 1 @105"));
  }
}

TEST(ShortNotes, AreLeftAloneOnIgnoredTracksUnpairedOrRemoved) {
  TestSong s;
  s.NewTrack().On(100, 60).Off(100, 60).NewTrack().On(100, 60).Off(100, 60).Finish();
  s.NewTrack().On(100, 60).Off(100, 60);
  EndTrack(s.song.Pool, s.Track(2), s.song.MaxSongPosition);
  s.Pair().Map();
  s.options.MinNoteLength = 10;
  s.Track(0).TrkIgnore = true;
  MarkRemoved(s.Event(1, 2));
  s.Event(2, 1)->NoteOffEvent = s.Event(2, 2)->NoteOnEvent = nullptr;
  s.functions.CheckForZeroLength();
  for (int t = 0; t < 3; ++t) EXPECT_THAT(s.Events(t), ElementsAre("on 60 @100", "off 60 @100"));
}

TEST(ShortNotes, AreToldToTheChangeLog) {
  TestSong s;
  ChangeLog log;
  s.song.Changes = &log;
  s.NewTrack().NewTrack().On(100, 60).Off(102, 60).Finish();
  Lengthen(s, 10);
  ASSERT_EQ(log.Changes().size(), 1U);
  EXPECT_EQ(log.Changes()[0].Kind, ChangeKind::Moved);
  EXPECT_EQ(log.Changes()[0].Track, 1);
  EXPECT_EQ(log.Changes()[0].OldPosition, 102);
  EXPECT_EQ(log.Changes()[0].Position, 110);
  EXPECT_EQ(log.Changes()[0].Why, "note shorter than the minimum length");
  s.song.Changes = nullptr;
}

TEST(ShortNotes, ReachTheEndOf32Bits) {
  TestSong s;
  s.NewTrack().On(LastPosition - 20, 60).Off(LastPosition - 20, 60).Ctrl(LastPosition, 1, 0).Finish();
  Lengthen(s, std::numeric_limits<std::int32_t>::max());
  EXPECT_EQ(s.Events().back(), "off 60 @" + std::to_string(LastPosition + 10));
}

/// The rule step by step: each short note's end is taken out and put behind all events of its new tick.
void LengthenOneByOne(TestSong& s, std::int32_t minimum) {
  TMyTrack& track = s.Track(0);
  for (PtrMidiEvent e = track.TrkFirstEvent; e != nullptr; e = e->NextEvent) {
    if (e->Kind() != NoteOff || e->NoteOnEvent == nullptr) continue;
    if (e->Position - e->NoteOnEvent->Position >= minimum) continue;
    const std::int32_t end = std::min(e->NoteOnEvent->Position + minimum, s.song.MaxSongPosition);
    if (end == e->Position) continue;
    e->Position = end;
    if (e->NextEvent->Position >= end) continue;
    PtrMidiEvent cursor = e->PrevEvent;
    Unlink(track, e);
    InsertByPosition(track, e, cursor);
    e = cursor;
  }
}

void RandomNotes(TestSong& s, std::mt19937& random, int events, int step, int keys) {
  const auto upTo = [&random](int most) { return std::uniform_int_distribution<>(0, most)(random); };
  s.NewTrack();
  std::int32_t position = 0;
  for (int n = 0; n < events; ++n) {
    position += upTo(step);
    switch (upTo(4)) {
      case 0: s.Ctrl(position, 1, 0); break;
      case 1:
      case 2: s.On(position, 60 + upTo(keys - 1), 1 + upTo(1)); break;
      default: s.Off(position, 60 + upTo(keys - 1), 1 + upTo(1)); break;
    }
  }
  s.Finish();
}

TEST(ShortNotes, EndWhereTheRuleStepByStepPutsThem) {
  for (unsigned seed = 0; seed < 300; ++seed) {
    const int step = static_cast<int>(seed % 5);
    const int minimum = 1 + static_cast<int>(seed % 40);
    std::mt19937 random(seed);
    std::mt19937 again(seed);
    TestSong s;
    TestSong expected;
    RandomNotes(s, random, 120, step, 3);
    RandomNotes(expected, again, 120, step, 3);
    expected.Pair().Map();
    LengthenOneByOne(expected, minimum);
    Lengthen(s, minimum);
    ASSERT_EQ(s.Events(), expected.Events()) << "seed " << seed;
  }
}

TEST(ShortNotes, CostNoSquareOfTheirNumber) {
  const auto timed = [](int notes) {
    TestSong s;
    s.NewTrack();
    for (int n = 0; n < notes; ++n)
      s.On(5, n % 128, 1 + n / 128 % 16).Off(5, n % 128, 1 + n / 128 % 16);
    for (int n = 0; n < notes; ++n) s.Ctrl(6 + n % 2, 1, 0);
    s.Track(0).TrkLastEvent->Position = 7;
    s.Finish();
    for (PtrMidiEvent e = s.Event(0, 1); !e->IsEndOfTrack(); e = e->NextEvent)
      if (e->Kind() == Controller) e->Position = 6;
    s.Pair().Map();
    s.options.MinNoteLength = 10;
    return SecondsOf([&s] { s.functions.CheckForZeroLength(); });
  };
  EXPECT_LT(timed(200'000), 10.0) << "a walk per note would take minutes";
}

// --- Pairing

TEST(NotePairs, AreFirstInFirstOut) {
  TestSong s;
  s.NewTrack().On(0, 60).On(10, 60).On(10, 60, 2).Off(20, 60).Off(30, 60).Off(40, 60, 2).Finish();
  EXPECT_TRUE(TMidiFunctions::SetNoteOnOffPointers(s.Track(0).TrkFirstEvent));
  EXPECT_EQ(s.Event(0, 1)->NoteOffEvent, s.Event(0, 4));
  EXPECT_EQ(s.Event(0, 4)->NoteOnEvent, s.Event(0, 1));
  EXPECT_EQ(s.Event(0, 2)->NoteOffEvent, s.Event(0, 5));
  EXPECT_EQ(s.Event(0, 3)->NoteOffEvent, s.Event(0, 6));
  EXPECT_THAT(CheckSong(s.song), ElementsAre());
}

TEST(NotePairs, NeutraliseANoteOffWithoutNoteOn) {
  TestSong s;
  ChangeLog log;
  s.NewTrack().Off(5, 60).On(10, 60).Finish();
  s.song.Changes = &log;
  TStrayNoteOffs strays{s.song, 0, {}};
  EXPECT_TRUE(TMidiFunctions::SetNoteOnOffPointers(s.Track(0).TrkFirstEvent, &strays));
  s.song.Changes = nullptr;
  const TypMidiEvent& off = *s.Event(0, 1);
  EXPECT_EQ(off.Command, MetaEvent);
  EXPECT_EQ(off.DLength, 0);
  EXPECT_EQ(off.MType, MetaText);
  EXPECT_EQ(off.DType, ShortEvent) << "stays as it was";
  EXPECT_TRUE(off.Meta.empty());
  EXPECT_EQ(s.Event(0, 2)->NoteOffEvent, nullptr);
  ASSERT_EQ(log.Changes().size(), 1U);
  EXPECT_EQ(log.Changes()[0].Kind, ChangeKind::Dropped);
  EXPECT_EQ(log.Changes()[0].What, "Note off 60, 64, channel 1");
  EXPECT_EQ(log.Changes()[0].Why, "note-off without note-on");
}

TEST(NotePairs, TellTheChangeLogInGermanToo) {
  const InGerman german;
  TestSong s;
  ChangeLog log;
  s.NewTrack().Off(5, 60).On(9, 60).Off(10, 60).Finish();
  s.song.Changes = &log;
  TStrayNoteOffs strays{s.song, 0, {}};
  TMidiFunctions::SetNoteOnOffPointers(s.Track(0).TrkFirstEvent, &strays);
  Lengthen(s, 10);
  s.song.Changes = nullptr;
  ASSERT_EQ(log.Changes().size(), 2U);
  EXPECT_EQ(log.Changes()[0].Why, "Note-Off ohne Note-On");
  EXPECT_EQ(log.Changes()[1].Why, "Note kürzer als die Mindestlänge");
}

TEST(NotePairs, HoldThirtyTwoOpenNotesOfAKey) {
  TestSong s;
  s.NewTrack();
  for (int n = 0; n < 32; ++n) s.On(n, 60);
  for (int n = 0; n < 32; ++n) s.Off(100 + n, 60);
  s.Finish();
  EXPECT_TRUE(TMidiFunctions::SetNoteOnOffPointers(s.Track(0).TrkFirstEvent));
  for (int n = 1; n <= 32; ++n) EXPECT_EQ(s.Event(0, n)->NoteOffEvent, s.Event(0, 32 + n));
}

TEST(NotePairs, FailAtTheThirtyThirdOpenNote) {
  TestSong s;
  s.NewTrack().On(0, 61).Off(0, 61);
  for (int n = 0; n < 33; ++n) s.On(n, 60);
  s.Off(100, 60).Off(101, 60).Finish();
  EXPECT_FALSE(TMidiFunctions::SetNoteOnOffPointers(s.Track(0).TrkFirstEvent));
  EXPECT_EQ(s.Event(0, 1)->NoteOffEvent, s.Event(0, 2)) << "what came before stays paired";
  for (int n = 3; n <= 37; ++n) {
    EXPECT_EQ(s.Event(0, n)->NoteOffEvent, nullptr);
    EXPECT_EQ(s.Event(0, n)->NoteOnEvent, nullptr);
  }
  EXPECT_EQ(s.Event(0, 36)->Command, 0x80) << "note-offs behind the failure are left alone";
}

TEST(NotePairs, ForgetAnEarlierPairing) {
  TestSong s;
  s.NewTrack().On(0, 60).Off(10, 60).On(20, 60).Off(30, 60).Finish().Pair();
  MarkRemoved(s.Event(0, 1));
  EXPECT_TRUE(TMidiFunctions::SetNoteOnOffPointers(s.Track(0).TrkFirstEvent));
  EXPECT_EQ(s.Event(0, 1)->NoteOffEvent, nullptr);
  EXPECT_EQ(s.Event(0, 2)->NoteOnEvent, nullptr);
  EXPECT_EQ(s.Event(0, 2)->Command, MetaEvent);
  EXPECT_EQ(s.Event(0, 3)->NoteOffEvent, s.Event(0, 4));
  EXPECT_THAT(CheckSong(s.song), ElementsAre());
}

TEST(NotePairs, ForgetAnEarlierPairingBehindAFailureToo) {
  TestSong s;
  s.NewTrack().On(0, 60).Off(10, 60).On(500, 60).Off(510, 60).Finish().Pair();
  PtrMidiEvent place = s.Event(0, 1);
  for (int n = 0; n < 33; ++n) {
    PtrMidiEvent on = NewChannelEvent(s.song.Pool, 0x90, 60, 1, 0);
    LinkBehind(s.Track(0), place, on);
  }
  EXPECT_FALSE(TMidiFunctions::SetNoteOnOffPointers(s.Track(0).TrkFirstEvent));
  ForEachEvent(s.Track(0), [](PtrMidiEvent e) {
    EXPECT_EQ(e->NoteOnEvent, nullptr);
    EXPECT_EQ(e->NoteOffEvent, nullptr);
  });
}

TEST(NotePairs, OfANoteInFrontOfTheWalkAreUndoneOnBothSides) {
  TestSong s;
  s.NewTrack().On(0, 60).On(5, 60).Off(10, 60).Off(20, 60).Finish().Pair();
  EXPECT_TRUE(TMidiFunctions::SetNoteOnOffPointers(s.Event(0, 2)));
  EXPECT_EQ(s.Event(0, 1)->NoteOffEvent, nullptr);
  EXPECT_EQ(s.Event(0, 2)->NoteOffEvent, s.Event(0, 3));
  EXPECT_EQ(s.Event(0, 4)->Command, MetaEvent);
  EXPECT_THAT(CheckSong(s.song), ElementsAre());
}

TEST(NotePairs, OfAnEmptyListAreNone) { EXPECT_TRUE(TMidiFunctions::SetNoteOnOffPointers(nullptr)); }

TEST(NotePairs, AreSoundForRandomNotesAndStayAsTheyAre) {
  for (unsigned seed = 0; seed < 200; ++seed) {
    std::mt19937 random(seed);
    TestSong s;
    RandomNotes(s, random, 400, 3, 4);
    s.Pair();
    ASSERT_THAT(CheckSong(s.song), ElementsAre()) << "seed " << seed;
    std::vector<PtrMidiEvent> pairs;
    ForEachEvent(s.Track(0), [&pairs](PtrMidiEvent e) { pairs.push_back(e->NoteOffEvent); });
    s.Pair();
    std::vector<PtrMidiEvent> again;
    ForEachEvent(s.Track(0), [&again](PtrMidiEvent e) { again.push_back(e->NoteOffEvent); });
    ASSERT_EQ(pairs, again) << "seed " << seed;
  }
}

TEST(NoteRoutines, CostLittleOnVeryManyTracks) {
  TestSong s;
  for (int t = 0; t < 65'000; ++t) s.NewTrack().Ctrl(0, 1, 0);
  s.Finish().Map();
  s.options.MinNoteLength = 10;
  const double seconds = SecondsOf([&s] {
    s.Pair();
    s.functions.CheckForZeroLength();
    s.functions.RemoveNoteOverlaps();
    EXPECT_EQ(Verdict(s), "");
  });
  EXPECT_LT(seconds, 10.0);
}

}  // namespace
}  // namespace Sonarello
