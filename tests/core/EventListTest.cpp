// The splice functions keep every invariant of the lists.
#include "core/EventList.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <random>

#include "helpers/ReaderBench.h"

namespace Sonarello {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

/// A song of empty tracks that ends at tick 5000.
struct EmptySong : ReaderBench {
  explicit EmptySong(int tracks = 1) {
    song.MaxSongPosition = 5000;
    song.NumberOfSourceTracks = tracks;
    song.MidiTrack.resize(static_cast<std::size_t>(tracks));
    for (TMyTrack& track : song.MidiTrack) {
      BeginTrack(song.Pool, track);
      EndTrack(song.Pool, track, song.MaxSongPosition);
    }
  }
  PtrMidiEvent Note(int position, int key = 60, int command = 0x90) {
    return NewChannelEvent(song.Pool, static_cast<std::uint8_t>(command),
                           static_cast<std::uint8_t>(key), 100, position);
  }
  PtrMidiEvent Insert(int position, int key = 60, int track = 0) {
    PtrMidiEvent node = Note(position, key);
    InsertByPosition(Track(track), node);
    return node;
  }
  std::pair<PtrMidiEvent, PtrMidiEvent> InsertPair(int from, int to, int key = 60, int track = 0) {
    PtrMidiEvent on = Insert(from, key, track);
    PtrMidiEvent off = Note(to, key, 0x80);
    InsertByPosition(Track(track), off);
    on->NoteOffEvent = off;
    off->NoteOnEvent = on;
    return {on, off};
  }
  Lines Faults() { return CheckSong(song); }
};

TEST(EventList, MakesNodesWithTheFieldsOfTheirKind) {
  EmptySong w;
  const TypMidiEvent& program = *NewChannelEvent(w.song.Pool, 0xC3, 5, 0, 7);
  EXPECT_EQ(program.DType, ShortEvent);
  EXPECT_EQ(program.DLength, 2);
  EXPECT_EQ(program.MType, -1);
  EXPECT_EQ(program.Position, 7);
  const TypMidiEvent& bend = *NewChannelEvent(w.song.Pool, 0xE3, 1, 2, 7);
  EXPECT_EQ(bend.DLength, 3);
  EXPECT_EQ(bend.Value, bend.ValueOrg);
  const std::uint8_t bytes[] = {0x7E, 0xF7};
  EXPECT_EQ(Line(*NewSysex(w.song.Pool, bytes, 9)), "9 F0 7E F7");
  const TypMidiEvent& text = *NewMeta(w.song.Pool, MetaText, "ab", 9);
  EXPECT_EQ(Line(text), "9 FF01 61 62");
  EXPECT_EQ(text.DType, LongEvent);
  EXPECT_EQ(text.DLength, 2);
}

TEST(EventList, CopiesAllFieldsButLinksAndPair) {
  EmptySong w;
  const auto [on, off] = w.InsertPair(1, 2);
  on->TimePosition = 5;
  on->Selected = true;
  on->ListPos = 6;
  PtrMidiEvent copy = NewCopy(w.song.Pool, *on);
  EXPECT_EQ(Line(*copy), Line(*on));
  EXPECT_EQ(copy->TimePosition, 5);
  EXPECT_TRUE(copy->Selected);
  EXPECT_EQ(copy->ListPos, 6);
  EXPECT_TRUE(copy->NextEvent == nullptr && copy->PrevEvent == nullptr);
  EXPECT_TRUE(copy->NoteOffEvent == nullptr && copy->NoteOnEvent == nullptr);
}

TEST(EventList, TellsLackOfMemoryInTheUsersLanguageWithItsSite) {
  EmptySong w;
  const std::uint8_t bytes[] = {0xF7};
  const std::function<void(std::string_view)> makers[] = {
      [&](std::string_view site) { static_cast<void>(NewEvent(w.song.Pool, site)); },
      [&](std::string_view site) {
        static_cast<void>(NewChannelEvent(w.song.Pool, 0x90, 1, 1, 0, site));
      },
      [&](std::string_view site) { static_cast<void>(NewSysex(w.song.Pool, bytes, 0, site)); },
      [&](std::string_view site) { static_cast<void>(NewMeta(w.song.Pool, 1, "a", 0, site)); },
      [&](std::string_view site) { static_cast<void>(NewCopy(w.song.Pool, *w.Event(0, 0), site)); },
      [&](std::string_view site) {
        TMyTrack track;
        BeginTrack(w.song.Pool, track, site);
      }};
  const auto message = [&](auto& make, std::string_view site) -> std::string {
    w.song.Pool.FailAt(1);
    try {
      make(site);
    } catch (const EMidiError& error) {
      return error.what();
    }
    return "none";
  };
  for (const auto& make : makers) {
    EXPECT_EQ(message(make, ""), "Error allocating memory!");
    EXPECT_EQ(message(make, "1003: "), "1003: Error allocating memory!");
    const InGerman german;
    EXPECT_EQ(message(make, ""), "Speicherzuordnungsfehler: Bitte mehr Speicher!");
    EXPECT_EQ(message(make, "1066: "), "1066: Speicherzuordnungsfehler: Bitte mehr Speicher!");
  }
  EXPECT_THAT(w.Faults(), IsEmpty());
}

TEST(EventList, InsertsASecondEventOfATickBehindTheFirst) {
  EmptySong w;
  for (const int key : {1, 2, 3}) w.Insert(100, key);
  w.Insert(50, 4);
  w.Insert(150, 5);
  EXPECT_THAT(w.List(0), ElementsAre("50 90 4 100", "100 90 1 100", "100 90 2 100", "100 90 3 100",
                                     "150 90 5 100"));
  EXPECT_EQ(w.Track(0).TrkEventCounter, 7);
  EXPECT_THAT(w.Faults(), IsEmpty());
}

TEST(EventList, KeepsInsertionsInsideTheSong) {
  EmptySong w;
  w.Insert(5000, 1);
  w.Insert(9000, 2);
  w.Insert(-9000, 3);
  w.Insert(0, 4);
  EXPECT_THAT(w.List(0), ElementsAre("0 90 3 100", "0 90 4 100", "5000 90 1 100", "5000 90 2 100"));
  EXPECT_TRUE(w.Track(0).TrkFirstEvent->IsMeta(MetaPort));
  EXPECT_TRUE(w.Track(0).TrkLastEvent->IsEndOfTrack());
  EXPECT_THAT(w.Faults(), IsEmpty());
}

TEST(EventList, SearchesAPlaceFromACursor) {
  EmptySong w;
  PtrMidiEvent first = w.Insert(100, 1);
  PtrMidiEvent second = w.Insert(200, 2);
  EXPECT_EQ(PlaceFor(w.Track(0), 150), first);
  EXPECT_EQ(PlaceFor(w.Track(0), 150, first), first);
  EXPECT_EQ(PlaceFor(w.Track(0), 200, first), second);
  EXPECT_EQ(PlaceFor(w.Track(0), 99), w.Track(0).TrkFirstEvent);
  EXPECT_EQ(PlaceFor(w.Track(0), 99'999, second), second);
}

TEST(EventList, MovesAnEventBehindTheOthersOfItsNewTick) {
  EmptySong w;
  PtrMidiEvent a = w.Insert(100, 1);
  w.Insert(200, 2);
  w.Insert(300, 3);
  MoveTo(w.Track(0), a, 200);
  EXPECT_THAT(w.List(0), ElementsAre("200 90 2 100", "200 90 1 100", "300 90 3 100"));
  MoveTo(w.Track(0), a, 200);
  MoveTo(w.Track(0), a, 0);
  EXPECT_THAT(w.List(0), ElementsAre("0 90 1 100", "200 90 2 100", "300 90 3 100"));
  MoveTo(w.Track(0), a, 99'999);
  EXPECT_EQ(a->Position, 5000);
  EXPECT_EQ(a->NextEvent, w.Track(0).TrkLastEvent);
  EXPECT_THAT(w.Faults(), IsEmpty());
}

TEST(EventList, MovesTheEndOfTrackInsteadOfAppendingASecond) {
  EmptySong w;
  EndTrack(w.song.Pool, w.Track(0), 7000);
  w.song.MaxSongPosition = 7000;
  EXPECT_EQ(w.Track(0).TrkEventCounter, 2);
  EXPECT_THAT(w.Faults(), IsEmpty());
}

TEST(EventList, RemovesANoteWithItsPairFromEitherEnd) {
  for (const bool fromOn : {true, false}) {
    EmptySong w;
    w.InsertPair(100, 200, 1);
    const auto [on, off] = w.InsertPair(100, 150, 2);
    w.Track(0).TrkPlayEvent = on;
    w.Track(0).TrkLoopStart = off;
    Remove(w.song, w.Track(0), fromOn ? on : off);
    EXPECT_THAT(w.List(0), ElementsAre("100 90 1 100", "200 80 1 100"));
    EXPECT_EQ(w.Track(0).TrkEventCounter, 4);
    EXPECT_EQ(w.song.Pool.Live(), 4u);
    // The cursors stand in front of what went.
    EXPECT_EQ(w.Track(0).TrkPlayEvent, w.Event(0, 1));
    EXPECT_EQ(w.Track(0).TrkLoopStart, w.Event(0, 1));
    EXPECT_THAT(w.Faults(), IsEmpty());
  }
}

TEST(EventList, InsertsABatchAsOneByOneWould) {
  std::mt19937 random(3);
  for (int round = 0; round < 50; ++round) {
    EmptySong one;
    EmptySong batch;
    std::vector<PtrMidiEvent> nodes;
    for (int key = 0; key < 60; ++key) {
      const int position = static_cast<int>(random() % 30) * 200;
      if (key < 20) {
        one.Insert(position, key);
        batch.Insert(position, key);
      } else {
        one.Insert(position, key);
        nodes.push_back(batch.Note(position, key));
      }
    }
    InsertBatch(batch.Track(0), nodes);
    ASSERT_THAT(batch.Faults(), IsEmpty());
    // Behind the song's end the batch is in order of time, where one by one is in order of insertion.
    const auto inside = [](Lines lines) {
      std::erase_if(lines, [](const std::string& line) { return line.starts_with("5000"); });
      return lines;
    };
    ASSERT_EQ(inside(batch.List(0)), inside(one.List(0)));
  }
}

TEST(EventList, RemovesABatchWithItsPairsAndReferences) {
  EmptySong w(2);
  const auto [on, off] = w.InsertPair(100, 200, 1, 0);
  PtrMidiEvent single = w.Insert(150, 2, 1);
  PtrMidiEvent kept = w.Insert(150, 3, 1);
  w.song.FirstPatches = {on, off, single, kept};
  w.Track(1).TrkPlayEvent = single;
  std::vector<TRemoval> nodes = {
      {&w.Track(1), single}, {&w.Track(0), off}, {&w.Track(0), on}, {&w.Track(0), on}};
  RemoveBatch(w.song, nodes);
  EXPECT_THAT(w.List(0), IsEmpty());
  EXPECT_THAT(w.List(1), ElementsAre("150 90 3 100"));
  EXPECT_EQ(w.song.FirstPatches[0], nullptr);
  EXPECT_EQ(w.song.FirstPatches[1], nullptr);
  EXPECT_EQ(w.song.FirstPatches[2], nullptr);
  EXPECT_EQ(w.song.FirstPatches[3], kept);
  EXPECT_EQ(w.Track(1).TrkPlayEvent, w.Track(1).TrkFirstEvent);
  EXPECT_THAT(w.Faults(), IsEmpty());
  nodes.clear();
  RemoveBatch(w.song, nodes);
  EXPECT_EQ(w.song.Pool.Live(), 5u);
}

TEST(EventList, ForgetsEveryReferenceToARemovedEvent) {
  EmptySong w;
  std::size_t places = 0;
  w.song.KeySignArray.resize(1);
  w.song.KeySignArray[0].ValArray.resize(2);
  w.song.ForEachReference([&](PtrMidiEvent&) { ++places; });
  PtrMidiEvent kept = w.Insert(1);
  PtrMidiEvent gone = w.Insert(2);
  std::size_t i = 0;
  w.song.ForEachReference([&](PtrMidiEvent& e) { e = i++ % 2 == 0 ? gone : kept; });
  Remove(w.song, w.Track(0), gone);
  i = 0;
  w.song.ForEachReference([&](PtrMidiEvent& e) { EXPECT_EQ(e, i++ % 2 == 0 ? nullptr : kept); });
  EXPECT_EQ(i, places);
  EXPECT_GT(places, 4000u);
  EXPECT_THAT(w.Faults(), IsEmpty());
}

TEST(EventList, MarksAndNeutralisesWithoutUnlinking) {
  EmptySong w;
  PtrMidiEvent marked = w.Insert(1, 60);
  PtrMidiEvent text = NewMeta(w.song.Pool, MetaLyric, "la", 2);
  InsertByPosition(w.Track(0), text);
  MarkRemoved(marked);
  EXPECT_TRUE(marked->IsRemoved());
  EXPECT_EQ(marked->Command, 0x90);
  Neutralise(text);
  EXPECT_THAT(w.List(0), ElementsAre("-1 90 60", "-2 FF01"));
  EXPECT_EQ(text->DType, LongEvent);
  EXPECT_TRUE(text->Meta.empty());
  EXPECT_FALSE(w.Track(0).TrkLastEvent->IsRemoved());
  EXPECT_THAT(w.Faults(), IsEmpty());
}

TEST(EventList, SortsStablyByPosition) {
  EmptySong w;
  TMyTrack track;
  BeginTrack(w.song.Pool, track);
  for (const auto& [position, key] : {std::pair{5, 1}, {3, 2}, {5, 3}, {0, 4}, {3, 5}})
    Append(track, w.Note(position, key));
  SortByPosition(track);
  EndTrack(w.song.Pool, track, w.song.MaxSongPosition);
  w.song.MidiTrack[0] = std::move(track);
  EXPECT_THAT(w.List(0),
              ElementsAre("0 90 4 100", "3 90 2 100", "3 90 5 100", "5 90 1 100", "5 90 3 100"));
  EXPECT_THAT(w.Faults(), IsEmpty());
}

TEST(EventList, FindsTheFirstTrackOfAChannel) {
  EmptySong w(3);
  w.Track(1).TrkMidiIndex = w.Track(2).TrkMidiIndex = 4;
  EXPECT_EQ(TrackOfChannel(w.song, 4), 1);
  EXPECT_EQ(TrackOfChannel(w.song, 3), -1);
}

TEST(EventList, ReportsEachBrokenInvariant) {
  const auto fault = [](auto breakIt) {
    EmptySong w(2);
    w.InsertPair(100, 200);
    w.Insert(300);
    breakIt(w);
    const Lines faults = w.Faults();
    return faults.empty() ? "none" : faults.front();
  };
  EXPECT_EQ(fault([](EmptySong&) {}), "none");
  EXPECT_THAT(fault([](EmptySong& w) { w.Event(0, 2)->PrevEvent = nullptr; }), HasSubstr("neighbour"));
  EXPECT_THAT(fault([](EmptySong& w) { w.Event(0, 3)->Position = 99; }), HasSubstr("ascend"));
  EXPECT_THAT(fault([](EmptySong& w) { w.Event(0, 0)->Position = -1; }), HasSubstr("head"));
  EXPECT_THAT(fault([](EmptySong& w) { w.Event(0, 0)->MType = MetaText; }), HasSubstr("head"));
  EXPECT_THAT(fault([](EmptySong& w) { ++w.Track(0).TrkEventCounter; }), HasSubstr("TrkEventCounter"));
  EXPECT_THAT(fault([](EmptySong& w) { w.Track(0).TrkLastEvent->Position = 5001; }),
              HasSubstr("song's end"));
  EXPECT_THAT(fault([](EmptySong& w) { w.Track(0).TrkLastEvent = w.Event(0, 3); }),
              HasSubstr("TrkLastEvent"));
  EXPECT_THAT(fault([](EmptySong& w) { w.Track(0).TrkLastEvent->MType = MetaText; }),
              HasSubstr("no End of track"));
  EXPECT_THAT(fault([](EmptySong& w) { Append(w.Track(0), w.Note(5000)); }), HasSubstr("is not last"));
  EXPECT_THAT(fault([](EmptySong& w) { w.Event(0, 1)->Value[0] = 128; }), HasSubstr("above 127"));
  EXPECT_THAT(fault([](EmptySong& w) { w.Event(0, 1)->DLength = 2; }), HasSubstr("length"));
  EXPECT_THAT(fault([](EmptySong& w) { w.Event(0, 1)->NoteOffEvent = w.Event(0, 3); }),
              HasSubstr("note-on"));
  EXPECT_THAT(fault([](EmptySong& w) { w.Event(0, 3)->NoteOnEvent = w.Note(1); }),
              HasSubstr("no list"));
  EXPECT_THAT(fault([](EmptySong& w) { w.song.FirstPatches[3] = w.Note(1); }), HasSubstr("reference"));
  EXPECT_THAT(fault([](EmptySong& w) { w.Track(1).TrkFirstEvent = nullptr; }), HasSubstr("no head"));
  EXPECT_THAT(fault([](EmptySong& w) { w.song.NumberOfSourceTracks = 3; }), HasSubstr("more tracks"));
}

/// The order of a track as the rules tell it, kept beside the list.
using Model = std::vector<PtrMidiEvent>;

void InsertInto(Model& model, PtrMidiEvent node, int position) {
  const auto place = std::upper_bound(model.begin(), model.end(), std::clamp(position, 0, 5000),
                                      [](int tick, PtrMidiEvent e) { return tick < e->Position; });
  model.insert(place, node);
}

void Drop(Model& model, PtrMidiEvent node) { model.erase(std::find(model.begin(), model.end(), node)); }

/// One random operation on track 0 of a song and on its model.
void Operate(EmptySong& w, Model& model, std::mt19937& random) {
  const auto below = [&](int n) { return static_cast<int>(random() % static_cast<unsigned>(n)); };
  const int position = below(40) == 0 ? below(20'000) - 10'000 : below(60) * 100;
  TMyTrack& track = w.Track(0);
  PtrMidiEvent any =
      model.empty() ? nullptr : model[static_cast<std::size_t>(below(static_cast<int>(model.size())))];
  const int what = below(6);
  if (any == nullptr || what == 0) {
    InsertInto(model, w.Insert(position, below(128)), position);
  } else if (what == 1) {
    const auto [on, off] = w.InsertPair(position, position + 1, below(128));
    InsertInto(model, on, position);
    InsertInto(model, off, position + 1);
  } else if (what == 2) {
    Drop(model, any);
    MoveTo(track, any, position);
    InsertInto(model, any, position);
  } else if (what == 3) {
    PtrMidiEvent pair = any->NoteOnEvent != nullptr ? any->NoteOnEvent : any->NoteOffEvent;
    w.song.FirstPatches[3] = any;
    w.song.CountInArray[2].Notes[1] = pair;
    w.song.MidiData[5].CtrlArray[7].Event = any;
    Drop(model, any);
    if (pair != nullptr) Drop(model, pair);
    Remove(w.song, track, any);
  } else if (what == 4) {
    MarkRemoved(any);
  } else {
    PtrMidiEvent node = w.Note(any->Position, below(128));
    LinkBehind(track, any, node);
    model.insert(std::find(model.begin(), model.end(), any) + 1, node);
  }
}

TEST(EventList, KeepsItsInvariantsUnderRandomOperations) {
  for (unsigned seed = 1; seed <= 10; ++seed) {
    std::mt19937 random(seed);
    EmptySong w(2);
    Model model;
    for (int i = 0; i < 300; ++i) {
      Operate(w, model, random);
      ASSERT_THAT(w.Faults(), IsEmpty()) << "seed " << seed << ", operation " << i;
      PtrMidiEvent e = w.Track(0).TrkFirstEvent;
      for (PtrMidiEvent wanted : model) ASSERT_EQ(e = e->NextEvent, wanted);
      ASSERT_TRUE(e->NextEvent->IsEndOfTrack());
    }
    ASSERT_EQ(w.song.Pool.Live(), model.size() + 4);
  }
}

}  // namespace
}  // namespace Sonarello
