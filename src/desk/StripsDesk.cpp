#include "desk/StripsDesk.h"

#include "playback/MidiErrors.h"
#include "playback/Redirection.h"
#include "playback/Rerouting.h"

namespace Sonarello {

namespace {

constexpr int DrumsOnTheWire = 9;

}  // namespace

bool TStripsDesk::IsActive(int channel) const {
  return song.MidiFileLoaded && IsChannel(channel) && Data(channel).Active;
}

bool TStripsDesk::IsHosted(int route) const {
  const auto table = routes.MidiRouting();
  const auto index = static_cast<std::size_t>(route);
  return index < table.size() && table[index].VSTi;
}

void TStripsDesk::SetMidiChannel(int MidiIndex) {
  if (!song.MidiFileLoaded || !IsChannel(MidiIndex)) return;
  ForgetFailures();
  const int before = song.ActiveMidiIndex;
  song.ActiveMidiIndex = MidiIndex;
  song.ActiveMidiChannel = Data(MidiIndex).MidiChannel;
  if (before != MidiIndex) CallHook(Hooks.SelectionChanged, before, MidiIndex);
}

void TStripsDesk::SelectLowestActive() {
  int lowest = 0;
  while (lowest < ChannelCount && !Data(lowest).Active) ++lowest;
  SetMidiChannel(lowest < ChannelCount ? lowest : 0);
}

TActiveChannelText TStripsDesk::ActiveText() const {
  const int active = song.ActiveMidiIndex;
  if (!song.MidiFileLoaded || !IsChannel(active)) return {};
  const auto table = routes.MidiRouting();
  const TMidiRouting& route = table[RouteOfChannel(song, table, active)];
  const bool several = options.MultiMidi && table.size() > 1;
  return {.Heading = ActiveChannelText(Data(active).MidiChannel),
          .Instrument = route.Instrument,
          .OutputName = route.OutputName,
          .Route = several ? RouteText(route) : std::string{}};
}

bool TStripsDesk::IsDrumSplit(int channel) const {
  if (Hooks.IsDrumSplit) return Hooks.IsDrumSplit(channel);
  // As the player sends the notes of the channel.
  const int part = Data(channel).DrumPart;
  return RouteOf(channel) != 0 && ((part == 2 && song.DrumsSecForceToChannel10) ||
                                   (part == 3 && song.DrumsThirdForceToChannel10));
}

std::uint8_t TStripsDesk::StatusTo(int channel, std::uint8_t kind) const {
  const int wire = realtime.Realtime[static_cast<std::size_t>(channel)].MidiChannel;
  return static_cast<std::uint8_t>(kind | (IsDrumSplit(channel) ? DrumsOnTheWire : wire));
}

bool TStripsDesk::CanSend(int route) {
  if (IsPlaying()) return true;
  const auto index = static_cast<std::size_t>(route);
  if (IsHosted(route) || !Settings.GrabMidiDriver || index >= failed.size()) return false;
  if (outputs.IsOpen(route)) return true;
  if (failed[index]) return false;
  std::string reason;
  try {
    if (outputs.Open(route)) return true;
  } catch (const EMidiOutputError& error) {
    reason = error.what();
  }
  failed.set(index);
  if (!reason.empty()) CallHook(Hooks.PortFailed, reason);
  return false;
}

}  // namespace Sonarello
