#include "desk/TempoControl.h"

#include <algorithm>

#include "core/TimeMap.h"
#include "playback/LiveTempo.h"

namespace Sonarello {

std::int32_t TTempoControl::FastestOfSong() const {
  const auto& tempi = desk.song.BackupTempo;
  return tempi.empty() ? SlowestTempo : *std::ranges::max_element(tempi);
}

std::int32_t TTempoControl::LowestOffset() const { return std::min(SlowestTempo - FastestOfSong(), 0); }

std::int32_t TTempoControl::HighestOffset() const {
  return std::max(FastestTempo - FastestOfSong(), 0);
}

void TTempoControl::SetOffset(std::int32_t bpm) {
  if (!desk.song.MidiFileLoaded) return;
  const std::int32_t wanted = std::clamp(bpm, LowestOffset(), HighestOffset());
  if (wanted == offset) return;
  offset = wanted;
  TempoChange();
  CallHook(desk.Hooks.Changed);
}

void TTempoControl::TempoChange() {
  if (!desk.song.MidiFileLoaded) return;
  {
    // The song may come to its end meanwhile; with the gate held it cannot.
    const auto held = desk.gate.Enter();
    desk.player.TempoOffset = offset;
    desk.player.TempoChanged = untold = desk.IsPlaying();
    if (untold) return;
    ApplyHere();
  }
  CallHook(desk.Hooks.TempoChange);
}

void TTempoControl::PlayerStopped() {
  if (IsPending() && !desk.IsPlaying()) TempoChange();
  TellTaken();
}

void TTempoControl::TellTaken() {
  if (!untold || IsPending()) return;
  untold = false;
  CallHook(desk.Hooks.TempoChange);
}

void TTempoControl::ApplyHere() {
  ChangeTimes([this] { ApplyTempoOffset(desk.song, desk.functions, offset, TempoNumbering::Stopped); });
}

void TTempoControl::ChangeTimes(const std::function<void()>& change) {
  Song& song = desk.song;
  const std::int32_t tick = TickOfTime(song, desk.player.TimePosition);
  desk.player.KeepPlace(change);
  const std::size_t zone = ZoneAt(song, tick);
  song.CurrentTimeZone = static_cast<std::int32_t>(zone);
  if (zone < song.TimeZone.size()) song.CurrentTempo = song.TimeZone[zone].Tempo;
}

void TTempoControl::SongChanged() {
  offset = 0;
  untold = false;
  const auto held = desk.gate.Enter();
  desk.player.TempoOffset = 0;
  desk.player.TempoChanged = false;
}

}  // namespace Sonarello
