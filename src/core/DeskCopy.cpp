#include "core/DeskCopy.h"

#include <algorithm>
#include <cmath>

#include "core/Ports.h"
#include "core/Song.h"

namespace Sonarello {

namespace {

constexpr int LeastVelocity = 1;  // a note-on with velocity 0 is a note-off
constexpr int GreatestVelocity = 127;

std::uint8_t AsVelocity(int value) {
  return static_cast<std::uint8_t>(std::clamp(value, LeastVelocity, GreatestVelocity));
}

}  // namespace

std::uint8_t MappedVelocity(const TNotesVelocities& range, int velocity) noexcept {
  const int oldRange = range.Maximum - range.Minimum;
  const double newRange = range.NewMaximum - range.NewMinimum;
  // Notes that are all alike go to the middle of the new range.
  const double place = oldRange == 0 ? 0.5 : static_cast<double>(velocity - range.Minimum) / oldRange;
  return AsVelocity(static_cast<int>(std::nearbyint(place * newRange)) + range.NewMinimum);
}

DeskCopy::DeskCopy(const Song& song, const SongHooks& hooks) {
  for (int c = 0; c < ChannelCount; ++c) {
    const auto channel = static_cast<std::size_t>(c);
    SetKeys(song, hooks, c);
    SetVelocities(song, c);
    const int output = song.MidiData[channel].MidiChannel;
    channels[channel] = static_cast<std::uint8_t>(output >= 0 && output < ChannelCount ? output : c);
    changesChannels |= channels[channel] != c;
  }
}

void DeskCopy::SetKeys(const Song& song, const SongHooks& hooks, int channel) {
  const auto& drums = song.MidiData[static_cast<std::size_t>(channel)].DrumArray;
  TKeys& moved = keys[static_cast<std::size_t>(channel)];
  for (int key = 0; key < KeyCount; ++key) {
    const int target = key + drums[static_cast<std::size_t>(key)].Transpose;
    const bool moves = target != key && target >= 0 && target < KeyCount &&
                       (!hooks.DrumKeyMayMove || hooks.DrumKeyMayMove(song, channel, target));
    moved[static_cast<std::size_t>(key)] = static_cast<std::uint8_t>(moves ? target : key);
    changesNotes |= moves;
  }
}

void DeskCopy::SetVelocities(const Song& song, int channel) {
  const auto index = static_cast<std::size_t>(channel);
  const TNotesVelocities& range = song.NotesVelocities[index];
  mapped[index] = range.Mapped;
  changesNotes |= range.Mapped;
  for (std::size_t i = 0; i < KeyCount; ++i) {
    velocities[index][i] = MappedVelocity(range, static_cast<int>(i));
    deltas[index][i] = static_cast<std::int16_t>(song.VelocityDelta[index] +
                                                 song.MidiData[index].DrumArray[i].DeltaVelocity);
    changesNotes |= deltas[index][i] != 0;
  }
}

void DeskCopy::ApplyToNote(std::size_t channel, TShortMessage& message) const noexcept {
  if ((message.Command & 0xF0) == NoteOn && message.Value1 != 0)
    message.Value1 = mapped[channel] ? velocities[channel][message.Value1]
                                     : AsVelocity(message.Value1 + deltas[channel][message.Value0]);
  message.Value0 = keys[channel][message.Value0];
}

}  // namespace Sonarello
