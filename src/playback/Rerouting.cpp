#include "playback/Rerouting.h"

#include <algorithm>

#include "core/EventList.h"
#include "core/Texts.h"

namespace Sonarello {

namespace {

constexpr std::size_t BankMSB = 0;
constexpr std::size_t BankLSB = 32;
constexpr std::size_t MostOffered = 16;  ///< lines of the menu

constexpr std::uint8_t XGKits[] = {5,  6,  7,  8,  9,  18, 19, 26, 31, 33, 34,
                                   41, 51, 54, 59, 62, 69, 70, 74, 80, 87};
constexpr std::uint8_t GM2Kits[] = {14, 16, 36, 37, 42, 43, 45, 48, 52, 53,
                                    61, 63, 64, 68, 71, 75, 82, 90, 91, 103};
constexpr std::uint8_t LSB4Kits[] = {22, 24, 38, 60, 72};
constexpr std::uint8_t FantomKits[] = {25};
constexpr std::uint8_t GEMKits[] = {13, 28};
constexpr std::uint8_t MapKits[] = {1, 2, 3, 4, 15, 17, 83};
constexpr std::uint8_t MSBOnlyKits[] = {100};

struct TDrumBankRow {
  std::span<const std::uint8_t> Instruments;
  TDrumBank Bank;
};
constexpr TDrumBankRow DrumBanks[] = {{XGKits, {127, 0}}, {GM2Kits, {120, 0}},
                                      {LSB4Kits, {0, 4}}, {FantomKits, {86, 64}},
                                      {GEMKits, {15, 0}}, {MSBOnlyKits, {0, 0, false}}};

bool Holds(std::span<const std::uint8_t> instruments, int value) {
  return std::ranges::find(instruments, value) != instruments.end();
}

void Call(const auto& hook, auto... arguments) {
  if (hook) hook(arguments...);
}

}  // namespace

TDrumBank DrumBankOf(int instrumValue, int defaultMap) noexcept {
  for (const TDrumBankRow& row : DrumBanks)
    if (Holds(row.Instruments, instrumValue)) return row.Bank;
  if (Holds(MapKits, instrumValue)) return {0, static_cast<std::uint8_t>(defaultMap)};
  return {};
}

std::string RouteText(const TMidiRouting& route) {
  return '"' + route.Instrument + Text("\" am MIDI-Ausgang \"", "\" on MIDI output \"") +
         route.OutputName + '"';
}

std::string DrumEditorText(int editor, const std::string& kit, int channel,
                           std::span<const TMidiRouting> routes, std::size_t route) {
  const std::string instrument = routes.size() > 1 && route < routes.size()
                                     ? '(' + routes[route].Instrument + ") "
                                     : std::string{};
  return Text("zeige ", "show ") + std::to_string(editor) + ". Drum Editor - " + instrument + '"' +
         kit + Text("\" auf Midikanal ", "\" on midi channel ") + std::to_string(channel + 1);
}

bool TRerouting::IsOffered() const {
  return song.MidiFileLoaded && options.MultiMidi && routes.MidiRouteElements() >= 2 &&
         song.ActiveMidiIndex >= 0 && song.ActiveMidiIndex < ChannelCount;
}

bool TRerouting::RefuseWhilePlaying(bool isPlaying) {
  if (isPlaying)
    messages.Show(Text("Bitte halten Sie die Wiedergabe an.", "Not allowed during playback."));
  return isPlaying;
}

std::optional<TRouteMenu> TRerouting::Menu(bool isPlaying, bool all) {
  if (!IsOffered() || RefuseWhilePlaying(isPlaying)) return std::nullopt;
  SetAllMidiOuts = all;
  TRouteMenu menu;
  menu.Head = Text("Route Midikanal ", "Route MIDI channel ") +
              std::to_string(song.ActiveMidiChannel + 1) + Text(" auf ...", " on ...");
  const auto table = routes.MidiRouting();
  const std::size_t now = RouteOfChannel(song, table, song.ActiveMidiIndex);
  for (std::size_t r = 0; r < std::min(table.size(), MostOffered); ++r)
    menu.Items.push_back({RouteText(table[r]), r == now});
  return menu;
}

bool TRerouting::Choose(std::size_t route, bool isPlaying) {
  const auto table = routes.MidiRouting();
  if (!IsOffered() || route >= table.size() || RefuseWhilePlaying(isPlaying)) return false;
  const int active = song.ActiveMidiIndex;
  const int first = SetAllMidiOuts ? 0 : active;
  const int last = SetAllMidiOuts ? ChannelCount - 1 : active;
  SetAllMidiOuts = false;
  Call(Hooks.CancelBrowser, int{table[RouteOfChannel(song, table, active)].InstrumValue});
  Call(Hooks.CreateBrowser, int{table[route].InstrumValue});
  {
    const auto held = gate.Enter();
    for (int c = first; c <= last; ++c) Assign(c, route);
    routes.UpdateVSTiUse(song);
    if (routes.VSTiInUse && routes.VSTiOnly)
      for (TMyTrack& track : song.MidiTrack) track.TrkDelay = 0;
  }
  for (int c = first; c <= last; ++c) Call(Hooks.ShowSound, c);
  if (routes.VSTiInUse) Call(Hooks.WakePlayer);
  Call(Hooks.ShowRoute, route);
  Call(Hooks.Changed);
  return true;
}

void TRerouting::Assign(int channel, std::size_t route) {
  const TMidiRouting& target = routes.MidiRouting()[route];
  const auto c = static_cast<std::size_t>(channel);
  song.MidiOutIndex[c] = static_cast<std::uint8_t>(route);
  if (song.MidiData[c].DrumPart > 0) SetDrumBank(song.MidiData[c], target);
  const int track = TrackOfChannel(song, channel);
  if (song.MidiFileFormat == 0 || track < 0) return;
  song.MidiTrack[static_cast<std::size_t>(track)].TrkDelay = target.Delay;
  LastRoutedChannel = static_cast<std::uint8_t>(channel);
}

void TRerouting::SetDrumBank(TMidiChannelData& channel, const TMidiRouting& route) const {
  const int map = options.RolandSCDefaultMap ? options.RolandSCDefaultMapIdx : 0;
  const TDrumBank bank = DrumBankOf(route.InstrumValue, map);
  const auto set = [](TCtrl& controller, std::uint8_t value, bool sent) {
    controller.Value = value;
    if (controller.Event == nullptr) return;
    controller.Event->Value[1] = controller.Event->ValueOrg[1] = value;
    controller.Event->DLength = sent ? MessageLength(Controller) : 0;
  };
  set(channel.CtrlArray[BankMSB], bank.MSB, true);
  set(channel.CtrlArray[BankLSB], bank.LSB, bank.SendsLSB);
}

}  // namespace Sonarello
