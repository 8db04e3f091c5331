// Sonarello: the sysexes of a song while it is fitted to an instrument.
#pragma once

#include <cstdint>
#include <span>
#include <string_view>
#include <vector>

#include "core/EventList.h"
#include "core/MidiFunctions.h"

namespace Sonarello {

using TSourceSysex = TMidiFunctions::TSourceSysex;

/// Why the user sees a change, in both languages.
struct Reason {
  std::string_view German;
  std::string_view English;
};

/// Searches and changes the sysexes that the reader listed, so that nothing walks the whole song.
/// Searches see the file's own sysexes; what is inserted joins the list on `Close`. Tracks that are
/// held out (`TrkIgnore`) are neither searched nor changed.
class SongSysexs {
 public:
  SongSysexs(Song& s, const Options& o, std::vector<TSourceSysex>& list);

  Song& song;
  const Options& options;
  /// Where the instrument's reset stands, ticks. What is set up behind it is placed relative to it.
  std::int32_t ResetPosition = 2;

  /// Calls f(TSourceSysex&) for each sysex of the file that is not removed, in track and list order.
  template <class F>
  void ForEach(F&& f) {
    for (TSourceSysex& sysex : all)
      if (!sysex.Event->IsRemoved() && !TrackOf(sysex).TrkIgnore) f(sysex);
  }
  /// The same for the setup at the song's start: the first eight beats.
  template <class F>
  void ForEachInSetup(F&& f) {
    ForEach([&](TSourceSysex& sysex) {
      if (sysex.Event->Position <= searchLimit) f(sysex);
    });
  }

  /// Inserts a sysex on `SysexTrack`, behind all events of its tick. A placeholder (`DLength` 0) is
  /// neither played nor written nor told to the user. Raises EMidiError.
  PtrMidiEvent Insert(std::span<const std::uint8_t> bytes, std::int32_t position, const Reason& why);
  PtrMidiEvent InsertPlaceholder(std::span<const std::uint8_t> bytes, std::int32_t position);
  /// Inserts a sysex that takes over what another one, now removed, held.
  PtrMidiEvent InsertInstead(const TSourceSysex& former, std::span<const std::uint8_t> bytes,
                             std::int32_t position, const Reason& why);
  /// Marks a sysex as removed.
  void Drop(const TSourceSysex& sysex, const Reason& why);
  /// Moves a sysex on its own track, behind all events of the new tick.
  void Move(const TSourceSysex& sysex, std::int32_t position, const Reason& why);

  /// Sets `SysexTrack` to the track that takes the instrument's messages. `followDrums`: with
  /// `SpecialD` it is the drum track.
  void ChooseSysexTrack(bool followDrums);

  /// Brings the list up to date and takes the sysexes off the tempo track.
  void Close();

 private:
  /// A sysex that fitting put in or moved, and how that is told.
  struct Placed {
    TSourceSysex Sysex;
    const Reason* Why;  ///< nil for a placeholder
    bool New;
    std::int32_t OldTrack;
    std::int32_t OldPosition;
  };

  TMyTrack& TrackOf(const TSourceSysex& sysex) {
    return song.MidiTrack[static_cast<std::size_t>(sysex.Track)];
  }
  [[nodiscard]] std::int32_t UsableTrack(std::int32_t track) const;
  [[nodiscard]] PtrMidiEvent StartFor(std::int32_t track, std::int32_t position) const;
  PtrMidiEvent Place(std::span<const std::uint8_t> bytes, std::int32_t position);
  void LeaveTempoTrack();
  void TellPlaced();

  std::vector<TSourceSysex>& all;
  std::vector<Placed> placed;
  std::int32_t searchLimit;
};

}  // namespace Sonarello
