#include "core/Song.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <set>

#include "helpers/ReaderBench.h"

namespace Sonarello {
namespace {

using testing::IsEmpty;

TEST(Song, ClearsAnEmptyStoreHarmlessly) {
  Song song;
  song.MidiFileLoaded = true;
  song.MidiData[3].Active = true;
  song.ClearMidiMemory();
  song.ClearMidiMemory();
  EXPECT_FALSE(song.MidiFileLoaded);
  for (const TMidiChannelData& channel : song.MidiData) EXPECT_FALSE(channel.Active);
  EXPECT_EQ(song.Pool.Live(), 0u);
}

TEST(Song, FreesEveryNodeAndKeepsTheArrayOfTracks) {
  ReaderBench w;
  w.Decode(Smf(1)
               .Track()
               .Text(1, "a")
               .End()
               .Track()
               .Note(1, 60, 0, 10)
               .Ctrl(1, 7, 1)
               .Prog(1, 2)
               .End()
               .Build());
  w.song.MidiFileLoaded = true;
  for (TMidiChannelData& channel : w.song.MidiData) channel.Active = true;
  w.song.ClearMidiMemory();
  EXPECT_EQ(w.song.Pool.Live(), 0u);
  ASSERT_EQ(w.song.MidiTrack.size(), 2u);
  EXPECT_EQ(w.song.NumberOfSourceTracks, 2);
  for (const TMyTrack& track : w.song.MidiTrack) {
    EXPECT_EQ(track.TrkFirstEvent, nullptr);
    EXPECT_EQ(track.TrkLastEvent, nullptr);
    EXPECT_EQ(track.TrkPlayEvent, nullptr);
    EXPECT_EQ(track.TrkEventCounter, 0);
  }
  EXPECT_FALSE(w.song.MidiFileLoaded);
  for (const TMidiChannelData& channel : w.song.MidiData) EXPECT_FALSE(channel.Active);
  w.song.ForEachReference([](PtrMidiEvent& e) { EXPECT_EQ(e, nullptr); });
}

TEST(Song, NamesEveryReferenceOnce) {
  Song song;
  song.KeySignArray.resize(2);
  song.KeySignArray[1].ValArray.resize(3);
  std::set<PtrMidiEvent*> places;
  std::size_t visits = 0;
  song.ForEachReference([&](PtrMidiEvent& e) {
    places.insert(&e);
    ++visits;
  });
  EXPECT_EQ(places.size(), visits);
  // Patches, controllers, the desk's own of both, eleven tables of parts, count-ins, keys, single
  // events.
  EXPECT_EQ(visits, 16u + 16 * 128 + 16 * 129 + 11 * 16 + 16 * 16 + 3 + 9);
}

TEST(Song, KnowsTheEffectMemoriesByTheInstrumentsNumbers) {
  Song song;
  const int values[] = {9, 26, 31, 41, 51, 54, 59, 62, 69, 70, 74, 80, 87, 97};
  std::set<TMyTrack*> tracks;
  for (const int value : values) tracks.insert(song.DSPTrackOf(value));
  EXPECT_EQ(tracks.size(), 14u);
  EXPECT_FALSE(tracks.contains(nullptr));
  EXPECT_EQ(song.DSPTrackOf(0), nullptr);
  EXPECT_EQ(song.DSPTrackOf(255), nullptr);
  EXPECT_EQ(song.DSPTrackOf(87), &song.DSPTracks.GenosDSPTrack);
  EXPECT_EQ(song.DSPTrackOf(9), &song.DSPTracks.Tyros1DSPTrack);
  EXPECT_EQ(song.DSPTrackOf(97), &song.DSPTracks.PSRSX900DSPTrack);
}

TEST(Song, ClearsTheEffectMemories) {
  Song song;
  TMyTrack& memory = *song.DSPTrackOf(87);
  BeginTrack(song.Pool, memory);
  song.ClearMidiMemory();
  EXPECT_EQ(memory.TrkFirstEvent, nullptr);
  EXPECT_EQ(memory.TrkEventCounter, 0);
  EXPECT_EQ(song.Pool.Live(), 0u);
}

TEST(Song, ResetsItsChannels) {
  Song song;
  song.MidiData[4].MidiChannel = 9;
  song.MidiData[4].Patch = 3;
  song.MidiData[4].Mute = true;
  song.MidiData[4].CtrlArray[7].Value = 1;
  song.MidiData[4].DrumPart = 1;
  song.MidiOutIndex[4] = 2;
  song.VelocityDelta[4] = 5;
  song.ResetChannels();
  for (int c = 0; c < ChannelCount; ++c) {
    const TMidiChannelData& channel = song.MidiData[static_cast<std::size_t>(c)];
    EXPECT_EQ(channel.MidiChannel, c);
    EXPECT_EQ(channel.Patch, -1);
    EXPECT_FALSE(channel.Mute);
    EXPECT_EQ(channel.DrumPart, 0);
    EXPECT_EQ(channel.CtrlArray[7].Value, 255);
  }
  EXPECT_EQ(song.MidiOutIndex[4], 0);
  EXPECT_EQ(song.VelocityDelta[4], 0);
}

TEST(Song, ReusesItsMemoryForTheNextSong) {
  ReaderBench w;
  const Bytes file = Smf(1).Track().End().Track().Note(1, 60, 0, 10).End().Build();
  ASSERT_EQ(w.Verdict(file), "");
  const PtrMidiEvent head = w.Track(0).TrkFirstEvent;
  for (int i = 0; i < 50; ++i) ASSERT_EQ(w.Verdict(file), "");
  EXPECT_EQ(w.Track(0).TrkFirstEvent, head);
  EXPECT_THAT(CheckSong(w.song), IsEmpty());
}

}  // namespace
}  // namespace Sonarello
