#include "playback/VirtualKeys.h"

#include <algorithm>

namespace Sonarello {

bool TVirtualKeys::Press(int key, int velocity) {
  constexpr int loudest = 127;
  Release();
  if (song.ActiveMidiIndex < 0 || song.ActiveMidiIndex >= ChannelCount) return false;
  if (key < 0 || key >= KeyCount || velocity <= 0) return false;
  const auto c = static_cast<std::size_t>(song.ActiveMidiIndex);
  const int route = song.MidiOutIndex[c];
  if (!outputs.IsOpen(route) && (!GrabMidiDriver || !outputs.Open(route))) return false;
  const auto held = gate.Enter();
  sounding = TNote{route, realtime.Realtime[c].MidiChannel, static_cast<std::uint8_t>(key)};
  send(route, static_cast<std::uint8_t>(NoteOn | sounding->Channel), sounding->Key,
       static_cast<std::uint8_t>(std::min(velocity, loudest)));
  return true;
}

void TVirtualKeys::Release() {
  constexpr std::uint8_t releaseVelocity = 64;
  if (!sounding) return;
  const TNote note = *sounding;
  sounding.reset();
  const auto held = gate.Enter();
  send(note.Route, static_cast<std::uint8_t>(NoteOff | note.Channel), note.Key, releaseVelocity);
}

}  // namespace Sonarello
