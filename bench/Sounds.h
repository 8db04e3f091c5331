// Sonarello: what naming a sound costs.
#pragma once

namespace Sonarello::Bench {

struct SoundFigures {
  double Load = 0;       ///< seconds to load an instrument's tables
  double Bytes = 0;      ///< of memory that the loaded tables take
  double LookUp = 0;     ///< seconds to name one sound
  double MapLookUp = 0;  ///< seconds to find the same row in a hash map of its address
};

/// Measures the tables of an instrument by its catalogue number.
[[nodiscard]] SoundFigures MeasureSounds(int instrument);

}  // namespace Sonarello::Bench
