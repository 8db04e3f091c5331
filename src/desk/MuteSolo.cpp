#include "desk/MuteSolo.h"

namespace Sonarello {

namespace {

constexpr int DrumsOnTheWire = 9;
constexpr std::uint8_t AllSoundOff = 120;
constexpr std::uint8_t AllNotesOff = 123;

std::size_t Index(int channel) { return static_cast<std::size_t>(channel); }

}  // namespace

void TMuteSolo::Btn_Mute00MouseDown(int channel, bool ctrl) {
  if (!desk.IsActive(channel)) return;
  desk.SetMidiChannel(channel);
  if (ctrl && !desk.Settings.Flag_SpecialB) return ClearMutes();
  TChannels mutes = Mutes();
  SetMutes(mutes.flip(Index(channel)));
  CallHook(desk.Hooks.ShowMutes);
}

void TMuteSolo::Btn_Solo00MouseDown(int channel, bool ctrl) {
  if (!desk.song.MidiFileLoaded || !TStripsDesk::IsChannel(channel)) return;
  bool& solo = desk.Data(channel).Solo;
  // A channel that lost its events can still give its solo up.
  if (!desk.Data(channel).Active && !solo) return;
  desk.SetMidiChannel(channel);
  if (ctrl && !desk.Settings.Flag_SpecialB) return ClearSolos();
  if (!AnySolo())
    for (TMidiChannelData& data : desk.song.MidiData) data.MuteBeforeFirstSolo = data.Mute;
  solo = !solo;
  const bool any = AnySolo();
  TChannels mutes;
  for (int c = 0; c < ChannelCount; ++c)
    mutes[Index(c)] = any ? !desk.Data(c).Solo : desk.Data(c).MuteBeforeFirstSolo;
  SetMutes(mutes);
  CallHook(desk.Hooks.ShowSolos, channel);
  CallHook(desk.Hooks.ShowMutes);
}

void TMuteSolo::ClearMutes() {
  if (!AnyMute()) return;
  SetMutes({});
  CallHook(desk.Hooks.ShowMutes);
}

void TMuteSolo::ClearSolos() {
  if (!AnySolo() && !AnyMute()) return;
  for (TMidiChannelData& data : desk.song.MidiData) data.Solo = data.MuteBeforeFirstSolo = false;
  SetMutes({});
  CallHook(desk.Hooks.ShowSolos, -1);
  CallHook(desk.Hooks.ShowMutes);
}

bool TMuteSolo::AnySolo() const {
  for (const TMidiChannelData& data : desk.song.MidiData)
    if (data.Solo) return true;
  return false;
}

bool TMuteSolo::AnyMute() const { return Mutes().any(); }

TMuteSolo::TChannels TMuteSolo::Mutes() const {
  TChannels mutes;
  for (int c = 0; c < ChannelCount; ++c) mutes[Index(c)] = desk.Data(c).Mute;
  return mutes;
}

bool TMuteSolo::IsMutedBySolo(int channel) const {
  if (!TStripsDesk::IsChannel(channel)) return false;
  const TMidiChannelData& data = desk.Data(channel);
  return data.Mute && !data.Solo && !data.MuteBeforeFirstSolo && AnySolo();
}

void TMuteSolo::SetMutes(TChannels mutes) {
  const TChannels silenced = mutes & ~Mutes();
  {
    const auto held = desk.gate.Enter();
    for (int c = 0; c < ChannelCount; ++c) desk.Data(c).Mute = mutes[Index(c)];
  }
  // No note starts on a mute channel, so those that end from here on are all of them.
  for (int c = 0; c < ChannelCount; ++c)
    if (silenced[Index(c)]) Silence(c);
}

void TMuteSolo::Silence(int channel) {
  if (!desk.IsDrumSplit(channel)) return desk.player.SilenceChannel(channel);
  const int route = desk.RouteOf(channel);
  const auto status = static_cast<std::uint8_t>(Controller | DrumsOnTheWire);
  const auto held = desk.gate.Enter();
  desk.realtime.RMSValue[Index(channel)].Count = 0;
  desk.player.EndNotesHeld(route, DrumsOnTheWire);
  desk.player.SendHeld(route, status, AllSoundOff, 0);
  desk.player.SendHeld(route, status, AllNotesOff, 0);
}

}  // namespace Sonarello
