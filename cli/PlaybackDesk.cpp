#include "PlaybackDesk.h"

#include <algorithm>

#include "DisplayText.h"
#include "core/TextOrder.h"
#include "core/Texts.h"
#include "playback/HostedOutputs.h"
#include "playback/drivers/FluidSynthInstrument.h"
#include "playback/drivers/RtAudioDriver.h"

namespace Sonarello {

bool PlaybackDesk::LoadSynthesizer(std::vector<std::string>& complaints) {
  try {
    host.LoadInstrument(0, FluidSynthInstrument::Load(arguments.SoundFont));
    return true;
  } catch (const TAudioError& error) {
    complaints.emplace_back(error.what());
    return false;
  }
}

bool PlaybackDesk::ChoosePort(const std::vector<std::string>& names,
                              std::vector<std::string>& complaints) {
  const auto holds = [&](const std::string& name) {
    return SmallLetters(name).find(SmallLetters(arguments.Port)) != std::string::npos;
  };
  auto name = std::ranges::find(names, arguments.Port);
  if (name == names.end()) name = std::ranges::find_if(names, holds);
  if (name == names.end()) {
    complaints.push_back(Text("Diesen MIDI-Ausgang gibt es nicht: ", "There is no such MIDI output: ") +
                         arguments.Port);
    for (const std::string& known : names) complaints.push_back("  " + known);
    return false;
  }
  routes.MidiRouteLoad[0].OutputName = *name;
  return true;
}

bool PlaybackDesk::BuildRoutes(const Setup& given, std::vector<std::string>& complaints) {
  const std::vector<std::string> ports = midi.OutputNames();
  for (std::size_t n = 0; n < given.routes.Table.size(); ++n)
    routes.MidiRouteLoad[n] = given.routes.Table[n];
  if (!arguments.Port.empty()) {
    if (!ChoosePort(ports, complaints)) return false;
  } else if (!LoadSynthesizer(complaints)) {
    if (!arguments.SoundFont.empty()) return false;
  } else if (std::ranges::find(ports, routes.MidiRouteLoad[0].OutputName) == ports.end()) {
    routes.MidiRouteLoad[0].OutputName = host.VSTiArray()[0].Name;
  }
  std::vector<TInstrumentSlot> slots = SlotsOf(host);
  const std::vector<TDeviceList> devices = OutDevices(ports, slots);
  if (const auto text = NoPlaybackText(ports.size(), devices)) {
    complaints.push_back(*text);
    return false;
  }
  routes.RoutesBuilt = [this] { outputs.RoutesBuilt(); };
  routes.ClosePorts = [this] { outputs.CloseAll(); };
  routes.Build(devices, slots, 0);
  setup = std::make_unique<Setup>(given);
  setup->routes.Table.assign(routes.MidiRouting().begin(), routes.MidiRouting().end());
  LoadSounds(*setup);
  return true;
}

bool PlaybackDesk::Open(const std::string& file) {
  desk = std::make_unique<SongDesk>(*setup, arguments.Answer.value_or(false));
  if (!desk->Open(file)) return false;
  routes.UpdateVSTiUse(desk->song);
  host.VSTiInUse = routes.VSTiInUse.load();
  player = std::make_unique<TMidiPlayer>(TPlayerParts{desk->song, setup->options, routes, outputs,
                                                      clock, gate, realtime, desk->Functions(), &host});
  player->SongChanged();
  return true;
}

bool PlaybackDesk::Prepare(const Setup& given, const std::string& file, Console& console) {
  std::vector<std::string> complaints;
  const bool built = BuildRoutes(given, complaints);
  for (const std::string& complaint : complaints) console.Err(VisibleText(OneLine(complaint)));
  if (!built) return false;
  const bool opened = Open(file);
  if (!opened || !arguments.Quiet) TellMessages(console, file, desk->messages.Shown);
  return opened;
}

std::string PlaybackDesk::StartAudio() {
  audio = FindAudioDrivers();
  return StartFirstAudio(host, audio);
}

}  // namespace Sonarello
