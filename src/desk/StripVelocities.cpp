#include "desk/StripVelocities.h"

#include <algorithm>

#include "core/EventList.h"
#include "desk/StripsPanel.h"

namespace Sonarello {

namespace {

constexpr int LeastVelocity = 1;
constexpr int GreatestVelocity = 127;

int AsVelocity(int value) { return std::clamp(value, LeastVelocity, GreatestVelocity); }

/// Lowest, highest and mean velocity of a channel's notes; zeros without notes. The lists and the
/// notes' bytes are written by the main thread alone, so no gate is needed to read them there.
TNotesVelocities VelocitiesOf(const Song& song, int channel) {
  const auto command = static_cast<std::uint8_t>(NoteOn | channel);
  int least = GreatestVelocity;
  int greatest = 0;
  std::int64_t count = 0;
  std::int64_t sum = 0;
  for (std::int32_t t = 0; t < song.NumberOfSourceTracks; ++t) {
    const TMyTrack& track = song.MidiTrack[static_cast<std::size_t>(t)];
    if (track.TrkIgnore) continue;
    ForEachEvent(track, [&](const TypMidiEvent* e) {
      if (e->Command != command || e->Value[1] == 0 || e->IsRemoved()) return;
      least = std::min<int>(least, e->Value[1]);
      greatest = std::max<int>(greatest, e->Value[1]);
      sum += e->Value[1];
      ++count;
    });
  }
  if (count == 0) return {};
  return {.Minimum = static_cast<std::uint8_t>(least),
          .Maximum = static_cast<std::uint8_t>(greatest),
          .Mean = static_cast<std::uint8_t>((sum + count / 2) / count)};
}

}  // namespace

int TStripVelocities::VelocityDown(int channel, int delta) {
  if (!desk.IsActive(channel)) return 0;
  desk.SetMidiChannel(channel);
  VelocityDelta = delta < 0 ? -1 : 1;
  pressed = channel;
  return Move(channel, VelocityDelta) ? VelocityRepeatFirst : 0;
}

int TStripVelocities::VelocityTimerTimer() {
  if (VelocityDelta == 0 || !desk.IsActive(pressed)) return 0;
  return Move(pressed, VelocityDelta) ? VelocityRepeat : 0;
}

void TStripVelocities::Step(int channel, int delta) {
  if (desk.IsActive(channel)) Move(channel, delta);
}

void TStripVelocities::SetOffset(int channel, int offset) {
  if (!desk.IsActive(channel)) return;
  const int before = desk.song.VelocityDelta[static_cast<std::size_t>(channel)];
  Move(channel, std::clamp(offset, -MostVelocityOffset, MostVelocityOffset) - before);
}

/// False if the offset stands at its end already.
bool TStripVelocities::Move(int channel, int delta) {
  std::int8_t& offset = desk.song.VelocityDelta[static_cast<std::size_t>(channel)];
  const int moved = std::clamp(offset + delta, -MostVelocityOffset, MostVelocityOffset);
  if (moved == offset) return false;
  {
    const auto held = desk.gate.Enter();
    offset = static_cast<std::int8_t>(moved);
  }
  CallHook(desk.Hooks.ShowStrip, channel);
  return true;
}

std::optional<TVelocityRange> TStripVelocities::OpenVelocityEditor(int channel) {
  edited = -1;
  if (!desk.IsActive(channel)) return std::nullopt;
  desk.SetMidiChannel(channel);
  const TNotesVelocities found = VelocitiesOf(desk.song, channel);
  if (found.Minimum == 0) return std::nullopt;
  {
    const auto held = desk.gate.Enter();
    TNotesVelocities& record = Record(channel);
    record.Minimum = found.Minimum;
    record.Maximum = found.Maximum;
    record.Mean = found.Mean;
  }
  edited = channel;
  return Range();
}

TVelocityRange TStripVelocities::Range() const {
  const TNotesVelocities& record = Record(edited);
  return {.Minimum = record.Minimum,
          .Maximum = record.Maximum,
          .NewMinimum = record.Mapped ? record.NewMinimum : record.Minimum,
          .NewMaximum = record.Mapped ? record.NewMaximum : record.Maximum,
          .Mapped = record.Mapped};
}

void TStripVelocities::VelocityRangeSliderMinPosChange(int value) {
  if (edited < 0) return;
  SetRange(AsVelocity(value), std::max(AsVelocity(value), Range().NewMaximum));
}

void TStripVelocities::VelocityRangeSliderMaxPosChange(int value) {
  if (edited < 0) return;
  SetRange(std::min(AsVelocity(value), Range().NewMinimum), AsVelocity(value));
}

void TStripVelocities::E_VelocityExit(bool isMaximum, std::string_view text) {
  const std::optional<int> value = TypedNumber(text);
  if (!value) return;
  if (isMaximum)
    VelocityRangeSliderMaxPosChange(*value);
  else
    VelocityRangeSliderMinPosChange(*value);
}

void TStripVelocities::ResetVelocityRange() {
  if (edited < 0) return;
  const TVelocityRange range = Range();
  SetRange(range.Minimum, range.Maximum);
}

void TStripVelocities::SetRange(int minimum, int maximum) {
  const TVelocityRange before = Range();
  if (minimum == before.NewMinimum && maximum == before.NewMaximum) return;
  {
    const auto held = desk.gate.Enter();
    TNotesVelocities& record = Record(edited);
    record.Mapped = minimum != record.Minimum || maximum != record.Maximum;
    record.NewMinimum = static_cast<std::uint8_t>(minimum);
    record.NewMaximum = static_cast<std::uint8_t>(maximum);
  }
  CallHook(desk.Hooks.Changed);
  CallHook(desk.Hooks.ShowStrip, edited);
}

void TStripVelocities::SongChanged() {
  VelocityDelta = 0;
  pressed = -1;
  edited = -1;
}

}  // namespace Sonarello
