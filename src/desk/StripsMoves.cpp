#include "desk/StripsMoves.h"

#include <algorithm>
#include <cmath>

#include "core/EventList.h"

namespace Sonarello {

namespace {

constexpr int Greatest = 127;
constexpr int LeastLed = 1;  ///< a fader that another one leads stays audible

bool IsValue(int value) { return value >= 0 && value <= Greatest; }

std::size_t Index(int number) { return static_cast<std::size_t>(number); }

}  // namespace

int ProportionalValue(int from, int leaderFrom, int leaderTo) noexcept {
  if (leaderFrom <= 0) return from == 0 ? std::clamp(leaderTo, LeastLed, Greatest) : from;
  const double value = static_cast<double>(leaderTo) * from / leaderFrom;
  return std::clamp(static_cast<int>(std::nearbyint(value)), LeastLed, Greatest);
}

void TStripsMoves::TB_Volume00Change(int channel, int value) {
  if (!desk.song.MidiFileLoaded || !TStripsDesk::IsChannel(channel) || !IsValue(value)) return;
  Set(channel, VolumeController, value);
  if (SliderDepressed && channel == desk.song.ActiveMidiIndex && MasterVolume())
    DragOthers(channel, value);
}

void TStripsMoves::ControllerChange(int channel, int controller, int value) {
  if (controller == VolumeController) return TB_Volume00Change(channel, value);
  if (!desk.song.MidiFileLoaded || !TStripsDesk::IsChannel(channel) || !IsValue(controller) ||
      !IsValue(value))
    return;
  Set(channel, controller, value);
}

void TStripsMoves::PanelChange(int controller, int value) {
  ControllerChange(desk.song.ActiveMidiIndex, controller, value);
}

void TStripsMoves::Set(int channel, int controller, int value) {
  PtrMidiEvent event = nullptr;
  bool becameReal = false;
  {
    const auto held = desk.gate.Enter();
    TCtrl& entry = desk.Data(channel).CtrlArray[Index(controller)];
    entry.Value = static_cast<std::uint8_t>(value);
    event = entry.Event;
    if (event != nullptr) {
      event->Value[1] = static_cast<std::uint8_t>(value);
      becameReal = event->DLength == 0;
      if (becameReal) event->DLength = MessageLength(Controller);
    }
  }
  CallHook(desk.Hooks.ShowController, channel, controller, value);
  if (event == nullptr && controller != VolumeController) return;
  if (event != nullptr) CallHook(desk.Hooks.Changed);
  Send(channel, controller, value);
  if (event != nullptr) CallHook(desk.Hooks.EventChanged, event, becameReal);
}

void TStripsMoves::Send(int channel, int controller, int value) {
  const int route = desk.RouteOf(channel);
  const bool send = desk.CanSend(route);
  const std::uint8_t status = desk.StatusTo(channel, Controller);
  const auto held = desk.gate.Enter();
  TRealtime& pending = desk.realtime.Realtime[Index(channel)];
  pending.Ctrl[Index(controller)] = NothingPending;
  if (controller == VolumeController) pending.Volume = NothingPending;
  if (send)
    desk.player.SendHeld(route, status, static_cast<std::uint8_t>(controller),
                         static_cast<std::uint8_t>(value));
  else if (controller == VolumeController)
    pending.Volume = static_cast<std::int8_t>(value);
  else
    pending.Ctrl[Index(controller)] = value;
}

void TStripsMoves::TB_Volume00MouseDown(int channel) {
  if (!desk.song.MidiFileLoaded || !TStripsDesk::IsChannel(channel)) return;
  desk.SetMidiChannel(channel);
  TakeSnapshot();
  SliderDepressed = true;
}

void TStripsMoves::TakeSnapshot() {
  const auto held = desk.gate.Enter();
  for (int c = 0; c < ChannelCount; ++c) {
    const std::uint8_t value = desk.Data(c).CtrlArray[VolumeController].Value;
    desk.player.SliderSnapshot[Index(c)] =
        value != NoControllerValue
            ? value
            : static_cast<std::uint8_t>(DefaultControllerValue(VolumeController));
  }
}

void TStripsMoves::DragOthers(int channel, int value) {
  std::array<int, ChannelCount> targets{};
  {
    const auto held = desk.gate.Enter();
    const auto& snapshot = desk.player.SliderSnapshot;
    for (int c = 0; c < ChannelCount; ++c) {
      const TCtrl& fader = desk.Data(c).CtrlArray[VolumeController];
      const int target = ProportionalValue(snapshot[Index(c)], snapshot[Index(channel)], value);
      const bool follows =
          c != channel && desk.Data(c).Active && fader.Event != nullptr && fader.Value != target;
      targets[Index(c)] = follows ? target : -1;
    }
  }
  for (int c = 0; c < ChannelCount; ++c)
    if (targets[Index(c)] >= 0) Set(c, VolumeController, targets[Index(c)]);
}

void TStripsMoves::SetMasterVolume(bool on) {
  const auto held = desk.gate.Enter();
  desk.player.MasterVolume = on;
}

bool TStripsMoves::MasterVolume() const {
  const auto held = desk.gate.Enter();
  return desk.player.MasterVolume;
}

int TStripsMoves::ValueOf(int channel, int controller) const {
  const auto held = desk.gate.Enter();
  const std::uint8_t value = desk.Data(channel).CtrlArray[Index(controller)].Value;
  return value == NoControllerValue ? DefaultControllerValue(controller) : value;
}

}  // namespace Sonarello
