// Sonarello: songs that the benchmarks are measured on.
#pragma once

#include <cstdint>
#include <string_view>
#include <vector>

namespace Sonarello::Bench {

using Bytes = std::vector<std::uint8_t>;

/// A song of everyday mixture with about `events` events: format 1, a conductor's track and one track
/// per channel; about 84 % notes, then controllers, bends, aftertouch, programs, sysex, lyrics, tempi.
[[nodiscard]] Bytes MixedSong(int events);

/// A song of the same mixture whose events stand in one track, of channel 1.
[[nodiscard]] Bytes OneTrackSong(int events);

/// A song of an awkward shape, by its size.
struct Shape {
  std::string_view Name;
  int Size;  ///< events of the kind that makes it awkward
  Bytes (*Make)(int size);
};

/// The shapes on which careless code takes the square of their size.
[[nodiscard]] const std::vector<Shape>& AwkwardShapes();

}  // namespace Sonarello::Bench
