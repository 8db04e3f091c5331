#include "desk/GroupFader.h"

#include <array>

namespace Sonarello {

void TGroupFader::TB_MasterVolMouseDown() {
  if (!desk.song.MidiFileLoaded) return;
  moves.TakeSnapshot();
  held = true;
  loudest = -1;
  const auto inGate = desk.gate.Enter();
  int most = -1;
  for (int c = 0; c < ChannelCount; ++c) {
    const int value = desk.player.SliderSnapshot[static_cast<std::size_t>(c)];
    if (!desk.Data(c).Active || value <= most) continue;
    loudest = c;
    most = value;
  }
}

void TGroupFader::TB_MasterVolChange(int position) {
  if (!held || loudest < 0) return;
  std::array<std::uint8_t, ChannelCount> snapshot{};
  {
    const auto inGate = desk.gate.Enter();
    snapshot = desk.player.SliderSnapshot;
  }
  const int leader = snapshot[static_cast<std::size_t>(loudest)];
  for (int c = 0; c < ChannelCount; ++c) {
    if (!desk.IsActive(c)) continue;
    const int value =
        ProportionalValue(snapshot[static_cast<std::size_t>(c)], leader, leader + position);
    // A fader that stands there already does not move.
    if (value != moves.ValueOf(c, VolumeController)) moves.TB_Volume00Change(c, value);
  }
}

}  // namespace Sonarello
