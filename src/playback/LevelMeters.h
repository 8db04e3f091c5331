// Sonarello: level meters of the channels and lights of the drum notes, as data.
#pragma once

#include <bitset>
#include <cstdint>
#include <span>

#include "core/Data.h"
#include "playback/Realtime.h"

namespace Sonarello {

/// A note was started. Velocity 1-127.
void MeterNoteOn(TRMSValue& meter, int velocity) noexcept;
/// A note has ended; nothing happens if none was counted.
void MeterNoteOff(TRMSValue& meter) noexcept;
/// One step of the meters, every 30 ms: a level rises to its peak at once and falls by a sixteenth, at
/// least by 2. A channel on which no note sounds has no peak from the next step on.
void UpdateRMS(std::span<TRMSValue> meters) noexcept;

/// How long the light of a drum note stays on, ms: three steps of the meters, so that the
/// shortest hit is seen.
inline constexpr std::int32_t DrumLightTime = 100;

/// Lights of the notes of a drum channel at a song position (ms): which are on. A light that has been
/// on for `holdTime` goes out; so does one that lies as far ahead, which a jump back left behind.
std::bitset<KeyCount> UpdateDrumLights(std::span<TDrumsRec, KeyCount> drums, std::int32_t position,
                                       std::int32_t holdTime = DrumLightTime) noexcept;

}  // namespace Sonarello
