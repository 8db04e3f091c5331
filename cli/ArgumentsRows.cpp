#include <limits>

#include "ArgumentParts.h"
#include "core/Texts.h"

namespace Sonarello {

void AddRows(CLI::App& app, Arguments& a) {
  constexpr int lastFilter = 8;
  CLI::App* rows = AddCommand(app, a, "rows",
                              Text("Gibt die Event-Liste einer Spur in Worten aus",
                                   "Prints the event list of a track in words"));
  AddFiles(*rows, a, false);
  AddValue(
      *rows, "--track",
      [&a](const std::string& text) {
        a.Track = Number("--track", text, 0, std::numeric_limits<int>::max());
      },
      Text("Eintrag der Spurliste, 0 ist Master", "Entry of the track list, 0 is Master"), "N");
  AddValue(
      *rows, "--filter",
      [&a](const std::string& text) { a.Filter = Number("--filter", text, 0, lastFilter); },
      Text("0 alles, 1 Noten, 2 Programm-Wechsel, 3 Controller, 4 und 5 After-touch von Taste und "
           "Kanal, "
           "6 Pitch Bend, 7 Sysex, 8 Metas [0]",
           "0 all, 1 notes, 2 program changes, 3 controllers, 4 and 5 after-touch of key and channel, "
           "6 pitch bend, 7 sysex, 8 metas [0]"),
      "N");
  rows->add_flag_callback(
      "--sysex", [&a] { a.SysexList = true; },
      Text("Die Liste der Sysexe statt einer Spur", "The list of sysexes instead of a track"));
}

}  // namespace Sonarello
