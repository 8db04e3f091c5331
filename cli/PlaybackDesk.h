// Sonarello: everything that sounds, put together for one song at a time.
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "Composition.h"
#include "playback/MidiPlayer.h"
#include "playback/MidiPlayerThread.h"
#include "playback/RouteOutputs.h"
#include "playback/Routes.h"
#include "playback/VSTInstruments.h"
#include "playback/drivers/RtMidiDriver.h"

namespace Sonarello {

/// Ports, the built-in synthesizer, routes, player. The routes are built first, then the song is opened
/// for them, then it plays.
class PlaybackDesk {
 public:
  explicit PlaybackDesk(const Arguments& a) : arguments(a) {}
  PlaybackDesk(const PlaybackDesk&) = delete;
  PlaybackDesk& operator=(const PlaybackDesk&) = delete;

  /// Builds the routes and opens the file for them. Tells what there is to tell; a song's own messages
  /// not when it opens and the user wants quiet. False, and told, if a port is asked for that is not
  /// there, nothing can sound, or the file is refused.
  bool Prepare(const Setup& given, const std::string& file, Console& console);
  /// The setup that the song is opened with.
  [[nodiscard]] const Setup& SongSetup() const { return *setup; }
  [[nodiscard]] SongDesk& Desk() const { return *desk; }
  [[nodiscard]] TMidiPlayer& Player() { return *player; }
  [[nodiscard]] TVSTInstruments& Host() { return host; }
  [[nodiscard]] IOutputs& Outputs() { return outputs; }
  [[nodiscard]] const TRealtimeData& Realtime() const { return realtime; }
  /// Starts an audio device, the first that there is, else one that is unheard. Its name.
  std::string StartAudio();
  /// Starts the player's thread.
  void StartThread() { thread = std::make_unique<TMidiPlayerThread>(*player, clock); }

 private:
  /// Builds the routes: the port that is asked for, those of the settings, or the built-in synthesizer.
  /// The setup takes the routes. False, with the reason among the complaints, if nothing can sound.
  bool BuildRoutes(const Setup& given, std::vector<std::string>& complaints);
  /// Opens the song. False if it was refused; its messages tell why.
  bool Open(const std::string& file);
  bool LoadSynthesizer(std::vector<std::string>& complaints);
  bool ChoosePort(const std::vector<std::string>& names, std::vector<std::string>& complaints);

  const Arguments& arguments;
  RtMidiDriver midi;
  SteadyClock clock;
  SongGate gate;
  TRealtimeData realtime;
  std::vector<std::unique_ptr<IAudioDriver>> audio;  ///< before the host, whose device ends first
  TVSTInstruments host;
  TRoutes routes;
  TRouteOutputs outputs{midi, routes, &host};
  std::unique_ptr<Setup> setup;
  std::unique_ptr<SongDesk> desk;
  std::unique_ptr<TMidiPlayer> player;
  std::unique_ptr<TMidiPlayerThread> thread;  ///< last, so that it ends first
};

}  // namespace Sonarello
