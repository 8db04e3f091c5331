#include "desk/TempoControl.h"

#include <algorithm>

#include "core/TimeMap.h"
#include "playback/LiveTempo.h"

namespace Sonarello {

namespace {

std::int32_t TimeOfTick(const Song& song, std::int32_t tick) {
  return tick > 0 ? TimeOfPosition(song, tick) : 0;
}

}  // namespace

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
  Song& song = desk.song;
  TMidiPlayer& player = desk.player;
  const std::int32_t tick = TickOfTime(song, player.TimePosition);
  const std::int32_t loopStart = TickOfTime(song, player.LoopStart);
  const std::int32_t loopEnd = TickOfTime(song, player.LoopEnd);
  ApplyTempoOffset(song, desk.functions, offset, TempoNumbering::Stopped);
  player.TimePosition = TimeOfTick(song, tick);
  player.LoopStart = TimeOfTick(song, loopStart);
  player.LoopEnd = TimeOfTick(song, loopEnd);
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
