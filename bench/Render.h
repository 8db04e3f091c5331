// Sonarello: what rendering costs.
#pragma once

#include <string>

namespace Sonarello::Bench {

struct RenderFigures {
  double Ours = 0;   ///< seconds of our render, through host, graph and instrument
  double Bare = 0;   ///< seconds of the bare synthesizer, fed with the same messages in the same blocks
  double Sound = 0;  ///< seconds of sound
};

/// Renders a song (path) on the built-in synthesizer and on the bare one.
[[nodiscard]] RenderFigures MeasureRender(const std::string& file);

}  // namespace Sonarello::Bench
