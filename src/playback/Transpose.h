// Sonarello: live transposition of the whole song.
#pragma once

#include <array>
#include <bitset>
#include <cstdint>
#include <functional>
#include <utility>

#include "core/Ports.h"
#include "core/Song.h"
#include "playback/Realtime.h"
#include "playback/SendMidiData.h"
#include "playback/SongGate.h"

namespace Sonarello {

/// How a transposition goes about the octaves.
struct TTransposeSettings {
  bool IntelligentTranspose = false;  ///< channels move by the nearer way instead of all alike
  int IntelligentTransp_M = 1;        ///< 1-4: which channels fold where
};

/// What decides how a channel's notes move.
enum class TransposeRule : std::uint8_t {
  None,        ///< its notes stay
  Plain,       ///< all keys alike, folded
  PitchClass,  ///< each note stays in its octave
  Floor,       ///< no note of the instrument's lowest string gets lost
};

/// The rule for a sound of an instrument by its catalogue number; -1 for banks that the song does not
/// set. Drum channels are not known here.
[[nodiscard]] TransposeRule TransposeRuleOf(int instrumValue, int CC00, int CC32, int Patch) noexcept;
/// True if a bank of an instrument holds drum kits.
[[nodiscard]] bool IsDrumBank(int instrumValue, int CC00, int CC32) noexcept;
/// True for sounds whose keys above 95 are noises without pitch, such as those of frets and breath.
[[nodiscard]] bool HasNoiseKeys(int instrumValue, int CC00, int CC32) noexcept;

/// The shift of a channel (0-15) whose voices fold, in semitones: at most some up or down, whichever is
/// nearer. Modes outside 1-4 count as 1.
[[nodiscard]] int FoldedShift(int channel, int shift, int mode) noexcept;
/// A key that was shifted out of 0-127, moved by octaves to the next one inside.
[[nodiscard]] int FoldKey(int key) noexcept;
/// Where a key (0-127) of a channel goes by a rule: `shift` semitones and `octaves`.
[[nodiscard]] std::uint8_t TransposedKey(int key, TransposeRule rule, int channel, int shift,
                                         int octaves, const TTransposeSettings& settings) noexcept;
/// Sharps (positive) or flats of a key signature after a shift; one that is none of twelve stays.
[[nodiscard]] int TransposeKeySignature(int SF, int shift) noexcept;
/// The root byte of an XF chord (accidental and note) after a shift, spelled with flats in a key of
/// flats (`SF` below 0), with sharps in one of sharps. Bytes that are no note stay.
[[nodiscard]] std::uint8_t TransposeChordRoot(std::uint8_t root, int shift, int SF) noexcept;

/// What transposition tells others. Called without the gate but for `EndNotes`; unset ones do nothing.
struct TTransposeHooks {
  TEndNotes EndNotes;
  std::function<void()> ShowNotes;  ///< notes, keys and chord names are shown anew
  std::function<void()> Changed;    ///< the song wants a backup
};

/// Transposes the song. Runs on the main thread, also while the player reads: under the gate, which is
/// let go between pieces of a track, only single bytes change.
class TTranspose {
 public:
  TTranspose(Song& s, const IRoutes& r, SongGate& g, TRealtimeData& d, TSendMidiData sender)
      : song(s), routes(r), gate(g), realtime(d), send(std::move(sender)) {}

  TTransposeSettings Settings;
  TTransposeHooks Hooks;

  /// A new song is in the store: nothing of it is transposed.
  void SongChanged() noexcept { moved.reset(); }
  /// Transposes the song by a number of semitones from how it was loaded, and ends what sounds: at once
  /// while playing, else with the next start.
  void TransposeChange(int transposeNew, bool isPlaying);
  /// Moves a channel up (1) or down (-1) by an octave, at most one from how it was loaded.
  void MoveOctave(int channel, int octaves, bool isPlaying);
  /// Rewrites the notes, key signatures and chords from how they were loaded, by `Song::TransposeNew`
  /// and `Song::ManualTransposeArray`.
  void Transpose();

 private:
  using TKeys = std::array<std::uint8_t, KeyCount>;

  [[nodiscard]] TransposeRule RuleOf(int channel) const;
  [[nodiscard]] TKeys KeysOf(int channel, TransposeRule rule) const;
  void MoveNotes(const TMyTrack& track, const std::array<TKeys, ChannelCount>& keys,
                 std::bitset<ChannelCount> wanted);
  void MoveKeySignatures();
  void MoveChords();
  void EndNotes(bool isPlaying);

  Song& song;
  const IRoutes& routes;
  SongGate& gate;
  TRealtimeData& realtime;
  TSendMidiData send;
  /// Channels whose notes stand elsewhere than they were loaded. A channel that plays drums by now
  /// takes its notes back once.
  std::bitset<ChannelCount> moved;
};

}  // namespace Sonarello
