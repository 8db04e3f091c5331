#include <fmt/format.h>

#include <iterator>

#include "Commands.h"
#include "core/EventList.h"
#include "core/Texts.h"

namespace Sonarello {

namespace {

std::string MetaHex(const Meta& meta) {
  constexpr std::string_view digits = "0123456789ABCDEF";
  std::string text;
  text.reserve(2 * meta.size());
  for (const std::uint8_t byte : meta.Bytes()) {
    text += digits[byte >> 4];
    text += digits[byte & 15];
  }
  return text;
}

std::string PlainLine(int track, const TypMidiEvent& e) {
  return fmt::format("{}\t{}\t{}\t{:02X}\t{}\t{}\t{}\t{}\t{}\t{}\n", track, e.Position, e.TimePosition,
                     e.Command, e.DLength, e.DType, e.MType, e.Value[0], e.Value[1],
                     e.Meta.empty() ? "-" : MetaHex(e.Meta));
}

std::string JsonLine(int track, const TypMidiEvent& e) {
  return fmt::format(
      R"({{"Track":{},"Position":{},"TimePosition":{},"Command":"{:02X}","DLength":{},"DType":{},)"
      R"("MType":{},"Value":[{},{}],"Meta":"{}"}})",
      track, e.Position, e.TimePosition, e.Command, e.DLength, e.DType, e.MType, e.Value[0], e.Value[1],
      MetaHex(e.Meta));
}

bool IsWanted(const Arguments& arguments, const TypMidiEvent& e) {
  return !arguments.Channel || (e.IsChannelEvent() && e.Channel() == *arguments.Channel - 1);
}

void Print(const Arguments& arguments, const Song& song, Console& console) {
  const char* separator = "[\n";
  for (int t = 0; t < song.NumberOfSourceTracks && console.HasReader(); ++t) {
    if (arguments.Track && t != *arguments.Track) continue;
    ForEachEvent(song.MidiTrack[static_cast<std::size_t>(t)], [&](PtrMidiEvent e) {
      if (!IsWanted(arguments, *e)) return;
      if (!arguments.Json) return console.Out(PlainLine(t, *e));
      console.Out(separator);
      console.Out(JsonLine(t, *e));
      separator = ",\n";
    });
  }
  if (arguments.Json) console.Out(*separator == '[' ? "[]\n" : "\n]\n");
}

}  // namespace

int EventsCommand(const Arguments& arguments, const Setup& setup, Console& console) {
  const std::string& file = arguments.Files.front();
  const Setup used = arguments.Decoded ? ReaderSetup(setup) : setup;
  SongDesk desk(used, arguments.Answer.value_or(false));
  const bool opened = arguments.Decoded ? desk.Decode(file) : desk.Open(file);
  if (!opened || !arguments.Quiet) TellMessages(console, file, desk.messages.Shown);
  if (!opened) return Refused;
  if (arguments.Track && *arguments.Track >= desk.song.NumberOfSourceTracks) {
    const std::string last = std::to_string(desk.song.NumberOfSourceTracks - 1);
    console.Err("sonarello-cli: --track: " +
                Text("Der Song hat die Spuren 0 bis " + last, "the song has the tracks 0 to " + last));
    return WrongUsage;
  }
  Print(arguments, desk.song, console);
  return Done;
}

}  // namespace Sonarello
