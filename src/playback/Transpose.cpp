#include "playback/Transpose.h"

#include <algorithm>
#include <chrono>
#include <limits>
#include <thread>

#include "core/EventList.h"
#include "instruments/Naming.h"
#include "playback/Routes.h"

namespace Sonarello {

namespace {

constexpr std::size_t BankMSB = 0;
constexpr std::size_t BankLSB = 32;
constexpr int FirstNoiseKey = 96;

/// Events that are worked on in one go: some ten microseconds of the gate.
constexpr int PieceLength = 4096;
/// Pause between two pieces. A gate that is merely let go is taken again before a waiting player wakes.
constexpr std::chrono::microseconds PauseLength{20};

// An XF chord: sequencer-specific bytes 43 7B 01, then root, type, root of the bass, type of the bass.
constexpr std::uint8_t XFChordPrefix[] = {0x43, 0x7B, 0x01};
constexpr std::size_t XFChordLength = 7;
constexpr std::size_t ChordRoot = 3;
constexpr std::size_t BassRoot = 5;

/// Calls f(event) for each event of a track, with the gate held for a piece at a time. Only the main
/// thread splices lists, so the place in the list holds while the gate is free.
template <class F>
void InPieces(SongGate& gate, const TMyTrack& track, F&& f) {
  PtrMidiEvent e = track.TrkFirstEvent;
  while (e != nullptr) {
    {
      const auto held = gate.Enter();
      for (int i = 0; i < PieceLength && e != nullptr; ++i, e = Following(e)) f(*e);
    }
    if (e != nullptr) std::this_thread::sleep_for(PauseLength);
  }
}

int NumberOf(const TCtrl& controller) {
  return controller.Value == NoControllerValue ? -1 : controller.Value;
}

bool IsXFChord(const TypMidiEvent& e) {
  return e.IsMeta(MetaSequencerSpecific) && e.DLength >= static_cast<std::int32_t>(XFChordLength) &&
         e.Meta.size() >= XFChordLength && e.Meta.StartsWith(XFChordPrefix) &&
         ((e.Meta[ChordRoot] | e.Meta[BassRoot]) & 0x80) == 0;
}

}  // namespace

void TTranspose::TransposeChange(int transposeNew, bool isPlaying) {
  song.TransposeNew = transposeNew;
  Transpose();
  EndNotes(isPlaying);
  if (Hooks.ShowNotes) Hooks.ShowNotes();
  if (Hooks.Changed) Hooks.Changed();
}

void TTranspose::MoveOctave(int channel, int octaves, bool isPlaying) {
  std::int8_t& octave = song.ManualTransposeArray[static_cast<std::size_t>(channel)];
  octave = static_cast<std::int8_t>(std::clamp(octave + octaves, -1, 1));
  TransposeChange(song.TransposeNew, isPlaying);
}

TransposeRule TTranspose::RuleOf(int channel) const {
  const TMidiChannelData& data = song.MidiData[static_cast<std::size_t>(channel)];
  if (channel == DrumChannel || !data.Active || data.DrumPart > 0) return TransposeRule::None;
  const auto table = routes.MidiRouting();
  return TransposeRuleOf(table[RouteOfChannel(song, table, channel)].InstrumValue,
                         NumberOf(data.CtrlArray[BankMSB]), NumberOf(data.CtrlArray[BankLSB]),
                         data.Patch);
}

TTranspose::TKeys TTranspose::KeysOf(int channel, TransposeRule rule) const {
  const auto c = static_cast<std::size_t>(channel);
  const TMidiChannelData& data = song.MidiData[c];
  const auto table = routes.MidiRouting();
  const bool noises =
      HasNoiseKeys(table[RouteOfChannel(song, table, channel)].InstrumValue,
                   NumberOf(data.CtrlArray[BankMSB]), NumberOf(data.CtrlArray[BankLSB]));
  TKeys keys{};
  for (int key = 0; key < KeyCount; ++key)
    keys[static_cast<std::size_t>(key)] = noises && key >= FirstNoiseKey
                                              ? static_cast<std::uint8_t>(key)
                                              : TransposedKey(key, rule, channel, song.TransposeNew,
                                                              song.ManualTransposeArray[c], Settings);
  return keys;
}

void TTranspose::Transpose() {
  std::array<TKeys, ChannelCount> keys{};
  std::bitset<ChannelCount> wanted = moved;
  {
    const auto held = gate.Enter();
    for (int c = 0; c < ChannelCount; ++c) {
      const auto index = static_cast<std::size_t>(c);
      const TransposeRule rule = RuleOf(c);
      keys[index] = KeysOf(c, rule);
      if (rule != TransposeRule::None) wanted[index] = true;
      moved[index] = rule != TransposeRule::None &&
                     (song.TransposeNew != 0 || song.ManualTransposeArray[index] != 0);
    }
  }
  for (std::int32_t t = 0; t < song.NumberOfSourceTracks; ++t) {
    const TMyTrack& track = song.MidiTrack[static_cast<std::size_t>(t)];
    if (!track.TrkIgnore) MoveNotes(track, keys, wanted);
  }
  MoveKeySignatures();
  if (song.XF_ChordsArrayElements > 0) MoveChords();
}

void TTranspose::MoveNotes(const TMyTrack& track, const std::array<TKeys, ChannelCount>& keys,
                           std::bitset<ChannelCount> wanted) {
  InPieces(gate, track, [&](TypMidiEvent& e) {
    if (e.Kind() != NoteOn && e.Kind() != NoteOff) return;
    const auto c = static_cast<std::size_t>(e.Channel());
    if (wanted[c] && e.ValueOrg[0] < KeyCount) e.Value[0] = keys[c][e.ValueOrg[0]];
  });
}

/// `SF` is how the song came, so that a shift of 0 brings it back.
void TTranspose::MoveKeySignatures() {
  const auto held = gate.Enter();
  for (const TKeySignArray& keys : song.KeySignArray)
    for (const TKeySigns& key : keys.ValArray) {
      if (key.MidiEvent == nullptr || key.MidiEvent->DLength != 2 || key.MidiEvent->Meta.size() != 2)
        continue;
      const auto byte = static_cast<std::uint8_t>(TransposeKeySignature(key.SF, song.TransposeNew));
      if (key.MidiEvent->Meta[0] != byte) key.MidiEvent->Meta.Mutable()[0] = byte;
    }
}

/// A chord's own roots are kept in the event's `ValueOrg`, which long events do not use otherwise, and
/// those last written in its `Value`: a chord that somebody changed since counts as it is from then on.
void TTranspose::MoveChords() {
  if (song.XF_Track < 0 || song.XF_Track >= song.NumberOfSourceTracks) return;
  std::int32_t first = std::numeric_limits<std::int32_t>::max();
  int signature = 0;
  for (const TKeySignArray& keys : song.KeySignArray)
    for (const TKeySigns& key : keys.ValArray)
      if (key.MidiEvent != nullptr && key.MidiEvent->Position < first) {
        first = key.MidiEvent->Position;
        signature = TransposeKeySignature(key.SF, song.TransposeNew);
      }
  InPieces(gate, song.MidiTrack[static_cast<std::size_t>(song.XF_Track)], [&](TypMidiEvent& e) {
    if (!IsXFChord(e)) return;
    const std::array<std::uint8_t, 2> now = {e.Meta[ChordRoot], e.Meta[BassRoot]};
    if (e.Value != now) e.ValueOrg = now;
    for (std::size_t n = 0; n < now.size(); ++n) {
      e.Value[n] = TransposeChordRoot(e.ValueOrg[n], song.TransposeNew, signature);
      if (e.Value[n] != now[n]) e.Meta.Mutable()[n == 0 ? ChordRoot : BassRoot] = e.Value[n];
    }
  });
}

void TTranspose::EndNotes(bool isPlaying) {
  const auto held = gate.Enter();
  const auto table = routes.MidiRouting();
  for (int c = 0; c < ChannelCount; ++c) {
    TRealtime& channel = realtime.Realtime[static_cast<std::size_t>(c)];
    if (!isPlaying) {
      channel.AllSoundOff = 1;
      continue;
    }
    const auto route = static_cast<int>(RouteOfChannel(song, table, c));
    const auto status = static_cast<std::uint8_t>(Controller | channel.MidiChannel);
    if (Hooks.EndNotes) Hooks.EndNotes(route, channel.MidiChannel);
    send(route, status, AllSoundOffController, 0);
    send(route, status, AllNotesOffController, 0);
  }
}

}  // namespace Sonarello
