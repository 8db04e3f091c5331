// Sonarello: what the sixteen strips work with, and which of them is the active one.
#pragma once

#include <bitset>
#include <functional>
#include <string>

#include "core/MidiFunctions.h"
#include "core/Options.h"
#include "core/Ports.h"
#include "core/Song.h"
#include "playback/MidiPlayer.h"
#include "playback/Outputs.h"
#include "playback/Realtime.h"
#include "playback/Routes.h"
#include "playback/SongGate.h"

namespace Sonarello {

/// All that the strips work with. Everything outlives them.
struct TStripsParts {
  Song& song;
  const Options& options;
  const IRoutes& routes;
  IOutputs& outputs;
  TRealtimeData& realtime;
  SongGate& gate;
  TMidiPlayer& player;
  TMidiFunctions& functions;
};

/// The user's settings that the strips read.
struct TStripsSettings {
  /// A move while the song stands still is heard at once: the port is opened for it.
  bool GrabMidiDriver = false;
  bool Flag_SpecialB = false;  ///< Ctrl means nothing to the solo and mute buttons
};

/// What the strips ask and tell. Called on the main thread with the gate free; unset ones do nothing.
/// Channels are 0-15.
struct TStripsHooks {
  std::function<void(int channel)> ShowStrip;  ///< all of a strip
  std::function<void()> ShowMutes;             ///< the mute buttons of all strips
  std::function<void(int channel)>
      ShowSolos;  ///< the solo buttons of all; where one was pressed, or -1
  /// Another strip is the active one; -1 for none.
  std::function<void(int oldChannel, int newChannel)> SelectionChanged;
  /// A control goes to a value (0-127) without its change handler.
  std::function<void(int channel, int controller, int value)> ShowController;
  /// An event has another value; or was a placeholder and is played and saved from now on.
  std::function<void(PtrMidiEvent event, bool becameReal)> EventChanged;
  std::function<void()> Changed;  ///< the song wants a backup: `AutoBackupChanged`
  /// A port did not open for a move; told once until a strip is taken anew. The value waits for the
  /// next start.
  std::function<void(const std::string& text)> PortFailed;
  std::function<void()> TransposeChange;  ///< transposition is applied anew
  std::function<void()> TempoChange;      ///< the song's times have changed while it stood still
  /// The second or third drum editor shows the channel and plays it as channel 10. Unset: as the song's
  /// own drum parts say.
  std::function<bool(int channel)> IsDrumSplit;
};

/// Calls a hook that is set.
void CallHook(const auto& hook, const auto&... arguments) {
  if (hook) hook(arguments...);
}

/// How the active channel is shown above its controllers.
struct TActiveChannelText {
  std::string Heading;     ///< "Aktiver Midikanal: 4"; empty without an active channel
  std::string Instrument;  ///< of the channel's route
  std::string OutputName;
  std::string Route;  ///< instrument and output with several routes, else empty
};

/// The ground of the strips' operations. Main thread.
class TStripsDesk : public TStripsParts {
 public:
  explicit TStripsDesk(const TStripsParts& parts) : TStripsParts(parts) {}
  TStripsDesk(const TStripsDesk&) = delete;
  TStripsDesk& operator=(const TStripsDesk&) = delete;

  TStripsSettings Settings;
  TStripsHooks Hooks;

  /// Makes a strip (0-15) the active one, whose controllers the panel shows. Nothing without a song.
  void SetMidiChannel(int MidiIndex);
  /// Makes the lowest channel with events the active one, else channel 1.
  void SelectLowestActive();
  [[nodiscard]] TActiveChannelText ActiveText() const;

  [[nodiscard]] bool IsPlaying() const { return player.State == TMidiPlayerState::stPlaying; }
  [[nodiscard]] static constexpr bool IsChannel(int channel) noexcept {
    return channel >= 0 && channel < ChannelCount;
  }
  /// True for a channel of a loaded song that has events.
  [[nodiscard]] bool IsActive(int channel) const;
  [[nodiscard]] TMidiChannelData& Data(int channel) const {
    return song.MidiData[static_cast<std::size_t>(channel)];
  }
  /// Route of a channel; one that is gone stays, and sends nothing.
  [[nodiscard]] int RouteOf(int channel) const {
    return song.MidiOutIndex[static_cast<std::size_t>(channel)];
  }
  [[nodiscard]] bool IsHosted(int route) const;
  /// True if the channel's drums are played as channel 10.
  [[nodiscard]] bool IsDrumSplit(int channel) const;
  /// Status byte (its kind without channel) of a message to a channel's device: the wire channel, or
  /// channel 10 for split drums.
  [[nodiscard]] std::uint8_t StatusTo(int channel, std::uint8_t kind) const;
  /// True if a move on a route may be sent at once. Opens the route's port if the settings say so.
  bool CanSend(int route);
  /// Ports that did not open are tried again with the next move.
  void ForgetFailures() { failed.reset(); }

 private:
  std::bitset<MostRoutes> failed;
};

}  // namespace Sonarello
