// Sonarello: what the logic knows, as the panels take it.
#pragma once

#include "app/panels/EffectRow.h"
#include "app/panels/LyricBar.h"
#include "desk/EffectRow.h"
#include "desk/LyricLines.h"

namespace Sonarello {

/// Why nothing can be recorded.
[[nodiscard]] QString NoRecording();

/// The lyric bar at a moment. `german`: chords with H.
[[nodiscard]] LyricView LyricViewOf(const TLyricLines& lyrics, const TLyricMoment& moment, bool german);

/// The cells of the effect row; without a song nothing is known of them. None opens: their editors are
/// not part of this version.
[[nodiscard]] EffectsView EffectsViewOf(const TEffectRow& effects, bool song);

}  // namespace Sonarello
