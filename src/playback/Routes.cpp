#include "playback/Routes.h"

#include <algorithm>
#include <string_view>

#include "core/EventList.h"
#include "core/Markers.h"
#include "core/TextOrder.h"
#include "core/Texts.h"
#include "instruments/InstrumentArray.h"

namespace Sonarello {

namespace {

constexpr std::string_view GMName = "GM Soundset";
constexpr std::string_view GM2Name = "GM2 Soundset";
constexpr std::string_view SoundCanvasName = "Roland SC-VA (VSTi)";
constexpr std::string_view SoundCanvasPlugin = "Roland SC-VA";
constexpr std::string_view Wavetable = "Microsoft GS Wavetable";

/// An instrument that a hosted synthesizer can stand for.
bool SuitsHosted(std::string_view instrument) {
  return instrument == GMName || instrument == GM2Name || instrument == SoundCanvasName;
}

/// The number of a name that the catalogue does not know stays.
void SetInstrument(TMidiRouting& route, std::string_view name) {
  route.Instrument = name;
  if (const TInstrument* row = InstrumentByName(name)) route.InstrumValue = row->Value;
}

void SetOutput(TMidiRouting& route, const TDeviceList& device, std::int32_t latency) {
  route.OutputName = device.Name;
  route.OutputDevID = static_cast<std::uint8_t>(device.DeviceID);
  route.MSWavetable = false;
  route.VSTi = device.VSTi;
  route.VSTiHandle = device.VSTiHandle;
  route.VSTiUniqueID = device.VSTi ? device.VSTiUniqueID : 0;
  route.Delay = device.VSTi ? latency : 0;
}

std::string KeyOf(std::string_view name, std::size_t index) {
  std::string key(name);
  key += static_cast<char>('0' + index / 10);
  key += static_cast<char>('0' + index % 10);
  return key;
}

}  // namespace

std::vector<TDeviceList> OutDevices(std::span<const std::string> portNames,
                                    std::span<const TInstrumentSlot> slots) {
  // The tab sorts before every letter, so a name comes before a longer one that begins with it.
  struct TNamed {
    std::string Key;
    TDeviceList Device;
  };
  std::vector<TNamed> ports;
  for (std::size_t i = 0; i < portNames.size(); ++i)
    ports.push_back(
        {portNames[i] + '\t', {.DeviceID = static_cast<int>(i), .Name = portNames[i], .VSTi = false}});
  std::ranges::stable_sort(
      ports, [](const TNamed& a, const TNamed& b) { return CompareTexts(a.Key, b.Key) < 0; });
  std::vector<TDeviceList> devices;
  for (TNamed& port : ports) devices.push_back(std::move(port.Device));
  for (std::size_t i = 0; i < slots.size(); ++i)
    if (slots[i].IsFilled())
      devices.push_back({.DeviceID = static_cast<int>(i),
                         .Name = slots[i].Name,
                         .VSTi = true,
                         .VSTiHandle = slots[i].Handle,
                         .VSTiUniqueID = slots[i].UniqueID});
  return devices;
}

std::optional<std::string> NoPlaybackText(std::size_t portCount, std::span<const TDeviceList> devices) {
  if (!devices.empty()) return std::nullopt;
  constexpr std::string_view english =
      "There is no midi interface in your computer!\r\nTherefor no midi playback posible!";
  if (portCount == 0)
    return Text(
        "Sie haben keine MIDI-Interface an Ihrem Computer!\r\nDaher ist keine MIDI-Wiedergabe möglich!",
        english);
  return Text(
      "Sie haben keine Midi-Schnittstelle in Ihrem Computer!\r\nDaher ist keine Midi-Wiedergabe "
      "möglich!",
      english);
}

std::size_t RouteOfChannel(const Song& song, std::span<const TMidiRouting> routes,
                           int channel) noexcept {
  const std::size_t route = song.MidiOutIndex[static_cast<std::size_t>(channel)];
  return route < routes.size() ? route : 0;
}

TRoutes::TRoutes() { AppendVirtual(); }

// --- Settings

void TRoutes::LoadSettings(const ISettings& settings, bool MultiMidi) {
  for (std::size_t i = 0; i < MidiRouteLoad.size(); ++i) {
    TMidiRouting& route = MidiRouteLoad[i];
    route = {};
    if (i > 0 && !MultiMidi) continue;
    const std::string_view otherwise = i == 0 ? InstrumentArray[0].Name : std::string_view{};
    SetInstrument(
        route, CurrentInstrumentName(settings.ReadString({}, KeyOf("MidiInstrument", i), otherwise)));
    route.OutputName = settings.ReadString({}, KeyOf("MidiOutput", i), {});
  }
}

void TRoutes::StoreSettings(ISettings& settings, bool MultiMidi) const {
  const std::size_t count = MultiMidi ? MidiRouteLoad.size() : 1;
  for (std::size_t i = 0; i < count; ++i) {
    const auto store = [&](std::string_view name, const std::string& value) {
      if (value.empty())
        settings.DeleteValue({}, KeyOf(name, i));
      else
        settings.WriteString({}, KeyOf(name, i), value);
    };
    store("MidiInstrument", MidiRouteLoad[i].Instrument);
    store("MidiOutput", MidiRouteLoad[i].OutputName);
  }
}

// --- Building

void TRoutes::Build(std::span<const TDeviceList> devices, std::span<TInstrumentSlot> slots,
                    std::int32_t AudioTotalLatencyTime) {
  if (ClosePorts) ClosePorts();
  elements = 0;
  for (TInstrumentSlot& slot : slots) slot.MidiRoutingIdx = -1;
  for (const TMidiRouting& stored : MidiRouteLoad)
    if (!stored.OutputName.empty()) AppendStored(stored, devices, slots, AudioTotalLatencyTime);
  AppendSlots(slots, AudioTotalLatencyTime);
  if (elements == 0 && !devices.empty()) AppendFallback(devices, AudioTotalLatencyTime);
  if (elements == 0) AppendVirtual();
  MidiDriverReady = true;
  if (RoutesBuilt) RoutesBuilt();
}

TMidiRouting* TRoutes::Append() {
  return elements < MostRoutes ? &live[static_cast<std::size_t>(elements++)] : nullptr;
}

/// Two devices of one name are both taken; one that is missing makes no route.
void TRoutes::AppendStored(const TMidiRouting& stored, std::span<const TDeviceList> devices,
                           std::span<TInstrumentSlot> slots, std::int32_t latency) {
  for (const TDeviceList& device : devices) {
    if (device.Name != stored.OutputName) continue;
    TMidiRouting* route = Append();
    if (route == nullptr) return;
    SetOutput(*route, device, latency);
    const bool replaced = device.VSTi && !SuitsHosted(stored.Instrument);
    SetInstrument(*route, replaced ? GMName : std::string_view(stored.Instrument));
    const auto slot = static_cast<std::size_t>(device.DeviceID);
    if (device.VSTi && slot < slots.size()) slots[slot].MidiRoutingIdx = elements - 1;
  }
}

void TRoutes::AppendSlots(std::span<TInstrumentSlot> slots, std::int32_t latency) {
  for (std::size_t i = 0; i < slots.size(); ++i) {
    TInstrumentSlot& slot = slots[i];
    if (!slot.IsFilled() || slot.MidiRoutingIdx >= 0) continue;
    TMidiRouting* route = Append();
    if (route == nullptr) return;
    SetOutput(*route,
              {.DeviceID = static_cast<int>(i),
               .Name = slot.Name,
               .VSTi = true,
               .VSTiHandle = slot.Handle,
               .VSTiUniqueID = slot.UniqueID},
              latency);
    SetInstrument(*route, slot.Name.starts_with(SoundCanvasPlugin) ? SoundCanvasName : GMName);
    slot.MidiRoutingIdx = elements - 1;
  }
}

void TRoutes::UseMainInstrument(TMidiRouting& route) const {
  const std::string& stored = MidiRouteLoad[0].Instrument;
  SetInstrument(route, stored.empty() ? InstrumentArray[0].Name : std::string_view(stored));
}

/// Whoever stored an output that is gone gets the first one; whoever stored none gets the software
/// synthesizer, so that something sounds without further devices.
void TRoutes::AppendFallback(std::span<const TDeviceList> devices, std::int32_t latency) {
  const auto isWavetable = [](const TDeviceList& device) {
    const std::string name = SmallLetters(device.Name);
    return name.find("microsoft") != name.npos && name.find("wavetable") != name.npos;
  };
  auto device = devices.begin();
  if (MidiRouteLoad[0].OutputName.empty()) {
    const auto found = std::ranges::find_if(devices, isWavetable);
    if (found != devices.end()) device = found;
  }
  TMidiRouting& route = *Append();
  SetOutput(route, *device, latency);
  route.MSWavetable = device->Name.find(Wavetable) != std::string::npos;
  UseMainInstrument(route);
}

void TRoutes::AppendVirtual() {
  TMidiRouting& route = *Append();
  SetOutput(route, {.Name = "Virtual MIDI"}, 0);
  UseMainInstrument(route);
}

// --- Use

void TRoutes::SetDelay(Song& song, int route, std::int32_t delay) {
  if (route < 0 || route >= elements) return;
  live[static_cast<std::size_t>(route)].Delay = delay;
  for (TMyTrack& track : song.MidiTrack)
    if (track.TrkMidiIndex >= 0 && track.TrkMidiIndex < ChannelCount &&
        song.MidiOutIndex[static_cast<std::size_t>(track.TrkMidiIndex)] == route)
      track.TrkDelay = delay;
}

void TRoutes::UpdateVSTiUse(const Song& song) {
  bool only = true;
  bool inUse = false;
  for (int c = 0; c < ChannelCount; ++c)
    if (live[RouteOfChannel(song, MidiRouting(), c)].VSTi)
      inUse = true;
    else
      only = false;
  VSTiOnly = only;
  VSTiInUse = inUse;
}

}  // namespace Sonarello
