// The model follows the position: which controllers and programs are in force, while the song plays and
// when it is wound.
#include <algorithm>
#include <array>

#include "core/EventList.h"
#include "playback/MidiPlayer.h"

namespace Sonarello {

namespace {

/// Controllers with a slider of their own.
constexpr bool HasSlider(std::uint8_t controller) {
  switch (controller) {
    case 7:
    case 10:
    case 11:
    case 71:
    case 72:
    case 73:
    case 74:
    case 91:
    case 93:
    case 94: return true;
    default: return false;
  }
}

}  // namespace

void TMidiPlayer::ForgetTracked() {
  LastCtrl00.fill(nullptr);
  LastCtrl32.fill(nullptr);
  for (auto& channel : LastCtrl) channel.fill(-1);
  LastPatch.fill(-1);
}

void TMidiPlayer::Track(PtrMidiEvent e) {
  const auto c = static_cast<std::size_t>(e->Channel());
  if (e->Kind() == Controller) return TrackController(e, c);
  if (e->Kind() == ProgramChange) TrackProgram(e, c);
}

void TMidiPlayer::TrackController(PtrMidiEvent e, std::size_t channel) {
  if (e == p.song.PromptaRemoteCtrl00 || e == p.song.PromptaRemoteCtrl32) return;
  const std::uint8_t number = e->Value[0];
  const std::uint8_t value = e->Value[1];
  if (number == 0) {
    LastCtrl00[channel] = e;
  } else if (number == 32) {
    LastCtrl32[channel] = e;
  } else {
    p.song.MidiData[channel].CtrlArray[number] = {e, value};
    LastCtrl[channel][number] = static_cast<std::int8_t>(value);
    if (HasSlider(number)) UpdateSliders = true;
    if (number == 7 && MasterVolume) SliderSnapshot[channel] = value;
  }
}

void TMidiPlayer::TrackProgram(PtrMidiEvent e, std::size_t channel) {
  TMidiChannelData& data = p.song.MidiData[channel];
  if (e == p.song.PromptaRemotePatch || e == data.PatchEvent) return;
  data.Patch = static_cast<std::int8_t>(e->Value[0]);
  data.PatchEvent = e;
  for (const auto& [controller, parked] :
       {std::pair<std::size_t, PtrMidiEvent*>{0, &LastCtrl00[channel]}, {32, &LastCtrl32[channel]}}) {
    if (*parked == nullptr) continue;
    data.CtrlArray[controller] = {*parked, (*parked)->Value[1]};
    *parked = nullptr;
  }
  LastPatch[channel] = data.Patch;
  UpdatePatches = true;
  if (data.DrumPart == 1) UpdateDrumsMainForm = true;
  if (data.DrumPart == 2) UpdateDrumsSecForm = true;
  if (data.DrumPart == 3) UpdateDrumsThirdForm = true;
}

void TMidiPlayer::MoveToTimePosition(std::int32_t NewTimePosition) {
  const auto gate = p.gate.Enter();
  if (NewTimePosition < 0 || NewTimePosition > p.song.SongLength || NewTimePosition == TimePosition)
    return;
  if (State == TMidiPlayerState::stPlaying) EndLedger();
  ForgetTracked();
  for (std::int32_t t = 0; t < p.song.NumberOfSourceTracks; ++t) {
    TMyTrack& track = p.song.MidiTrack[static_cast<std::size_t>(t)];
    PtrMidiEvent e = track.TrkFirstEvent;
    track.TrkListIndex = 0;
    while (e != nullptr && e->NextEvent != nullptr && e->TimePosition < NewTimePosition) {
      ++track.TrkListIndex;
      if (!track.TrkIgnore && (e->Kind() == Controller || e->Kind() == ProgramChange) && e->DLength > 0)
        Track(e);
      e = Following(e);
    }
    track.TrkPlayEvent = e;
  }
  if (TMyTrack* effects = p.song.DSPTrackOf(p.routes.MidiRouting().front().InstrumValue)) {
    PtrMidiEvent& e = effects->TrkPlayEvent;
    e = effects->TrkFirstEvent;
    while (e != nullptr && e->NextEvent != nullptr && e->TimePosition < NewTimePosition)
      e = e->NextEvent;
  }
  TimePosition = NewTimePosition;
  if (State == TMidiPlayerState::stPlaying) StartTime = Now() - NewTimePosition;
  lastPutTime = NewTimePosition;
  UpdatePatches = UpdateSliders = true;
}

}  // namespace Sonarello
