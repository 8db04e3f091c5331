// Sonarello: plays a song: what falls due goes out, by a clock, with a cursor in each track.
#pragma once

#include <array>
#include <atomic>
#include <cstdint>
#include <functional>
#include <vector>

#include "core/MidiFunctions.h"
#include "core/Options.h"
#include "core/Ports.h"
#include "core/Song.h"
#include "playback/Clock.h"
#include "playback/HostedAudio.h"
#include "playback/NoteLedger.h"
#include "playback/Outputs.h"
#include "playback/Realtime.h"
#include "playback/SongGate.h"
#include "playback/SysexPacer.h"

namespace Sonarello {

enum class TMidiPlayerState { stStopped, stPlaying };

/// State word of the player's thread.
enum TPlayThreadTag : int {
  MidiReady = 0,
  InMidiPass = 1,
  AudioReady = 2,
  InAudioPass = 3,
  Parked = 99,
};

/// What the player tells those above it. Called with the gate held, from the thread that the comment
/// names; unset ones do nothing.
struct TPlayerHooks {
  std::function<void()> LoopRewound;   ///< player's thread: the lyrics go back to `LoopStart`
  std::function<void()> TempoApplied;  ///< player's thread: times of the song have changed
  std::function<void()>
      ReadFirstValues;  ///< main thread: a second stop; the desk shows the song's start
  std::function<void()> SendInsertSysexs;  ///< main thread, gate free: insert effects go out
};

/// A note that a pass has started.
struct TNotePlayed {
  std::uint8_t Channel = 0;  ///< 0-15
  std::uint8_t Key = 0;
  std::uint8_t Velocity = 0;  ///< as it went out
};
inline constexpr int MostNotesOfPass = 64;

/// All that a player works with. Everything outlives it.
struct TPlayerParts {
  Song& song;
  const Options& options;
  const IRoutes& routes;
  IOutputs& outputs;
  IClock& clock;
  SongGate& gate;
  TRealtimeData& realtime;
  TMidiFunctions& functions;
  IHostedAudio* audio = nullptr;  ///< nil: no hosted sound
};

/// The player. `PlayMidiData` is called over and over by its thread, every other operation by the main
/// thread. Each takes the gate for itself.
class TMidiPlayer {
 public:
  explicit TMidiPlayer(const TPlayerParts& parts) : p(parts) {}
  TMidiPlayer(const TMidiPlayer&) = delete;
  TMidiPlayer& operator=(const TMidiPlayer&) = delete;

  // --- Main thread

  /// The song in the store is a new one: everything starts anew.
  void SongChanged();
  /// `PreparePlay`, then `StartPlay`. False if a port did not open.
  bool Play();
  /// Opens the ports, resets further instruments, sends what is pending. False if a port did not open;
  /// raises EMidiOutputError if that is how the port says so.
  bool PreparePlay();
  void StartPlay();
  /// While playing: pauses, ends all notes. While stopped: back to the start, first values.
  void Stop();
  /// Winds to a position (ms, 0 to the song's length): the model's values follow, nothing is sent.
  void MoveToTimePosition(std::int32_t NewTimePosition);
  /// A range that repeats, ms. Sets the tracks' loop starts.
  void SetLoop(std::int32_t loopStart, std::int32_t loopEnd);
  void EndLoop();
  /// Sends controllers 120 and 123 to a channel and ends its notes; for a channel that is muted.
  void SilenceChannel(int channel);
  /// Ends every note that sounds, on all routes.
  void EndAllNotes();

  // --- Any thread but the player's, which holds the gate

  /// A short message. A port's failure loses the message and is not told.
  void SendMidiData(int MidiOutIndex, std::uint8_t Command, std::uint8_t Data1, std::uint8_t Data2);
  /// A sysex; `SysData` stands behind the command byte (F0). To a hosted route directly; to a port by
  /// the route of the channel whose number is `MidiOutIndex`. Raises EMidiOutputError.
  void SendSysex(int MidiOutIndex, std::uint8_t Command, std::span<const std::uint8_t> SysData);
  /// A sysex to route 0, whose port is opened for it; nothing happens if it does not open.
  void SendCustomSysex(std::span<const std::uint8_t> SysexMeta);

  // --- For those who hold the gate

  /// `SendMidiData` with the gate held.
  void SendHeld(int MidiOutIndex, std::uint8_t Command, std::uint8_t Data1, std::uint8_t Data2) {
    Emit(MidiOutIndex, Command, Data1, Data2);
  }
  /// Ends the notes that sound on a route and a wire channel (0-15).
  void EndNotesHeld(int MidiOutIndex, int MidiChannel);

  // --- The player's thread

  /// One pass: sends what has fallen due.
  void PlayMidiData();

  // --- State; atomics have one writer at a time

  std::atomic<TMidiPlayerState> State = TMidiPlayerState::stStopped;
  std::atomic<int> Tag = Parked;
  std::atomic<std::int32_t> TimePosition = 0;  ///< ms
  std::atomic<bool> TempoChanged = false;
  std::atomic<std::int32_t> TempoOffset = 0;  ///< bpm, added to every tempo of the song
  std::atomic<bool> UpdateSliders = false;
  std::atomic<bool> UpdatePatches = false;
  std::atomic<bool> UpdateDrumsMainForm = false;  ///< the first drum editor's kit has changed
  std::atomic<bool> UpdateDrumsSecForm = false;
  std::atomic<bool> UpdateDrumsThirdForm = false;
  std::atomic<bool> SwitchToMidiPlayThread = false;
  std::atomic<bool> SwitchToVSTiTimer = false;
  std::atomic<bool> RecordingActive = false;  ///< armed, and no note came yet
  std::atomic<bool> DisplayActive = true;     ///< meters are shown
  std::atomic<bool> RecMidiThru = false;
  std::atomic<bool> RecSendLocalOff = false;
  std::atomic<std::int32_t> StopTime = 0;     ///< ms that the last stop took
  std::atomic<std::int32_t> SentOnStart = 0;  ///< pending messages that the last start sent

  // Guarded by the gate.
  std::int64_t StartTime = 0;  ///< clock at song position 0, ms
  std::int32_t LastPlayTimePosition = 0;
  std::int64_t MiliSecsSinceStart = 0;
  bool Looping = false;
  std::int32_t LoopStart = 0;  ///< ms
  std::int32_t LoopEnd = 0;
  bool MasterVolume = false;
  std::array<std::uint8_t, ChannelCount> SliderSnapshot{};
  std::array<std::array<std::int8_t, ControllerCount>, ChannelCount> LastCtrl{};
  std::array<PtrMidiEvent, ChannelCount> LastCtrl00{};
  std::array<PtrMidiEvent, ChannelCount> LastCtrl32{};
  std::array<std::int8_t, ChannelCount> LastPatch{};
  int ShownTrack = -1;             ///< track of the event list; -1: none is shown
  std::int32_t ShownListPos = -1;  ///< row of the last event that was played on it
  /// Note-ons of the last pass, for the key editor; those beyond its room are left out.
  std::array<TNotePlayed, MostNotesOfPass> TracksNotesArray{};
  int TracksNotesArrElm = 0;
  /// The same of the drum channels, for the drum displays.
  std::array<TNotePlayed, MostNotesOfPass> DrumsNotesArray{};
  int DrumsNotesArrElm = 0;
  NoteLedger Ledger;
  TPlayerHooks Hooks;

  /// Calls a change of the song's tempi or signatures. The song stands, or goes on, at the same
  /// musical place behind it, and so does the loop. Gate held.
  void KeepPlace(const std::function<void()>& change);

 private:
  /// A short message, with the gate held.
  void Emit(int MidiOutIndex, std::uint8_t Command, std::uint8_t Data1, std::uint8_t Data2);
  void AudioPass();
  void ReturnToAudio();
  void MidiPass();
  void PlayDue(std::int32_t position);
  void SendEvent(PtrMidiEvent e, std::int32_t position);
  void SendNote(const TypMidiEvent& e, std::int32_t position);
  void KeepNote(const TNotePlayed& note, bool drums);
  void SendOther(const TypMidiEvent& e);
  void SendSongSysex(const TypMidiEvent& e);
  void SendBytes(int route, std::uint8_t command, std::span<const std::uint8_t> bytes);
  void SendEffectTrack(std::int32_t position);
  void FeedAudio(std::int32_t position);
  void JumpToLoopStart();
  void ApplyTempo();
  void StopPlaying();
  void Rewind();
  void Silence(int channel);
  void EndLedger();
  void Track(PtrMidiEvent e);
  void TrackController(PtrMidiEvent e, std::size_t channel);
  void TrackProgram(PtrMidiEvent e, std::size_t channel);
  void ForgetTracked();
  void FlushPending(int channel, int& sent);
  void ResetFurtherRoutes();
  [[nodiscard]] int RouteOf(std::size_t channel) const;
  [[nodiscard]] bool IsHosted(int route) const;
  [[nodiscard]] std::int64_t Now() const { return p.clock.Milliseconds(); }
  [[nodiscard]] bool AudioRuns() const { return p.audio != nullptr && p.audio->IsRunning(); }
  [[nodiscard]] bool NoSysex() const;

  TPlayerParts p;
  SysexPacer pacer;
  std::vector<std::uint8_t> sysexBytes;  ///< room for the longest sysex of the song
  std::int32_t lastPutTime = 0;          ///< `VSTiLastPutTime`, ms
  std::int64_t audioStart = 0;           ///< `VSTiStartCounter`, ms
  bool inPass = false;
};

}  // namespace Sonarello
