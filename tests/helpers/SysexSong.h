// A song made of sysexes in the store, for tests of their analysis.
#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <string_view>
#include <vector>

#include "core/ChangeLog.h"
#include "core/Texts.h"
#include "helpers/Workbench.h"

namespace Sonarello {

/// Bytes of a text such as "7E 7F 09 01 F7".
inline Bytes FromHex(std::string_view text) {
  Bytes bytes;
  for (std::size_t i = 0; i + 1 < text.size(); i += 3)
    bytes.push_back(static_cast<std::uint8_t>(std::stoi(std::string(text.substr(i, 2)), nullptr, 16)));
  return bytes;
}
inline std::string ToHex(std::span<const std::uint8_t> bytes) {
  constexpr std::string_view digits = "0123456789ABCDEF";
  std::string text;
  for (const std::uint8_t byte : bytes) {
    if (!text.empty()) text += ' ';
    text += digits[byte >> 4];
    text += digits[byte & 15];
  }
  return text;
}

inline constexpr const char* GMReset = "7E 7F 09 01 F7";
inline constexpr const char* GM2Reset = "7E 7F 09 03 F7";
inline constexpr const char* XGReset = "43 10 4C 00 00 7E 00 F7";
inline constexpr const char* GSReset = "41 10 42 12 40 00 7F 00 41 F7";

/// A workbench whose song has so many tracks, each with a head; the song ends at tick 20000.
struct SysexSong : Workbench {
  explicit SysexSong(int instrument, int tracks = 3) {
    Instrument(instrument);
    song.MidiFileFormat = song.MidiFileOrgFormat = tracks > 1 ? 1 : 0;
    song.NumberOfSourceTracks = tracks;
    song.MidiTrack.resize(static_cast<std::size_t>(tracks));
    song.KeySignArray.resize(static_cast<std::size_t>(tracks));
    song.MaxSongPosition = 20000;
    song.TickPositionOfFirstNote = 1920;
    song.SourceTempo.push_back({.SongPosition = 0, .TempoLongInt = 500000, .Tempo = 120});
    song.Changes = &log;
    for (TMyTrack& track : song.MidiTrack) BeginTrack(song.Pool, track);
  }

  /// Appends a sysex; positions of a track must ascend.
  PtrMidiEvent Sysex(int track, int position, std::string_view hex) {
    PtrMidiEvent e = NewSysex(song.Pool, FromHex(hex), position);
    Append(Track(track), e);
    return e;
  }
  PtrMidiEvent Note(int track, int position, int channel = 1) {
    const auto on = static_cast<std::uint8_t>(0x90 + channel - 1);
    PtrMidiEvent e = NewChannelEvent(song.Pool, on, 60, 100, position);
    Append(Track(track), e);
    return e;
  }
  PtrMidiEvent Name(int track, int position, std::string_view text) {
    PtrMidiEvent e = NewMeta(song.Pool, MetaTrackName, text, position);
    Append(Track(track), e);
    return e;
  }

  /// Ends the tracks where they are open, as the reader leaves them, and has the sysexes fitted.
  void Fit() {
    functions.SourceSysexes.clear();
    song.SysexFoundOnTrack = -1;
    for (int t = 0; t < song.NumberOfSourceTracks; ++t) {
      EndTrack(song.Pool, Track(t), song.MaxSongPosition);
      ForEachEvent(Track(t), [&](PtrMidiEvent e) {
        if (e->Command != Status::Sysex) return;
        functions.SourceSysexes.push_back({t, e});
        song.SysexFoundOnTrack = t;
      });
    }
    functions.CheckSysexs();
    EXPECT_THAT(CheckSong(song), testing::IsEmpty());
    ExpectListUpToDate();
  }

  /// Live sysexes of a track as "tick: bytes".
  [[nodiscard]] std::vector<std::string> Live(int track) {
    std::vector<std::string> lines;
    ForEachEvent(Track(track), [&](PtrMidiEvent e) {
      if (e->Command == Status::Sysex && e->DLength > 0)
        lines.push_back(std::to_string(e->Position) + ": " + ToHex(e->Meta.Bytes()));
    });
    return lines;
  }
  /// Where an event stands: "track/tick", or "-".
  [[nodiscard]] std::string PlaceOf(PtrMidiEvent event) {
    for (int t = 0; t < song.NumberOfSourceTracks; ++t)
      for (PtrMidiEvent e = Track(t).TrkFirstEvent; e != nullptr; e = e->NextEvent)
        if (e == event) return std::to_string(t) + "/" + std::to_string(e->Position);
    return "-";
  }
  /// Changes of a kind as "track/tick why".
  [[nodiscard]] std::vector<std::string> Told(ChangeKind kind) const {
    std::vector<std::string> lines;
    for (const TChange& c : log.Changes())
      if (c.Kind == kind)
        lines.push_back(std::to_string(c.Track) + "/" + std::to_string(c.Position) + " " + c.Why);
    return lines;
  }

  ChangeLog log;

 private:
  /// The list of sysexes must be what a walk over the song finds, in the same order.
  void ExpectListUpToDate() {
    std::vector<PtrMidiEvent> walked;
    std::vector<PtrMidiEvent> listed;
    for (int t = 0; t < song.NumberOfSourceTracks; ++t)
      ForEachEvent(Track(t), [&](PtrMidiEvent e) {
        if (e->Command == Status::Sysex) walked.push_back(e);
      });
    for (const auto& sysex : functions.SourceSysexes) listed.push_back(sysex.Event);
    EXPECT_EQ(listed, walked);
  }
};

}  // namespace Sonarello
