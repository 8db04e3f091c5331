#include "playback/SliderTimer.h"

namespace Sonarello {

namespace {

constexpr std::uint8_t Fader = 7;
constexpr std::uint8_t PanelSliders[] = {10, 11, 91, 93, 71, 72, 73, 74, 94};

void TakeSlider(TMidiPlayer& player, int channel, std::uint8_t controller, TDeskUpdate& update) {
  std::int8_t& last = player.LastCtrl[static_cast<std::size_t>(channel)][controller];
  if (last < 0) return;
  update.Sliders.push_back({channel, controller, static_cast<std::uint8_t>(last)});
  last = -1;
}

}  // namespace

TDeskUpdate SlidersUpdateTimerTimer(TMidiPlayer& player, const Song& song, SongGate& gate,
                                    int activeChannel) {
  TDeskUpdate update;
  if (!player.UpdatePatches && !player.UpdateSliders) return update;
  const auto held = gate.Enter();
  const bool patches = player.UpdatePatches.exchange(false);
  const bool sliders = player.UpdateSliders.exchange(false);
  for (int c = 0; c < ChannelCount; ++c) {
    const auto channel = static_cast<std::size_t>(c);
    if (!song.MidiData[channel].Active) continue;
    if (patches && player.LastPatch[channel] >= 0) {
      update.Sounds.push_back(c);
      player.LastPatch[channel] = -1;
    }
    if (!sliders) continue;
    TakeSlider(player, c, Fader, update);
    if (c == activeChannel)
      for (const std::uint8_t controller : PanelSliders) TakeSlider(player, c, controller, update);
  }
  return update;
}

}  // namespace Sonarello
