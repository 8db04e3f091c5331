#include <string>

#include "Commands.h"
#include "DisplayText.h"
#include "core/Texts.h"
#include "editors/EventRows.h"

namespace Sonarello {

namespace {

/// Wires the list's questions to the song's names.
void Wire(TEventRows& rows, SongDesk& desk) {
  rows.Hooks.PatchName = [&desk](int channel) { return desk.names.CurrentName(channel); };
  rows.Texts.Hooks.ProgramChangeName = [&desk](int channel, const TAddress& address) {
    return desk.names.ProgramChangeName(channel, address);
  };
}

std::string LineOf(const TEventData& row) {
  std::string line;
  for (const std::string& field : row.Fields) line += (line.empty() ? "" : "\t") + VisibleText(field);
  return line + "\n";
}

/// Entries of the track list: one for each track, or Master and sixteen channels in a song of one
/// track.
int EntriesOf(const Song& song) {
  return song.MidiFileFormat == 0 ? ChannelCount + 1 : song.NumberOfSourceTracks;
}

}  // namespace

int RowsCommand(const Arguments& arguments, const Setup& setup, Console& console) {
  const std::string& file = arguments.Files.front();
  SongDesk desk(setup, arguments.Answer.value_or(false));
  const bool opened = desk.Open(file);
  if (!opened || !arguments.Quiet) TellMessages(console, file, desk.messages.Shown);
  if (!opened) return Refused;
  const int entries = EntriesOf(desk.song);
  if (arguments.Track && *arguments.Track >= entries) {
    const std::string last = std::to_string(entries - 1);
    console.Err("sonarello-cli: --track: " + Text("Die Liste hat die Einträge 0 bis " + last,
                                                  "the list has the entries 0 to " + last));
    return WrongUsage;
  }
  SongGate gate;
  TEventRows rows(desk.song, setup.routes, setup.options, gate);
  Wire(rows, desk);
  rows.UpdateDisplayedEvents();
  if (arguments.SysexList)
    rows.ShowSysexs();
  else
    rows.CB_TrackListChange(*arguments.Track);
  rows.CB_FilterChange(arguments.Filter.value_or(0));
  for (std::int32_t row = 1; row <= rows.Rows() && console.HasReader(); ++row)
    console.Out(LineOf(rows.Row(row)));
  return Done;
}

}  // namespace Sonarello
