// Sonarello: the owner of the song and of everything that works on it.
#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "core/ChangeLog.h"
#include "core/MidiFunctions.h"
#include "core/Options.h"
#include "core/Ports.h"
#include "core/Song.h"
#include "desk/DeskSettings.h"
#include "desk/MyRegistry.h"
#include "desk/SilentOutput.h"
#include "desk/SongObserver.h"
#include "desk/Strips.h"
#include "instruments/SoundNames.h"
#include "playback/MidiPlayer.h"
#include "playback/MidiPlayerThread.h"
#include "playback/Redirection.h"
#include "playback/Rerouting.h"
#include "playback/RouteOutputs.h"
#include "playback/Routes.h"
#include "playback/Transpose.h"
#include "playback/VSTInstruments.h"
#include "playback/VirtualKeys.h"
#include "playback/Winding.h"
#include "tools/NewMidiData.h"

namespace Sonarello {

/// What a desk stands on. Everything outlives it.
struct TDeskParts {
  IRegistryStore& store;
  IMessages& messages;
  IMidiDriver& midi;
  IClock& clock;
  /// Audio systems, the preferred one first.
  std::function<std::vector<std::unique_ptr<IAudioDriver>>()> FindAudio;
  /// Loads the built-in synthesizer; raises TAudioError. Unset: there is none.
  std::function<std::unique_ptr<IHostedInstrument>()> LoadSynthesizer;
};

/// Owns the one song, options, routes, player and what the strips do. Everything runs on the main
/// thread, but `ReadSong`, which another thread may run while the main thread keeps off the song.
class Desk {
 public:
  explicit Desk(const TDeskParts& parts);
  Desk(const Desk&) = delete;
  Desk& operator=(const Desk&) = delete;
  ~Desk();

  // --- Start and outputs (DeskPlayback.cpp)

  /// Reads settings and routes, builds the routes for the ports that there are, and starts the player's
  /// thread. Quick: nothing is loaded.
  void Start();
  /// Takes over `options` and `settings` wherever they are used.
  void SettingsChanged();
  /// Loads the built-in synthesizer and starts an audio device, then builds the routes anew. What
  /// failed is among `Complaints`.
  void StartAudio();
  /// Builds the routes from `Routes().MidiRouteLoad` and what there is now. The player is stopped.
  void BuildRoutes();
  /// Names of outputs that a route can have, hosted instruments included, and of MIDI inputs.
  [[nodiscard]] std::vector<std::string> OutputNames() const;
  [[nodiscard]] std::vector<std::string> InputNames() const;
  /// True when the routes are built with all that there is.
  [[nodiscard]] bool MidiDriverReady() const noexcept { return ready; }
  /// What went wrong with outputs, for the user; empty when all is well. Sound lists are told in
  /// messages.
  [[nodiscard]] const std::vector<std::string>& Complaints() const noexcept { return complaints; }

  // --- The song (DeskSong.cpp)

  /// Opens a file (path, UTF-8). A file that is refused leaves the song that is there; why was shown.
  bool OpenMidiFile(const std::string& file);
  bool NewMidiFile(const TNewSong& wishes);
  /// The steps of opening: stops the player and lets go of the old song's displays; reads, on any
  /// thread; shows. `ReadSong` is true if the new song is in the store. Behind a file that was refused
  /// `ShowSong` has nothing to show: the song stays as the user left it.
  void LeaveSong();
  bool ReadSong(const std::string& file, const TNewSong* wishes = nullptr);
  void ShowSong();
  /// Writes the song (format 0 or 1). False if that failed; why was shown.
  bool SaveMidiFile(const std::string& file, int format);
  /// The song was changed: it wants saving and a backup.
  void Changed();
  [[nodiscard]] bool IsModified() const noexcept { return modified; }
  bool AutoBackupChanged = false;  ///< changed since the last backup
  /// Verdict of the note check; empty for a clean song. False: range tools may not work.
  [[nodiscard]] const std::string& NoteCheck() const noexcept { return noteCheck; }

  // --- Playing (DeskPlayback.cpp)

  /// Plays from where the song stands. False without a song or if an output did not open; told then.
  bool PlayButtonClick();
  /// While playing a pause; else back to the start and its first values.
  void StopButtonClick();
  [[nodiscard]] bool IsPlaying() const noexcept { return player.State == TMidiPlayerState::stPlaying; }
  /// The song ran out: back to the start.
  void EndOfSong();
  /// Repeats a range (ms); an empty or reversed one is refused with false.
  bool SetLoop(std::int32_t start, std::int32_t end);
  void EndLoop();
  /// Moves by so many ms, within the song.
  void Wind(std::int32_t milliseconds);
  /// Transposes the song (semitones, -24 to 24).
  void TransposeTo(int semitones);
  void MoveOctave(int channel, int octaves);

  [[nodiscard]] IClock& Clock() noexcept { return parts.clock; }
  [[nodiscard]] IMessages& Messages() noexcept { return parts.messages; }
  [[nodiscard]] IRegistryStore& Store() noexcept { return parts.store; }
  [[nodiscard]] TRoutes& Routes() noexcept { return routes; }
  [[nodiscard]] IOutputs& Outputs() noexcept { return outputs; }
  [[nodiscard]] TMidiFunctions& Functions() noexcept { return functions; }
  [[nodiscard]] TMidiPlayer& Player() noexcept { return player; }
  [[nodiscard]] TVSTInstruments& Host() noexcept { return host; }
  [[nodiscard]] const SongHooks& Hooks() const noexcept { return hooks; }
  /// Route of a channel (0-15).
  [[nodiscard]] const TMidiRouting& RouteOf(int channel) const;
  /// Loads the tables of the instruments in use; for `sorted` see the loading of lists.
  void LoadSounds();
  /// Loads them anew, as an option that the lists depend on has changed. No browser is open.
  void ReloadSounds();
  [[nodiscard]] SoundSets& Sounds() noexcept { return sounds; }
  [[nodiscard]] TSendMidiData Sender();

  Song song;
  Options options;
  DeskSettings settings;
  SongGate gate;
  TRealtimeData realtime;
  std::vector<SongObserver*> Observers;
  /// Steps of opening and saving that windows have a part in, told behind the desk's own.
  SongHooks WindowHooks;
  /// True for the tables of an instrument that are to be sorted by name.
  std::function<bool(int instrumValue)> SortSounds;

  /// The song is about to be replaced; called on the main thread, before anything of it goes.
  std::function<void()> LeavingSong;

  /// Tells all observers.
  void Tell(const std::function<void(SongObserver&)>& what);

 private:
  void WireHooks();
  void WireWork();
  void WireStrips();
  bool IsReadable(const std::string& file);

  TDeskParts parts;
  std::vector<std::string> complaints;
  std::vector<std::unique_ptr<IAudioDriver>> audio;  ///< before the host, whose device ends first
  SilentOutput ports;
  TVSTInstruments host;
  TRoutes routes;
  TRouteOutputs outputs;
  SongHooks hooks;
  TMidiFunctions functions;
  SoundSets sounds;
  TMidiPlayer player;
  TNewSong newSong;
  std::string noteCheck;
  bool modified = false;
  bool replaced = false;  ///< the last reading put another song into the store, or none
  bool ready = false;

 public:
  TSoundNames names;
  TTranspose transpose;
  TRedirection redirection;
  TRerouting rerouting;
  PositionSlider slider;
  TVirtualKeys keys;
  TStrips strips;

 private:
  std::unique_ptr<TMidiPlayerThread> thread;  ///< last, so that it ends first
};

}  // namespace Sonarello
