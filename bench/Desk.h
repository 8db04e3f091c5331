// Sonarello: what a hand on the desk costs.
#pragma once

#include "desk/StripsDesk.h"

namespace Sonarello::Bench {

/// Seconds of one move of a fader while the song plays, the sixteen channels in turn.
[[nodiscard]] double MeasureFader(const TStripsParts& parts);

}  // namespace Sonarello::Bench
