#include "playback/Winding.h"

namespace Sonarello {

namespace {

/// Controllers that winding brings to the devices; all others are not chased.
constexpr std::uint8_t Chased[] = {1, 7, 10, 11, 71, 72, 73, 74, 91, 93, 94};

constexpr std::uint8_t Fader = 7;

}  // namespace

void PositionSlider::TrackBarMouseDown() {
  PlayingBeforeSeek = player.State == TMidiPlayerState::stPlaying;
  if (PlayingBeforeSeek) player.Stop();
  const auto held = gate.Enter();
  for (std::size_t c = 0; c < ChannelCount; ++c) {
    TMidiChannelData& data = song.MidiData[c];
    for (std::size_t n = 0; n < ControllerCount; ++n) snapshot[c].Ctrl[n] = data.CtrlArray[n].Value;
    snapshot[c].Patch = data.Patch;
    for (TDrumsRec& drum : data.DrumArray) {
      drum.sLevel = drum.Level;
      drum.sLowPass = drum.LowPass;
      drum.sPitch = drum.Pitch;
      drum.sReverb = drum.Reverb;
    }
  }
}

void PositionSlider::Park(std::size_t channel) {
  const TMidiChannelData& data = song.MidiData[channel];
  TRealtime& pending = realtime.Realtime[channel];
  const TChannelSnapshot& before = snapshot[channel];
  for (const std::uint8_t n : Chased) {
    const TCtrl& now = data.CtrlArray[n];
    if (now.Value == NoControllerValue || now.Value == before.Ctrl[n]) continue;
    pending.Ctrl[n] = now.Value;
    // A fader that was moved elsewhere in the song would have the last word.
    if (n == Fader) pending.Volume = NothingPending;
  }
  const bool sound = data.Patch != before.Patch || data.CtrlArray[0].Value != before.Ctrl[0] ||
                     data.CtrlArray[32].Value != before.Ctrl[32];
  if (!sound || data.Patch < 0) return;
  if (data.CtrlArray[0].Value != NoControllerValue) pending.Ctrl[0] = data.CtrlArray[0].Value;
  if (data.CtrlArray[32].Value != NoControllerValue) pending.Ctrl[32] = data.CtrlArray[32].Value;
  pending.Patch = data.Patch;
}

void PositionSlider::ParkDrums(std::size_t channel) {
  TRealtime& pending = realtime.Realtime[channel];
  for (std::size_t n = 0; n < KeyCount; ++n) {
    const TDrumsRec& drum = song.MidiData[channel].DrumArray[n];
    const auto park = [n](std::int8_t now, std::int8_t before, auto& values) {
      if (now >= 0 && now != before) values[n] = now;
    };
    park(drum.Level, drum.sLevel, pending.DrumLevel);
    park(drum.LowPass, drum.sLowPass, pending.DrumLowPass);
    park(drum.Pitch, drum.sPitch, pending.DrumPitch);
    park(drum.Reverb, drum.sReverb, pending.DrumReverb);
  }
}

bool PositionSlider::TrackBarMouseUp() {
  {
    const auto held = gate.Enter();
    for (std::size_t c = 0; c < ChannelCount; ++c) {
      Park(c);
      if (song.MidiData[c].DrumPart > 0) ParkDrums(c);
    }
  }
  return !PlayingBeforeSeek || player.Play();
}

}  // namespace Sonarello
