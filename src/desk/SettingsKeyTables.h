// Sonarello: the rows of the settings that the song core does not read.
#pragma once

#include <span>

#include "desk/SettingsKeys.h"

namespace Sonarello {

/// The program, its windows, playing, recording, lyrics, hosted sound.
[[nodiscard]] std::span<const TSettingsKey> DeskKeys();
/// The effect blocks of the instruments.
[[nodiscard]] std::span<const TSettingsKey> EffectKeys();
/// Keys whose values stay in the store as they are, each with the reason.
[[nodiscard]] std::span<const TSettingsKey> KeptKeys();

}  // namespace Sonarello
