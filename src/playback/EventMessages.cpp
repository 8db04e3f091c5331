#include "playback/EventMessages.h"

#include <algorithm>
#include <random>

#include "core/DeskCopy.h"

namespace Sonarello {

namespace {

constexpr int SplitDrumChannel = 9;

int AsVelocity(int velocity) { return velocity < 0 ? 1 : std::min(velocity, 127); }

/// The wire channel; channel 10 for a further drum part that is played as channel 10.
std::uint8_t WireStatus(const Song& song, const TRealtimeData& realtime, std::uint8_t kind,
                        std::size_t channel) {
  const std::uint8_t part = song.MidiData[channel].DrumPart;
  const bool split =
      song.MidiOutIndex[channel] != 0 &&
      ((part == 2 && song.DrumsSecForceToChannel10) || (part == 3 && song.DrumsThirdForceToChannel10));
  return static_cast<std::uint8_t>(kind |
                                   (split ? SplitDrumChannel : realtime.Realtime[channel].MidiChannel));
}

/// Velocity of a note whose channel has notes that are all alike: anywhere in the new range but its
/// top.
int DrawnVelocity(const TNotesVelocities& range) {
  // Each thread that plays or renders draws for itself.
  thread_local std::minstd_rand random;
  const int span = range.NewMaximum - range.NewMinimum;
  return range.NewMinimum + (span > 0 ? static_cast<int>(random() % static_cast<unsigned>(span)) : 0);
}

/// Velocity of a note-on: never 0, which would end the note.
int VelocityOf(const Song& song, std::size_t channel, const TypMidiEvent& note) {
  const TMidiChannelData& data = song.MidiData[channel];
  const TNotesVelocities& range = song.NotesVelocities[channel];
  int velocity = note.Value[1] + song.VelocityDelta[channel];
  if (data.DrumPart > 0)
    velocity += data.DrumArray[note.Value[0]].DeltaVelocity;
  else if (range.Mapped)
    velocity =
        range.Minimum == range.Maximum ? DrawnVelocity(range) : MappedVelocity(range, note.Value[1]);
  return std::max(AsVelocity(velocity), 1);
}

std::optional<TOutgoing> NoteMessage(const Song& song, const TypMidiEvent& note, TOutgoing out,
                                     std::size_t channel) {
  const TMidiChannelData& data = song.MidiData[channel];
  const TDrumsRec& drum = data.DrumArray[note.Value[0]];
  const bool drums = data.DrumPart > 0;
  if (data.Mute || (drums && drum.Mute)) return std::nullopt;
  const int moved = note.Value[0] + drum.Transpose;
  if (drums && moved >= 0 && moved < KeyCount) out.Data1 = static_cast<std::uint8_t>(moved);
  if (StartsNote(note)) out.Data2 = static_cast<std::uint8_t>(VelocityOf(song, channel, note));
  return out;
}

}  // namespace

std::optional<TOutgoing> MessageOf(const Song& song, const TRealtimeData& realtime,
                                   const IRoutes& routes, const TypMidiEvent& event) {
  const auto c = static_cast<std::size_t>(event.Channel());
  const TOutgoing out = {.Route = song.MidiOutIndex[c],
                         .Status = WireStatus(song, realtime, event.Kind(), c),
                         .Data1 = event.Value[0],
                         .Data2 = event.Value[1]};
  if ((event.Kind() & 0xE0) == NoteOff) return NoteMessage(song, event, out, c);
  // The wavetable of the system takes no banks.
  const bool bank = event.Kind() == Controller && (event.Value[0] == 0 || event.Value[0] == 32);
  const auto table = routes.MidiRouting();
  const auto route = static_cast<std::size_t>(out.Route);
  if (bank && route < table.size() && table[route].MSWavetable) return std::nullopt;
  return out;
}

}  // namespace Sonarello
