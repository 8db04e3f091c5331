// Sonarello: the place of an instrument's effect memory in a file.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "core/Options.h"
#include "core/OutputTracks.h"
#include "core/SmfEncoder.h"
#include "core/Song.h"

namespace Sonarello {

/// The live sysexes of the effect memory of the main instrument (catalogue number), at the places that
/// they take in a file, ascending. Empty for an instrument without effect memory.
[[nodiscard]] std::vector<TPlacedEvent> PlaceEffects(Song& song, const Options& options,
                                                     int instrumValue);

/// The mark in front of the messages of the effect stage, such as "F01-TY1"; empty for an instrument
/// without effect memory.
[[nodiscard]] std::string_view EffectStageMark(TWriterBranch branch, int instrumValue);

/// Tells of an event whose position is above its successor's. In German only.
[[nodiscard]] std::string WrongOrderText(std::string_view mark, const TypMidiEvent& event,
                                         std::int32_t position);

}  // namespace Sonarello
