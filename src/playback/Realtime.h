// Sonarello: what the desk has changed and no device knows yet, and the meters of what sounds.
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <vector>

#include "core/Song.h"

namespace Sonarello {

inline constexpr std::int32_t NothingPending = -1;

/// Pending values of a channel; -1 where nothing is pending. The route and the velocity offset of a
/// channel are the song's (`Song::MidiOutIndex`, `Song::VelocityDelta`), since a saved file holds them.
struct TRealtime {
  std::uint8_t MidiChannel = 0;  ///< channel on the wire, 0-15, normally the song channel
  std::array<std::int32_t, ControllerCount> Ctrl{};
  std::array<std::int8_t, KeyCount> DrumLevel{};
  std::array<std::int8_t, KeyCount> DrumLowPass{};
  std::array<std::int8_t, KeyCount> DrumPitch{};
  std::array<std::int8_t, KeyCount> DrumReverb{};
  std::int8_t Patch = -1;
  std::int8_t AllSoundOff = -1;
  std::int8_t Volume = -1;
};

/// Level meter of a channel: rises at once, falls exponentially.
struct TRMSValue {
  std::int16_t Level = 0;  ///< what is shown, 0-127
  std::int16_t Count = 0;  ///< notes that sound
  std::int16_t Peak = 0;   ///< highest velocity of those notes
};

inline constexpr int RealtimeCount = ChannelCount + 1;

/// The pending values of all channels. Guarded by the song's gate.
struct TRealtimeData {
  std::array<TRealtime, RealtimeCount> Realtime;
  std::array<TRMSValue, ChannelCount> RMSValue{};
  bool RealtimeData = false;
  bool RealtimeInsertFx = false;            ///< the insert effects go out with the next start
  std::vector<std::uint8_t> RealtimeSysex;  ///< a sysex behind F0 that goes out with the next start

  TRealtimeData() {
    InitializeRealtimeData();
    ResetChannels();
  }
  /// Forgets everything pending and darkens the meters. The wire channels stay.
  void InitializeRealtimeData() noexcept;
  /// Every channel goes out as its own number again.
  void ResetChannels() noexcept;
};

}  // namespace Sonarello
