#include "ArgumentParts.h"
#include "core/Texts.h"

namespace Sonarello {

namespace {

void AddSoundFont(CLI::App& command, Arguments& a) {
  AddValue(
      command, "--soundfont", [&a](const std::string& text) { a.SoundFont = text; },
      Text("SoundFont des eingebauten Synthesizers", "SoundFont of the built-in synthesizer"), "SF2");
}

void AddPort(CLI::App& command, Arguments& a, const std::string& help) {
  AddValue(
      command, "--port", [&a](const std::string& text) { a.Port = text; }, help, "NAME");
}

void AddPlay(CLI::App& app, Arguments& a) {
  CLI::App* play =
      AddCommand(app, a, "play", Text("Öffnet eine Datei und spielt sie", "Opens a file and plays it"));
  AddFiles(*play, a, false);
  AddValue(
      *play, "--from", [&a](const std::string& text) { a.From = text; },
      Text("Beginnt an dieser Stelle", "Begins at this place"), "M:B");
  AddValue(
      *play, "--to", [&a](const std::string& text) { a.To = text; },
      Text("Endet an dieser Stelle", "Ends at this place"), "M:B");
  AddValue(
      *play, "--loop", [&a](const std::string& text) { a.Loop = text; },
      Text("Wiederholt diesen Bereich", "Repeats this range"), "M:B-M:B");
  AddPort(*play, a,
          Text("Spielt über diesen MIDI-Ausgang; sonst über den eingebauten Synthesizer",
               "Plays through this MIDI output; else through the built-in synthesizer"));
  AddSoundFont(*play, a);
}

void AddRender(CLI::App& app, Arguments& a) {
  CLI::App* render = AddCommand(app, a, "render",
                                Text("Öffnet eine Datei und schreibt ihren Klang als WAV",
                                     "Opens a file and writes its sound as WAV"));
  AddFiles(*render, a, false);
  AddValue(
      *render, "-o,--output", [&a](const std::string& text) { a.Output = text; },
      Text("WAV-Datei, die ersetzt wird", "WAV file, which is replaced"), "OUT.wav");
  AddValue(
      *render, "--bits",
      [&a](const std::string& text) {
        OneOf("--bits", text, {"16", "16d", "32"});
        a.Bits = text;
      },
      Text("16 Bit, 16 Bit mit Dither oder 32 Bit Gleitkomma",
           "16 bit, 16 bit with dither, or 32 bit floating point"),
      "16|16d|32");
  AddSoundFont(*render, a);
}

}  // namespace

void AddPlaybackCommands(CLI::App& app, Arguments& a) {
  AddPlay(app, a);
  AddRender(app, a);
  AddCommand(
      app, a, "ports",
      Text("Listet MIDI-Anschlüsse und Audio-Ausgänge auf", "Lists MIDI ports and audio outputs"));
  CLI::App* monitor = AddCommand(
      app, a, "monitor",
      Text("Zeigt, was an einem MIDI-Eingang ankommt", "Shows what comes in at a MIDI input"));
  AddPort(*monitor, a, Text("Dieser Eingang; sonst der erste", "This input; else the first"));
}

}  // namespace Sonarello
