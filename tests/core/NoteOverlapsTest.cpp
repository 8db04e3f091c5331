// Repair of doubled and overlapping notes.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>
#include <random>

#include "helpers/SongBuilder.h"

namespace Sonarello {
namespace {

using ::testing::ElementsAre;

TestSong& Repair(TestSong& s) {
  s.functions.RemoveNoteOverlaps();
  EXPECT_THAT(CheckSong(s.song), ElementsAre());
  return s;
}

TEST(NoteOverlaps, AreNotFoundInACleanSong) {
  TestSong s;
  s.NewTrack().On(0, 60).Off(10, 60).On(10, 60).On(10, 61).On(10, 60, 2).Off(20, 60).Off(20, 61);
  s.Off(20, 60, 2).Finish().Map();
  const std::vector<std::string> before = s.Events();
  Repair(s);
  EXPECT_EQ(s.Events(), before);
  EXPECT_EQ(s.functions.FoundDoubleNotes, 0);
  EXPECT_EQ(s.functions.FoundOverlappedNotes, 0);
}

TEST(NoteOverlaps, LoseOneOfTwoNotesAtOneTick) {
  TestSong s;
  s.NewTrack().On(0, 60, 1, 90).On(0, 60, 1, 50).Off(100, 60).Off(200, 60).Finish().Map();
  s.Pair();
  Repair(s);
  EXPECT_THAT(s.Events(), ElementsAre("on 60 @0", "off 60 @200"));
  EXPECT_EQ(s.Event(0, 1)->Value[1], 90) << "the second note-on and the first note-off go";
  EXPECT_EQ(s.Event(0, 1)->NoteOffEvent, s.Event(0, 2)) << "what stays is a pair";
  EXPECT_EQ(s.functions.FoundDoubleNotes, 1);
  EXPECT_EQ(s.functions.FoundOverlappedNotes, 0);
}

TEST(NoteOverlaps, CountAsDoubledWithinATick) {
  TestSong s;
  s.NewTrack().On(7, 60).On(8, 60).Off(100, 60).Off(200, 60).Finish().Map();
  Repair(s);
  EXPECT_THAT(s.Events(), ElementsAre("on 60 @7", "off 60 @200"));
  EXPECT_EQ(s.functions.FoundDoubleNotes, 1);
}

TEST(NoteOverlaps, EndTheFirstNoteATickBeforeTheSecond) {
  TestSong s;
  s.NewTrack().On(0, 60).On(100, 60).Off(150, 60).Off(200, 60).Finish().Map();
  s.Pair();
  Repair(s);
  EXPECT_THAT(s.Events(), ElementsAre("on 60 @0", "off 60 @99", "on 60 @100", "off 60 @200"));
  EXPECT_EQ(s.Event(0, 2)->TimePosition, s.Event(0, 3)->TimePosition - 1);
  EXPECT_EQ(s.Event(0, 1)->NoteOffEvent, s.Event(0, 2));
  EXPECT_EQ(s.Event(0, 3)->NoteOffEvent, s.Event(0, 4));
  EXPECT_EQ(s.functions.FoundOverlappedNotes, 1);
  EXPECT_EQ(s.functions.FoundDoubleNotes, 0);
}

TEST(NoteOverlaps, TakeTwoTicksToOverlap) {
  TestSong s;
  s.NewTrack().On(0, 60).On(2, 60).Off(150, 60).Off(200, 60).Finish().Map();
  Repair(s);
  EXPECT_THAT(s.Events(), ElementsAre("on 60 @0", "off 60 @1", "on 60 @2", "off 60 @200"));
  EXPECT_GE(s.Event(0, 2)->TimePosition, 0);
}

TEST(NoteOverlaps, PutTheEndInFrontOfWhatStandsAtItsTick) {
  TestSong s;
  s.NewTrack().On(0, 60).Ctrl(98, 1, 0).Ctrl(99, 2, 0).Ctrl(100, 3, 0).On(100, 60).Off(150, 60);
  s.Off(200, 60).Finish().Map();
  Repair(s);
  EXPECT_THAT(s.Events(), ElementsAre("on 60 @0", "ctrl 1 @98", "off 60 @99", "ctrl 2 @99",
                                      "ctrl 3 @100", "on 60 @100", "off 60 @200"));
}

TEST(NoteOverlaps, AreRepairedPerKeyAndChannel) {
  TestSong s;
  s.NewTrack().On(0, 60).On(0, 61).On(0, 60, 2).On(50, 60).On(50, 61).Off(60, 61).Off(60, 60);
  s.Off(70, 60, 2).Off(80, 60).Off(80, 61).Finish().Map();
  Repair(s);
  EXPECT_THAT(s.Events(),
              ElementsAre("on 60 @0", "on 61 @0", "on 60 ch2 @0", "off 61 @49", "off 60 @49",
                          "on 60 @50", "on 61 @50", "off 60 ch2 @70", "off 60 @80", "off 61 @80"));
  EXPECT_EQ(s.functions.FoundOverlappedNotes, 2);
}

TEST(NoteOverlaps, AreLeftAloneOnIgnoredTracks) {
  TestSong s;
  s.NewTrack().On(0, 60).On(0, 60).Off(5, 60).Off(6, 60).Finish().Map();
  s.Track(0).TrkIgnore = true;
  Repair(s);
  EXPECT_EQ(s.Events().size(), 4U);
}

TEST(NoteOverlaps, AreCountedOverAllTracksAfresh) {
  TestSong s;
  for (int t = 0; t < 3; ++t) s.NewTrack().On(0, 60).On(0, 60).Off(5, 60).Off(6, 60);
  s.Finish().Map();
  s.Track(1).TrkNoteOnCnt = 2;
  s.song.MidiData[0].ActiveNotes = 6;
  Repair(s);
  EXPECT_EQ(s.functions.FoundDoubleNotes, 3);
  EXPECT_EQ(s.Track(1).TrkNoteOnCnt, 1);
  EXPECT_EQ(s.song.MidiData[0].ActiveNotes, 3);
  Repair(s);
  EXPECT_EQ(s.functions.FoundDoubleNotes, 0);
}

TEST(NoteOverlaps, AreToldToTheChangeLog) {
  TestSong s;
  ChangeLog log;
  s.NewTrack()
      .NewTrack()
      .On(0, 60)
      .On(0, 60)
      .On(10, 60)
      .Off(50, 60)
      .Off(60, 60)
      .Off(70, 60)
      .Finish()
      .Map();
  s.song.Changes = &log;
  Repair(s);
  s.song.Changes = nullptr;
  ASSERT_EQ(log.Changes().size(), 3U);
  EXPECT_EQ(log.Changes()[0].Kind, ChangeKind::Dropped);
  EXPECT_EQ(log.Changes()[0].What, "Note on 60, 100, channel 1");
  EXPECT_EQ(log.Changes()[1].What, "Note off 60, 64, channel 1");
  EXPECT_EQ(log.Changes()[1].Position, 50);
  EXPECT_EQ(log.Changes()[2].Kind, ChangeKind::Moved);
  EXPECT_EQ(log.Changes()[2].Track, 1);
  EXPECT_EQ(log.Changes()[2].OldPosition, 60);
  EXPECT_EQ(log.Changes()[2].Position, 9);
}

TEST(NoteOverlaps, LeaveNoReferenceToANoteThatIsGone) {
  TestSong s;
  s.NewTrack().On(0, 60).On(0, 60).On(1, 60).Off(5, 60).Off(6, 60).Off(7, 60).Finish().Map();
  PtrMidiEvent first = s.Event(0, 1);
  s.song.CountInArray[0].Notes = {first, s.Event(0, 2), s.Event(0, 3)};
  s.Track(0).TrkPlayEvent = s.Event(0, 3);
  s.Track(0).TrkLoopStart = s.Event(0, 4);
  Repair(s);
  EXPECT_THAT(s.Events(), ElementsAre("on 60 @0", "off 60 @7"));
  EXPECT_EQ(s.song.CountInArray[0].Notes[0], first);
  EXPECT_EQ(s.song.CountInArray[0].Notes[1], nullptr);
  EXPECT_EQ(s.song.CountInArray[0].Notes[2], nullptr);
  EXPECT_EQ(s.Track(0).TrkPlayEvent, first) << "the player goes on behind what is left";
  EXPECT_EQ(s.Track(0).TrkLoopStart, first);
  EXPECT_EQ(s.song.Pool.Live(), 4U);
}

// --- Note-offs without note-on

struct TRangeTools {
  std::vector<bool> Calls;
  explicit TRangeTools(TestSong& s) {
    s.hooks.DisableRangeTools = [this](Song&, bool windows) { Calls.push_back(windows); };
  }
};

TEST(NoteOverlaps, AskAboutADoubledNoteOffAndEndOnYes) {
  TestSong s;
  const TRangeTools tools(s);
  s.NewTrack().NewTrack().Off(480, 61, 3, 17).On(500, 60).On(500, 60).Off(600, 60).Off(700, 60);
  s.Finish().Map();
  Repair(s);
  EXPECT_THAT(s.messages.Asked,
              ElementsAre("Found double note off!\rCopy and delete range are disabled.\r\r"
                          "Abort search for \"Double notes\"?"));
  EXPECT_THAT(tools.Calls, ElementsAre(true));
  EXPECT_EQ(s.functions.FoundDoubleNotes, 0) << "the search ended";
  EXPECT_TRUE(s.messages.Shown.empty());
}

TEST(NoteOverlaps, TellInGermanWhereTheDoubledNoteOffStands) {
  const InGerman german;
  TestSong s;
  s.NewTrack().NewTrack().Off(480, 61, 3, 17).Finish().Map();
  Repair(s);
  EXPECT_THAT(s.messages.Asked,
              ElementsAre("Doppelte Note-Off entdeckt: Spur 1, Midikanal 3\r"
                          "Note 61 / C#3, mit Wert 17, bei Position 480, Time 500\r"
                          "Die Funktionen \"Bereich kopieren\" und \"löschen\" wurden deaktiviert.\r\r"
                          "Soll die Überprüfung abgebrochen werden?"));
}

TEST(NoteOverlaps, AskOncePerDoubledNoteOffAndGoOnOnNo) {
  TestSong s;
  s.messages.Answers = {false, false};
  s.NewTrack().Off(0, 61).On(1, 60).On(1, 60).Off(2, 60).On(10, 60).Off(20, 60).Off(30, 60).Off(40, 60);
  s.Finish().Map();
  Repair(s);
  EXPECT_EQ(s.messages.Asked.size(), 2U) << "a repair does not bring the question back";
  EXPECT_EQ(s.functions.FoundDoubleNotes, 1);
  EXPECT_EQ(s.functions.FoundOverlappedNotes, 1);
  EXPECT_THAT(s.Events(), ElementsAre("off 61 @0", "on 60 @1", "off 60 @9", "on 60 @10", "off 60 @30",
                                      "off 60 @40"));
}

TEST(NoteOverlaps, EndWithAMessageWhenAnOverlapHasNoEnd) {
  TestSong s;
  const TRangeTools tools(s);
  s.NewTrack().On(0, 60).On(10, 60).NewTrack().On(0, 60).On(0, 60).Off(1, 60).Off(2, 60).Finish().Map();
  Repair(s);
  EXPECT_THAT(s.messages.Shown, ElementsAre("Position for note off movement not found!"));
  EXPECT_EQ(s.functions.FoundDoubleNotes, 0) << "the tracks behind are not searched";
  EXPECT_TRUE(tools.Calls.empty());
  const InGerman german;
  Repair(s);
  EXPECT_EQ(s.messages.Shown.back(),
            "999 DoubleNoteOn.Position: 10 Position für Note Off-Verschiebung nicht gefunden!");
}

TEST(NoteOverlaps, EndWithAMessageWhenADoubledNoteHasNoEnd) {
  TestSong s;
  const TRangeTools tools(s);
  s.NewTrack().On(0, 60).On(0, 60).Finish().Map();
  Repair(s);
  EXPECT_THAT(s.messages.Shown,
              ElementsAre("Position for note off after \"double note on\" not found!"));
  EXPECT_THAT(tools.Calls, ElementsAre(false)) << "only the start entries";
  const InGerman german;
  Repair(s);
  EXPECT_EQ(s.messages.Shown.back(), "Position für NoteOff nach \"Doppelte NoteOn\" nicht gefunden!");
}

TEST(NoteOverlaps, EndWithAMessageInABrokenList) {
  TestSong s;
  s.NewTrack().On(0, 60).On(10, 60).Off(20, 60).Off(30, 60).Finish().Map();
  s.Event(0, 2)->PrevEvent = nullptr;
  s.functions.RemoveNoteOverlaps();
  EXPECT_THAT(s.messages.Shown, ElementsAre("Position for note off movement not found!"));
  const InGerman german;
  s.functions.RemoveNoteOverlaps();
  EXPECT_EQ(s.messages.Shown.back(), "Position für NoteOff-Verschiebung nicht gefunden!");
}

TEST(NoteOverlaps, DoNotMindAnOpenNoteAtTheEnd) {
  TestSong s;
  s.NewTrack().On(0, 60).Finish().Map();
  Repair(s);
  EXPECT_EQ(s.Events().size(), 1U);
  EXPECT_TRUE(s.messages.Shown.empty());
}

// --- The rule step by step: each repair starts the track afresh

struct TStepByStep {
  TestSong& S;
  int Doubled = 0;
  int Overlapped = 0;

  static bool IsOf(const TypMidiEvent& e, int kind, const TypMidiEvent& note) {
    return e.Kind() == kind && e.Channel() == note.Channel() && e.Value[0] == note.Value[0];
  }
  /// One walk: 0 nothing to repair, 1 repaired, 2 the search ends.
  int Walk() {
    TMyTrack& track = S.Track(0);
    std::array<std::array<PtrMidiEvent, KeyCount>, ChannelCount> open{};
    for (PtrMidiEvent e = track.TrkFirstEvent; e != nullptr; e = e->NextEvent) {
      if (e->Kind() != NoteOn && e->Kind() != NoteOff) continue;
      PtrMidiEvent& first = open[static_cast<std::size_t>(e->Channel())][e->Value[0]];
      if (e->Kind() == NoteOff) {
        first = nullptr;
        continue;
      }
      if (first == nullptr) {
        first = e;
        continue;
      }
      PtrMidiEvent off = e;
      while (off != nullptr && !IsOf(*off, NoteOff, *e)) off = off->NextEvent;
      if (off == nullptr) return 2;
      if (e->Position - first->Position < 2) {
        ++Doubled;
        for (const PtrMidiEvent gone : {e, off}) {
          gone->NoteOnEvent = gone->NoteOffEvent = nullptr;
          Remove(S.song, track, gone);
        }
        return 1;
      }
      ++Overlapped;
      Unlink(track, off);
      off->Position = e->Position - 1;
      PtrMidiEvent left = track.TrkFirstEvent;
      while (!(left->Position < off->Position && left->NextEvent->Position >= off->Position))
        left = left->NextEvent;
      LinkBehind(track, left, off);
      return 1;
    }
    return 0;
  }
  void Run() {
    while (Walk() == 1) {
    }
  }
};

void RandomNotes(TestSong& s, unsigned seed) {
  std::mt19937 random(seed);
  const auto upTo = [&random](int most) { return std::uniform_int_distribution<>(0, most)(random); };
  const int step = static_cast<int>(seed % 4);
  s.NewTrack();
  std::int32_t position = 0;
  for (int n = 0; n < 80; ++n) {
    position += upTo(step);
    const int kind = upTo(4);
    if (kind == 0) s.Ctrl(position, 1 + n % 100, 0);
    if (kind == 1 || kind == 2) s.On(position, 60 + upTo(1), 1 + upTo(1));
    if (kind >= 3) s.Off(position, 60 + upTo(1), 1 + upTo(1));
  }
  s.Finish().Map();
}

TEST(NoteOverlaps, EndAsTheRuleStepByStepLeavesThem) {
  int repairs = 0;
  for (unsigned seed = 0; seed < 500; ++seed) {
    TestSong s;
    TestSong expected;
    RandomNotes(s, seed);
    RandomNotes(expected, seed);
    s.messages.Answers.assign(1000, false);
    TStepByStep rule{expected};
    rule.Run();
    Repair(s);
    ASSERT_EQ(s.Events(), expected.Events()) << "seed " << seed;
    ASSERT_EQ(s.functions.FoundDoubleNotes, rule.Doubled);
    ASSERT_EQ(s.functions.FoundOverlappedNotes, rule.Overlapped);
    repairs += rule.Doubled + rule.Overlapped;
  }
  EXPECT_GT(repairs, 2000);
}

TEST(NoteOverlaps, KeepThePairsThatPairingAfreshWouldMake) {
  for (unsigned seed = 0; seed < 300; ++seed) {
    TestSong s;
    RandomNotes(s, seed);
    s.Pair();
    s.messages.Answers.assign(1000, false);
    Repair(s);
    std::vector<PtrMidiEvent> kept;
    ForEachEvent(s.Track(0), [&kept](PtrMidiEvent e) { kept.push_back(e->NoteOffEvent); });
    s.Pair();
    std::vector<PtrMidiEvent> afresh;
    ForEachEvent(s.Track(0), [&afresh](PtrMidiEvent e) { afresh.push_back(e->NoteOffEvent); });
    ASSERT_EQ(kept, afresh) << "seed " << seed;
  }
}

double SecondsToRepair(TestSong& s) {
  const auto start = std::chrono::steady_clock::now();
  s.functions.RemoveNoteOverlaps();
  return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

TEST(NoteOverlaps, CostNoSquareOfTheRepairs) {
  const auto overlapping = [](int notes) {
    TestSong s;
    s.NewTrack();
    for (int n = 0; n < notes; ++n) s.On(n * 2, 60);
    for (int n = 0; n < notes; ++n) s.Off(notes * 2, 60);
    s.Finish().Map();
    const double seconds = SecondsToRepair(s);
    EXPECT_EQ(s.functions.FoundOverlappedNotes, notes - 1);
    return seconds;
  };
  const auto doubled = [](int notes) {
    TestSong s;
    s.NewTrack();
    for (int n = 0; n < notes; ++n) s.On(0, 60);
    for (int n = 0; n < notes; ++n) s.Off(1, 60);
    s.Finish().Map();
    const double seconds = SecondsToRepair(s);
    EXPECT_EQ(s.functions.FoundDoubleNotes, notes - 1);
    return seconds;
  };
  // A walk from the start per repair would take minutes.
  EXPECT_LT(overlapping(100'000), 10.0);
  EXPECT_LT(doubled(100'000), 10.0);
}

}  // namespace
}  // namespace Sonarello
