#include "desk/Strips.h"

#include <algorithm>

namespace Sonarello {

namespace {

constexpr int OneOctave = 1;

std::size_t Index(int channel) { return static_cast<std::size_t>(channel); }

}  // namespace

void TStrips::SongChanged() {
  Moves.TB_Volume00MouseUp();
  GroupFader.TB_MasterVolMouseUp();
  Velocities.SongChanged();
  Tempo.SongChanged();
  Position.SignaturesChanged();
  Desk.ForgetFailures();
}

void TStrips::MoveOctave(int channel, int octaves) {
  if (!Desk.IsActive(channel)) return;
  Desk.SetMidiChannel(channel);
  std::int8_t& octave = Desk.song.ManualTransposeArray[Index(channel)];
  const int moved = std::clamp(octave + std::clamp(octaves, -OneOctave, OneOctave), -1, 1);
  if (moved == octave) return;
  octave = static_cast<std::int8_t>(moved);
  CallHook(Desk.Hooks.Changed);
  CallHook(Desk.Hooks.ShowStrip, channel);
  CallHook(Desk.Hooks.TransposeChange);
}

void TStrips::SetRec(int channel, bool armed) {
  if (!Desk.song.MidiFileLoaded || !TStripsDesk::IsChannel(channel)) return;
  for (int c = 0; c < ChannelCount; ++c) {
    const bool rec = c == channel ? armed : Desk.Data(c).Rec && !armed;
    if (rec == Desk.Data(c).Rec) continue;
    Desk.Data(c).Rec = rec;
    CallHook(Desk.Hooks.ShowStrip, c);
  }
}

int TStrips::RecMidiIndex() const {
  const auto armed = std::ranges::find_if(Desk.song.MidiData, &TMidiChannelData::Rec);
  return armed == Desk.song.MidiData.end() ? -1 : static_cast<int>(armed - Desk.song.MidiData.begin());
}

void TStrips::ReadFirstValues() {
  if (!Desk.song.MidiFileLoaded) return;
  {
    const auto held = Desk.gate.Enter();
    for (int c = 0; c < ChannelCount; ++c) {
      TMidiChannelData& data = Desk.Data(c);
      for (std::size_t n = 0; n < ControllerCount; ++n) {
        const PtrMidiEvent first = Desk.song.FirstControllers[Index(c)][n];
        data.CtrlArray[n] = first == nullptr ? TCtrl{} : TCtrl{first, first->Value[1]};
      }
      data.PatchEvent = Desk.song.FirstPatches[Index(c)];
      data.Patch = data.PatchEvent == nullptr ? std::int8_t{-1}
                                              : static_cast<std::int8_t>(data.PatchEvent->Value[0]);
    }
  }
  for (int c = 0; c < ChannelCount; ++c) CallHook(Desk.Hooks.ShowStrip, c);
  const TPanelView panel = Panel();
  if (TStripsDesk::IsChannel(Desk.song.ActiveMidiIndex))
    for (const TPanelControl& control : panel)
      CallHook(Desk.Hooks.ShowController, Desk.song.ActiveMidiIndex, control.Controller, control.Value);
}

TStripView TStrips::View(int channel) const {
  if (!TStripsDesk::IsChannel(channel)) return {};
  const Song& song = Desk.song;
  const TMidiChannelData& data = Desk.Data(channel);
  TStripView view{.Channel = channel,
                  .Label = ChannelLabelOf(song, channel),
                  .Active = Desk.IsActive(channel),
                  .Drums = data.DrumPart > 0,
                  .Selected = song.MidiFileLoaded && song.ActiveMidiIndex == channel,
                  .Mute = data.Mute,
                  .MutedBySolo = MuteSolo.IsMutedBySolo(channel),
                  .Solo = data.Solo,
                  .Rec = data.Rec,
                  .Volume = Moves.ValueOf(channel, VolumeController),
                  .VelocityOffset = song.VelocityDelta[Index(channel)],
                  .VelocityMapped = song.NotesVelocities[Index(channel)].Mapped,
                  .Octave = song.ManualTransposeArray[Index(channel)]};
  const auto held = Desk.gate.Enter();
  view.VolumeInSong = data.CtrlArray[VolumeController].Event != nullptr;
  return view;
}

TPanelView TStrips::Panel() const {
  TPanelView view;
  const int active = Desk.song.MidiFileLoaded ? Desk.song.ActiveMidiIndex : -1;
  const auto held = Desk.gate.Enter();
  for (std::size_t i = 0; i < view.size(); ++i) {
    const int controller = PanelControllerNumbers[i];
    TPanelControl& control = view[i];
    control = {.Controller = controller, .Value = DefaultControllerValue(controller)};
    if (TStripsDesk::IsChannel(active)) {
      const TCtrl& entry = Desk.Data(active).CtrlArray[static_cast<std::size_t>(controller)];
      if (entry.Value != NoControllerValue) control.Value = entry.Value;
      control.InSong = entry.Event != nullptr;
    }
    control.Shown = ShownControllerValue(controller, control.Value);
  }
  return view;
}

}  // namespace Sonarello
