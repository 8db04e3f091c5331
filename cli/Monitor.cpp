#include <fmt/format.h>

#include <algorithm>
#include <chrono>
#include <thread>

#include "Commands.h"
#include "DisplayText.h"
#include "Interrupts.h"
#include "core/TextOrder.h"
#include "core/Texts.h"
#include "playback/MidiIn.h"
#include "playback/drivers/RtMidiDriver.h"

namespace Sonarello {

int MonitorCommand(const Arguments& arguments, const Setup&, Console& console) {
  RtMidiDriver midi;
  const std::vector<std::string> names = midi.InputNames();
  auto name = std::ranges::find_if(names, [&](const std::string& known) {
    return SmallLetters(known).find(SmallLetters(arguments.Port)) != std::string::npos;
  });
  if (name == names.end()) {
    console.Err(Text("Diesen MIDI-Eingang gibt es nicht: ", "There is no such MIDI input: ") +
                arguments.Port);
    return Refused;
  }
  TMidiInput input(midi);
  input.FMsgFilter = {};
  const auto print = [&](TMidiInput& from) {
    while (const auto event = from.GetMidiEvent()) {
      std::string line = fmt::format("{:>8}", event->Time);
      if (event->MidiMessage == Sysex)
        for (const std::uint8_t byte : event->Sysex) line += fmt::format(" {:02X}", byte);
      else
        line += fmt::format(" {:02X} {:02X} {:02X}", event->MidiMessage, event->Data1, event->Data2);
      console.Out(line + "\n");
    }
  };
  input.FOnMIDIInput = print;
  input.FOnOverflow = [&](TMidiInput&) {
    console.Err(Text("Es kam mehr an, als gelesen werden konnte", "more came in than could be read"));
  };
  const InterruptGuard guard;
  try {
    input.SetProductName(*name);
    input.OpenAndStart();
  } catch (const EMidiInputError& error) {
    console.Err(std::string("sonarello-cli: ") + error.what());
    return Refused;
  }
  if (!arguments.Quiet) console.Err(*name);
  while (!InterruptGuard::Came() && console.HasReader()) {
    input.Pump();
    console.FlushResults();
    std::this_thread::sleep_for(std::chrono::milliseconds(5));
  }
  input.StopAndClose();
  return Done;
}

}  // namespace Sonarello
