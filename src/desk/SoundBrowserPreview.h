// Sonarello: a sound is heard before it is chosen.
#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <utility>

#include "core/Ports.h"
#include "instruments/SoundList.h"
#include "playback/Outputs.h"
#include "playback/Realtime.h"
#include "playback/SendMidiData.h"
#include "playback/SongGate.h"

namespace Sonarello {

/// The controllers that a sound may bring its values for, beside its banks.
inline constexpr std::array<std::uint8_t, 6> VoiceControllers = {71, 72, 73, 74, 91, 93};

/// A sound as it goes to a device; -1 where nothing goes.
struct TVoiceMessage {
  TAddress Address;
  std::array<int, VoiceControllers.size()> Controllers{-1, -1, -1, -1, -1, -1};
};

/// Sends sounds and notes of a channel to its route. A sound that cannot go out now is parked and goes
/// out with the next start of the song. A note always ends where it began.
class TSoundPreview {
 public:
  TSoundPreview(const Song& s, const IRoutes& r, TRealtimeData& d, IOutputs& o, SongGate& g,
                TSendMidiData sender)
      : song(s), routes(r), realtime(d), outputs(o), gate(g), send(std::move(sender)) {}
  TSoundPreview(const TSoundPreview&) = delete;
  TSoundPreview& operator=(const TSoundPreview&) = delete;
  /// Ends the note.
  ~TSoundPreview() { EndNote(); }

  /// Takes hold of the port for previews: it is opened. Otherwise they only go out on a port that is
  /// open already.
  bool GrabMidiDriver = false;

  /// Sends bank, program and controllers on a channel (0-15), or parks them. True if they went out.
  /// Raises EMidiOutputError if that is how a port tells that it does not open; they are parked then.
  bool Send(int channel, const TVoiceMessage& voice);
  /// Ends the last note and starts another; key 0-127, velocity 1-127. False if nothing sounds.
  bool Play(int channel, int key, int velocity);
  void EndNote();
  [[nodiscard]] bool IsSounding() const noexcept { return sounding.has_value(); }

  /// What is parked of a channel's sound, to be put back.
  [[nodiscard]] TVoiceMessage Parked(int channel) const;
  void Park(int channel, const TVoiceMessage& voice);

 private:
  struct TNote {
    int Route;
    std::uint8_t Channel;  ///< on the wire
    std::uint8_t Key;
  };

  [[nodiscard]] bool IsReady(int channel);
  void SendHeld(int channel, const TVoiceMessage& voice);
  void Set(int channel, const TVoiceMessage& voice);

  const Song& song;
  const IRoutes& routes;
  TRealtimeData& realtime;
  IOutputs& outputs;
  SongGate& gate;
  TSendMidiData send;
  std::optional<TNote> sounding;
};

}  // namespace Sonarello
