// Sonarello: what playing and rendering cost.
#pragma once

#include <string>

namespace Sonarello::Bench {

struct PlayerFigures {
  double Walk = 0;   ///< seconds of a plain walk over the song's lists
  double Move = 0;   ///< seconds to wind to the song's end
  double Tempo = 0;  ///< seconds of a live tempo change
  double Pass = 0;   ///< seconds of a pass with nothing due, 17 tracks
  double Fader = 0;  ///< seconds of one move of a fader
};

/// Measures a player on a song that is opened for an instrument by its catalogue number.
[[nodiscard]] PlayerFigures MeasurePlayer(const std::string& file, int instrument);

}  // namespace Sonarello::Bench
