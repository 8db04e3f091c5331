// Builds songs directly in the store, with the tables as the reader leaves them, for tests.
#pragma once

#include <algorithm>
#include <array>
#include <cstdint>
#include <string>
#include <vector>

#include "core/Texts.h"
#include "core/TimeMap.h"
#include "helpers/InGerman.h"
#include "helpers/Workbench.h"

namespace Sonarello {

/// A workbench whose song is written down event by event: TestSong s; s.NewTrack().On(0, 60)...
/// Channels count from 1; positions are absolute ticks and must not go back inside a track. Finish()
/// ends the tracks and closes the tables from the tempo and signature metas of track 0.
struct TestSong : Workbench {
  explicit TestSong(int timeBase = 480) { song.SourceTimeBase = static_cast<std::uint16_t>(timeBase); }

  TestSong& NewTrack() {
    song.MidiTrack.emplace_back();
    song.NumberOfSourceTracks = static_cast<std::int32_t>(song.MidiTrack.size());
    BeginTrack(song.Pool, song.MidiTrack.back());
    return *this;
  }
  TestSong& On(std::int32_t position, int key, int channel = 1, int velocity = 100) {
    return Put(
        NewChannelEvent(song.Pool, Byte(0x90 + channel - 1), Byte(key), Byte(velocity), position));
  }
  TestSong& Off(std::int32_t position, int key, int channel = 1, int velocity = 64) {
    return Put(
        NewChannelEvent(song.Pool, Byte(0x80 + channel - 1), Byte(key), Byte(velocity), position));
  }
  TestSong& Ctrl(std::int32_t position, int controller, int value, int channel = 1) {
    return Put(
        NewChannelEvent(song.Pool, Byte(0xB0 + channel - 1), Byte(controller), Byte(value), position));
  }
  TestSong& Tempo(std::int32_t position, int micros) {
    const std::array bytes = {Byte(micros >> 16), Byte(micros >> 8), Byte(micros)};
    return Put(NewMeta(song.Pool, MetaTempo, bytes, position));
  }
  /// A time signature; the denominator as its exponent, 2 for a quarter.
  TestSong& Sign(std::int32_t position, int numerator, int exponent) {
    const std::array bytes = {Byte(numerator), Byte(exponent), Byte(24), Byte(8)};
    return Put(NewMeta(song.Pool, MetaTimeSignature, bytes, position));
  }
  TestSong& Put(PtrMidiEvent event) {
    Append(song.MidiTrack.back(), event);
    return *this;
  }

  /// `lastTick` stands for an event at that position; the song ends 10 ticks behind, at 999 at the
  /// earliest.
  TestSong& Finish(std::int32_t lastTick = 0) {
    if (song.MidiTrack.empty()) NewTrack();
    for (const TMyTrack& track : song.MidiTrack)
      lastTick = std::max(lastTick, track.TrkLastEvent->Position);
    song.MaxSongPosition = std::max(lastTick + 10, 999);
    for (TMyTrack& track : song.MidiTrack) EndTrack(song.Pool, track, song.MaxSongPosition);
    ReadTables();
    return *this;
  }
  TestSong& Map() {
    functions.SetTimeZones();
    functions.SetTimePositions();
    return *this;
  }
  TestSong& Pair() {
    for (const TMyTrack& track : song.MidiTrack)
      TMidiFunctions::SetNoteOnOffPointers(track.TrkFirstEvent);
    return *this;
  }

  /// The events of a track between its head and its End of track: "on 60 @0", "off 60 @480", ...
  [[nodiscard]] std::vector<std::string> Events(int track = 0) {
    std::vector<std::string> lines;
    for (PtrMidiEvent e = Track(track).TrkFirstEvent->NextEvent; !e->IsEndOfTrack(); e = e->NextEvent) {
      std::string line = "meta";
      if (e->Kind() == NoteOn) line = "on " + std::to_string(e->Value[0]);
      if (e->Kind() == NoteOff) line = "off " + std::to_string(e->Value[0]);
      if (e->Kind() == Controller) line = "ctrl " + std::to_string(e->Value[0]);
      if (e->Command < 0xF0 && e->Channel() != 0) line += " ch" + std::to_string(e->Channel() + 1);
      lines.push_back(line + " @" + std::to_string(e->Position));
    }
    return lines;
  }

 private:
  static std::uint8_t Byte(int value) { return static_cast<std::uint8_t>(value); }

  void ReadTables() {
    for (PtrMidiEvent e = song.MidiTrack[0].TrkFirstEvent; e != nullptr; e = e->NextEvent) {
      if (e->IsMeta(MetaTempo) && e->Meta.size() == 3)
        song.SourceTempo.push_back(TempoEntry(e->Position, e->Meta.Bytes()));
      if (e->IsMeta(MetaTimeSignature) && e->Meta.size() == 4)
        song.TimeSignature.push_back(TimeSignEntry(e->Position, e->Meta.Bytes()));
    }
    song.SourceTempo.resize(std::max<std::size_t>(song.SourceTempo.size(), 1) + 1);
    song.TimeSignature.resize(std::max<std::size_t>(song.TimeSignature.size(), 1) + 1);
    song.SourceTempoElements = static_cast<std::int32_t>(song.SourceTempo.size());
    song.TimeSignElements = static_cast<std::int32_t>(song.TimeSignature.size());
    CloseTimeTables(song);
  }
};

}  // namespace Sonarello
