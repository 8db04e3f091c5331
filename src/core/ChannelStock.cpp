#include "core/ChannelStock.h"

#include <algorithm>

#include "core/EventList.h"

namespace Sonarello {

namespace {

/// Sum of velocities for the mean, per channel.
using TVelocitySums = std::array<std::int64_t, ChannelCount>;

void CountNote(Song& song, const TypMidiEvent& note, TVelocitySums& sums) {
  const auto c = static_cast<std::size_t>(note.Channel());
  TNotesVelocities& velocities = song.NotesVelocities[c];
  const std::uint8_t velocity = note.Value[1];
  if (song.MidiData[c].ActiveNotes++ == 0) velocities.Minimum = velocities.Maximum = velocity;
  velocities.Minimum = std::min(velocities.Minimum, velocity);
  velocities.Maximum = std::max(velocities.Maximum, velocity);
  sums[c] += velocity;
}

bool IsRemote(const Song& song, PtrMidiEvent e) {
  return e == song.PromptaRemoteCtrl00 || e == song.PromptaRemoteCtrl32 || e == song.PromptaRemotePatch;
}

void SortByPosition(std::vector<TProgramEvent>& events) {
  const auto earlier = [](const TProgramEvent& a, const TProgramEvent& b) {
    return a.Event->Position < b.Event->Position;
  };
  if (!std::is_sorted(events.begin(), events.end(), earlier))
    std::stable_sort(events.begin(), events.end(), earlier);
}

}  // namespace

TProgramIndex TakeStock(Song& song) {
  TProgramIndex programs;
  TVelocitySums sums{};
  std::array<bool, ChannelCount> active{};
  for (TMidiChannelData& channel : song.MidiData) channel.ActiveNotes = 0;
  song.NotesVelocities.fill({});
  for (std::int32_t t = 0; t < song.NumberOfSourceTracks; ++t) {
    const TMyTrack& track = song.MidiTrack[static_cast<std::size_t>(t)];
    if (track.TrkIgnore) continue;
    ForEachEvent(track, [&](PtrMidiEvent e) {
      // Note-offs alone, aftertouch of the channel and pitch bends make no channel active.
      if (e->Command < NoteOn || e->Command >= ChannelAftertouch || e->IsRemoved()) return;
      const auto c = static_cast<std::size_t>(e->Channel());
      active[c] = true;
      if (e->Kind() == NoteOn) return CountNote(song, *e, sums);
      const bool bank = e->Kind() == Controller && (e->Value[0] == 0 || e->Value[0] == 32);
      if ((bank || e->Kind() == ProgramChange) && !IsRemote(song, e)) programs[c].push_back({e, t});
    });
  }
  for (std::size_t c = 0; c < ChannelCount; ++c) {
    TMidiChannelData& channel = song.MidiData[c];
    channel.Active = active[c];
    if (channel.ActiveNotes > 0)
      song.NotesVelocities[c].Mean =
          static_cast<std::uint8_t>((sums[c] + channel.ActiveNotes / 2) / channel.ActiveNotes);
    SortByPosition(programs[c]);
  }
  return programs;
}

void FindRemoteSequence(Song& song) {
  constexpr std::int32_t lastTick = 30;
  constexpr std::uint8_t remoteBank = 77;
  PtrMidiEvent* const chain[] = {&song.PromptaRemoteCtrl00, &song.PromptaRemoteCtrl32,
                                 &song.PromptaRemotePatch};
  for (std::int32_t t = 0; t < song.NumberOfSourceTracks; ++t) {
    std::size_t found = 0;
    for (PtrMidiEvent e = song.MidiTrack[static_cast<std::size_t>(t)].TrkFirstEvent;
         e != nullptr && e->Position <= lastTick; e = e->NextEvent) {
      if (!e->IsChannelEvent() || e->Channel() != ChannelCount - 1) continue;
      const bool isStart = e->Kind() == Controller && e->Value[0] == 0 && e->Value[1] == remoteBank;
      const bool fits = found == 0   ? isStart
                        : found == 1 ? e->Kind() == Controller && e->Value[0] == 32
                                     : e->Kind() == ProgramChange;
      if (!fits) found = 0;
      if (!fits && !isStart) continue;
      *chain[found++] = e;
      if (found == std::size(chain)) return;
    }
  }
  for (PtrMidiEvent* e : chain) *e = nullptr;
}

namespace {

struct TDefaultController {
  std::uint8_t Number;
  std::uint8_t Value;
};
/// Volume, panorama, expression, resonance, release, attack, brightness, reverb, chorus, variation,
/// modulation: what a sound module starts with (GM2, XG).
constexpr TDefaultController DefaultControllers[] = {
    {7, 100}, {10, 64}, {11, 127}, {71, 64}, {72, 64}, {73, 64},
    {74, 64}, {91, 40}, {93, 0},   {94, 0},  {1, 0},
};

/// The last track that serves the channel alone, else the last that serves several; -1 if none does.
int TargetTrack(const Song& song, int channel) {
  int several = -1;
  for (int t = song.NumberOfSourceTracks - 1; t >= 0; --t) {
    const TMyTrack& track = song.MidiTrack[static_cast<std::size_t>(t)];
    if (track.TrkIgnore) continue;
    if (track.TrkMidiIndex == channel) return t;
    if (track.TrkMidiIndex == ChannelCount && several < 0) several = t;
  }
  return several;
}

}  // namespace

void InsertDefaultControllers(Song& song) {
  int lastTrack = -1;
  PtrMidiEvent place = nullptr;
  for (int c = 0; c < ChannelCount; ++c) {
    TMidiChannelData& channel = song.MidiData[static_cast<std::size_t>(c)];
    const int t = channel.Active ? TargetTrack(song, c) : -1;
    if (t < 0) continue;
    TMyTrack& track = song.MidiTrack[static_cast<std::size_t>(t)];
    const std::int32_t tick = std::min(song.SourceTimeBase + 20, song.MaxSongPosition);
    if (t != lastTrack) place = PlaceFor(track, tick);
    lastTrack = t;
    for (const TDefaultController& controller : DefaultControllers) {
      TCtrl& entry = channel.CtrlArray[controller.Number];
      if (entry.Value != NoControllerValue) continue;
      PtrMidiEvent e = NewChannelEvent(song.Pool, static_cast<std::uint8_t>(Controller | c),
                                       controller.Number, controller.Value, tick);
      MarkRemoved(e);
      LinkBehind(track, place, e);
      place = e;
      entry = {e, controller.Value};
      song.FirstControllers[static_cast<std::size_t>(c)][controller.Number] = e;
    }
  }
}

}  // namespace Sonarello
