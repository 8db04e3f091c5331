// Sonarello: one edit of the event list on its way: what it touches and what follows from it.
#pragma once

#include <bitset>
#include <cstdint>
#include <limits>
#include <string>
#include <utility>
#include <vector>

#include "editors/EventEdits.h"

namespace Sonarello {

/// A cell that is being edited.
struct TEventEdits::TCell {
  int Column = 0;
  std::int32_t Row = 0;
  PtrMidiEvent Event = nullptr;
  std::string Text;  ///< as typed
  std::string Prev;  ///< as it stood in the cell
};

/// Between its making and `Finish` events may be touched. Each event is told of in front of its change
/// (`Touch`) and behind it (`Settle`); rows, pairs, first values, times and lyrics follow in `Finish`.
class TEventEdits::TStep {
 public:
  TStep(TEventEdits& e, std::string name);
  TStep(const TStep&) = delete;
  TStep& operator=(const TStep&) = delete;

  /// An event of the list is about to change or to move, before any other event is touched.
  void Touch(PtrMidiEvent event);
  /// A touched event stands as it is to be.
  void Settle(PtrMidiEvent event);
  /// Changes an event in place: f(event) is called with the gate held.
  template <class F>
  void Change(PtrMidiEvent event, F&& f) {
    Touch(event);
    {
      const auto held = edits.gate.Enter();
      f(event);
    }
    Settle(event);
  }
  /// The same for a value on which neither pairs nor first events depend; it costs no look at others.
  template <class F>
  void ChangeValue(PtrMidiEvent event, F&& f) {
    const bool first = firstValues;
    const std::size_t known = keys.size();
    valueOnly = true;
    Change(event, f);
    valueOnly = false;
    firstValues = first;
    keys.resize(known);
  }
  /// Moves a touched event behind all events of a tick, inside the song.
  void Move(PtrMidiEvent event, std::int32_t position);
  /// Sets a data byte (0 or 1) of a touched event. What it was on load moves along, so that a
  /// transposition goes on from here.
  static void SetValue(PtrMidiEvent event, std::size_t index, int value);
  /// Gives a touched long event another payload.
  static void SetMeta(PtrMidiEvent event, std::span<const std::uint8_t> bytes);
  /// Links a new event at its position.
  void Insert(PtrMidiEvent event);
  /// Takes events of the list out, in whatever number.
  void Remove(const std::vector<PtrMidiEvent>& events);
  /// A channel's events became others: is the track still that of one channel?
  void ReadTrackChannel();
  /// Does a text still ask to hold the track out of the song's working?
  void ReadIgnore();
  /// An event has become another kind: nothing knows the song by it any more.
  void ForgetReferences(PtrMidiEvent event);
  /// Takes everything back; the step did not happen.
  void Cancel();
  /// Brings up to date what follows from the step, and tells everybody.
  void Finish();

  /// Takes back the last step in the list that `known` stands behind. Events that are back.
  static std::vector<PtrMidiEvent> Undo(TEventEdits& edits, TEventIndex& known);

  [[nodiscard]] TMyTrack& Track() const { return track; }

 private:
  TStep(TEventEdits& e, TEventIndex& known);
  void SettleHeld(PtrMidiEvent event);
  void Note(const TypMidiEvent& event);
  [[nodiscard]] bool IsFirstValue(const TypMidiEvent& event) const;
  void CountChord(const TypMidiEvent& event, int by);
  void CountNote(const TypMidiEvent& event, int by);
  void ReadKeySignature(PtrMidiEvent event);
  void ReadTrackName();
  void ChangeTimes();
  void PairNotes();
  void ReadBanks();
  void Tell();

  TEventEdits& edits;
  Song& song;
  TEventIndex& index;
  TMyTrack& track;
  bool playing = false;
  bool isUndo = false;
  bool valueOnly = false;
  bool bulk = false;  ///< so many events that the rows are read anew instead of one by one
  std::vector<std::pair<int, int>> keys;  ///< channel and key of notes that were touched
  std::int32_t from =
      std::numeric_limits<std::int32_t>::max();  ///< first tick of such a note, before or after
  std::int32_t to = 0;                           ///< last one
  std::vector<const TypMidiEvent*> banks;        ///< places around which sounds are chosen otherwise
  std::vector<PtrMidiEvent> signatures;          ///< key signatures that changed
  std::bitset<ChannelCount> noteChannels;
  std::bitset<ChannelCount> soundChannels;
  bool times = false;
  bool keySignatures = false;
  bool sysexs = false;
  bool lyrics = false;
  bool firstValues = false;
  bool trackName = false;
};

}  // namespace Sonarello
