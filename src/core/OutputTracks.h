// Sonarello: how a song is laid out as the tracks of a file.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <vector>

#include "core/DeskCopy.h"
#include "core/SmfEncoder.h"
#include "core/Song.h"

namespace Sonarello {

/// The three ways of a song into a file.
enum class TWriterBranch : std::uint8_t {
  Split,   ///< format 0 into format 1: the events by channel (messages marked "F01-")
  Tracks,  ///< format 1 into format 1: the song's tracks (messages marked "F1-")
  Mixed,   ///< into format 0: everything in one track (messages marked "F0-")
};

/// One track of the file. The source events are not copied, they are met when they are encoded.
struct TOutputTrack {
  std::vector<const TypMidiEvent*> Front;  ///< at tick 0, in front of the source events
  bool Written = true;                     ///< false for an empty track, once the events were counted
};

/// What a file is made of, apart from the source events.
struct TOutputPlan {
  TWriterBranch Branch = TWriterBranch::Tracks;
  bool SourceIsFormat0 = false;
  std::vector<TOutputTrack> Tracks;   ///< split: 0, then channel + 1, then any extra track for sysexes
  std::size_t SysexTarget = 0;        ///< output track of the split's sysexes and of the effects
  std::vector<TPlacedEvent> Effects;  ///< merged into the track `SysexTarget`
};

/// The tracks in use.
[[nodiscard]] std::span<const TMyTrack> SourceTracks(const Song& song) noexcept;

/// The plan's tracks, empty, for the target format.
[[nodiscard]] TOutputPlan EmptyPlan(const Song& song, int format, bool sysexsOnExtraTrack);

/// Output track of an event when a format 0 song is split, or -1 for an event that the writer makes
/// anew (track names, End of track).
[[nodiscard]] int SplitTarget(const TypMidiEvent& event, std::size_t sysexTarget);

/// The channel (0-15) that is alone on an output track, or -1.
[[nodiscard]] int ChannelOfOutput(const TOutputPlan& plan, const Song& song, std::size_t track);

/// The output tracks as they stand in the file: each at the place of its output channel, all others
/// where they were, the empty ones left out (the first track is always there).
[[nodiscard]] std::vector<std::size_t> FileOrder(const TOutputPlan& plan, const Song& song,
                                                 const DeskCopy& desk);

/// Name of a file (path, UTF-8) without folder and extension.
[[nodiscard]] std::string SongNameOf(const std::string& fileName);

}  // namespace Sonarello
