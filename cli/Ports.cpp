#include <fmt/format.h>

#include <nlohmann/json.hpp>

#include "Commands.h"
#include "DisplayText.h"
#include "PlaybackDesk.h"
#include "core/TextEncoding.h"
#include "core/Texts.h"
#include "playback/drivers/FluidSynthInstrument.h"
#include "playback/drivers/RtAudioDriver.h"

namespace Sonarello {

namespace {

struct Group {
  std::string Key;      ///< in JSON
  std::string Heading;  ///< for a reader
  std::vector<std::string> Names;
};

std::vector<Group> FindPorts(std::string& api) {
  RtMidiDriver midi;
  std::vector<Group> groups;
  groups.push_back({"inputs", Text("MIDI-Eingänge", "MIDI inputs"), midi.InputNames()});
  groups.push_back({"outputs", Text("MIDI-Ausgänge", "MIDI outputs"), midi.OutputNames()});
  api = midi.ApiName();
  Group hosted{"instruments", Text("Eingebaute Instrumente", "Built-in instruments"), {}};
  try {
    const auto synthesizer = FluidSynthInstrument::Load();
    hosted.Names.push_back(synthesizer->Name() + " (" + synthesizer->BankFile() + ")");
  } catch (const TAudioError&) {
    // Without a SoundFont there is none to list.
    hosted.Names.clear();
  }
  groups.push_back(std::move(hosted));
  Group audio{"audio", Text("Audio-Ausgänge", "Audio outputs"), {}};
  for (const auto& driver : FindAudioDrivers())
    for (const std::string& name : driver->DeviceNames())
      audio.Names.push_back(driver->ApiName() + ": " + name);
  groups.push_back(std::move(audio));
  return groups;
}

}  // namespace

int PortsCommand(const Arguments& arguments, const Setup&, Console& console) {
  std::string api;
  const std::vector<Group> groups = FindPorts(api);
  if (arguments.Json) {
    nlohmann::ordered_json all = {{"midi", api}};
    for (const Group& group : groups) {
      all[group.Key] = nlohmann::ordered_json::array();
      for (const std::string& name : group.Names) all[group.Key].push_back(DecodedText(name));
    }
    console.Out(all.dump(2) + "\n");
    return Done;
  }
  for (const Group& group : groups) {
    const bool midi = &group < &groups[2] && !group.Names.empty();
    console.Out(group.Heading + (midi ? " (" + api + ")" : std::string()) + "\n");
    for (const std::string& name : group.Names) console.Out("  " + VisibleText(name) + "\n");
    if (group.Names.empty()) console.Out("  " + Text("keine", "none") + "\n");
  }
  return Done;
}

}  // namespace Sonarello
