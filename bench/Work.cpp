#include "Work.h"

#include <smf.h>
#include <unistd.h>

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <stdexcept>

#include "Events.h"
#include "Explain.h"
#include "Floors.h"
#include "Measure.h"
#include "Player.h"
#include "Render.h"
#include "Sounds.h"
#include "StandIns.h"
#include "core/MidiFileWriter.h"
#include "core/OpenPipeline.h"
#include "instruments/SoundNames.h"

namespace Sonarello::Bench {

namespace {

using Arguments = std::vector<std::string>;

std::vector<std::uint8_t> ReadFile(const std::string& path) {
  std::ifstream in(path, std::ios::binary | std::ios::ate);
  std::vector<std::uint8_t> bytes(static_cast<std::size_t>(in.tellg()));
  in.seekg(0);
  in.read(reinterpret_cast<char*>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
  return bytes;
}

/// A song with all that its operations need, as the program owns it.
struct Desk {
  explicit Desk(int instrument) : routes(instrument) {
    options.DataPath = std::filesystem::temp_directory_path().string();
    sounds.Load(instrument, {}, messages);
    names.Wire(hooks);
  }

  void Open(const std::string& file) {
    if (!pipeline.OpenMidiFile(file, false)) throw std::runtime_error("refused: " + file);
  }

  Song song;
  Options options;
  OneRoute routes;
  DeafMessages messages;
  SongHooks hooks;
  OpenPipeline pipeline{song, options, routes, messages, hooks};
  MidiFileWriter writer{song, options, routes, messages, hooks};
  SoundSets sounds;
  TSoundNames names{song, sounds, options, routes};
};

int Instrument(const Arguments& arguments) { return std::stoi(arguments.at(2)); }

void MeasureFloor(const Arguments& arguments) {
  const std::vector<std::uint8_t> file = ReadFile(arguments.at(1));
  NodeFloor floor(file);
  const std::size_t events = floor.Count();
  const double link = Seconds([&] { floor.Link(events); });
  std::size_t bytes = 0;
  const double write = Seconds([&] { bytes = floor.Write(); });
  std::printf("%.9f %.9f %zu %zu", link, write, events, bytes);
}

void MeasurePeer(const Arguments& arguments) {
  const std::vector<std::uint8_t> file = ReadFile(arguments.at(1));
  smf_t* song = nullptr;
  const double load =
      Seconds([&] { song = smf_load_from_memory(file.data(), static_cast<int>(file.size())); });
  if (song == nullptr) throw std::runtime_error("libsmf refuses the song");
  std::printf("%.9f", load);
}

void MeasureDecode(const Arguments& arguments) {
  Desk desk(0);
  desk.options.AutoSysex = false;
  TMidiFunctions functions(desk.song, desk.options, desk.routes, desk.messages, desk.hooks);
  for (int round = 0; round < 2; ++round) {
    functions.SourceData = ReadFile(arguments.at(1));
    std::printf("%.9f ", Seconds([&] { functions.DecodeMidiData(); }));
    desk.song.ClearMidiMemory();
  }
}

void MeasureOpen(const Arguments& arguments) {
  Desk desk(Instrument(arguments));
  for (int round = 0; round < 2; ++round)
    std::printf("%.9f ", Seconds([&] { desk.Open(arguments.at(1)); }));
}

void MeasureEncode(const Arguments& arguments) {
  Desk desk(Instrument(arguments));
  desk.Open(arguments.at(1));
  std::vector<std::uint8_t> bytes;
  const double encode =
      Seconds([&] { bytes = desk.writer.Encode(arguments.at(1), std::stoi(arguments.at(3))); });
  std::printf("%.9f %zu", encode, bytes.size());
}

void MeasureSave(const Arguments& arguments) {
  Desk desk(Instrument(arguments));
  desk.Open(arguments.at(1));
  const std::string target = arguments.at(1) + ".saved";
  bool saved = false;
  const double save = Seconds([&] { saved = desk.writer.Save(target, std::stoi(arguments.at(3))); });
  std::filesystem::remove(target);
  if (!saved) throw std::runtime_error("not saved: " + target);
  std::printf("%.9f", save);
}

double ResidentBytes() {
  std::ifstream statm("/proc/self/statm");
  double pages = 0;
  statm >> pages >> pages;
  return pages * static_cast<double>(sysconf(_SC_PAGESIZE));
}

void MeasureMemory(const Arguments& arguments) {
  Desk desk(Instrument(arguments));
  const double before = ResidentBytes();
  desk.Open(arguments.at(1));
  std::printf("%.0f", ResidentBytes() - before);
}

void MeasureNames(const Arguments& arguments) {
  const SoundFigures figures = MeasureSounds(std::stoi(arguments.at(1)));
  std::printf("%.9f %.0f %.12f %.12f", figures.Load, figures.Bytes, figures.LookUp, figures.MapLookUp);
}

void MeasureExplaining() {
  const ExplainFigures figures = MeasureExplain();
  std::printf("%.9f %.9f %.9f", figures.Random, figures.Known, figures.RuleByRule);
}

void MeasureEventList(const Arguments& arguments) {
  Desk desk(0);
  desk.options.AutoSysex = false;
  desk.Open(arguments.at(1));
  TMidiFunctions functions(desk.song, desk.options, desk.routes, desk.messages, desk.hooks);
  const EventFigures f = MeasureEvents({.song = desk.song,
                                        .options = desk.options,
                                        .routes = desk.routes,
                                        .messages = desk.messages,
                                        .functions = functions},
                                       std::stoi(arguments.at(2)));
  for (const double figure : {f.Rows, f.RowBytes, f.Show, f.Page, f.Value, f.Move, f.Length, f.Insert,
                              f.Delete, f.Undo, f.Tempo, f.Find})
    std::printf("%.9f ", figure);
}

void MeasurePlaying(const Arguments& arguments) {
  const PlayerFigures figures = MeasurePlayer(arguments.at(1), Instrument(arguments));
  std::printf("%.9f %.9f %.9f %.12f %.12f", figures.Walk, figures.Move, figures.Tempo, figures.Pass,
              figures.Fader);
}

void MeasureRendering(const Arguments& arguments) {
  const RenderFigures figures = MeasureRender(arguments.at(1));
  std::printf("%.9f %.9f %.3f", figures.Ours, figures.Bare, figures.Sound);
}

}  // namespace

bool Measure(const Arguments& arguments) {
  const std::string& what = arguments.at(0);
  if (what == "floor")
    MeasureFloor(arguments);
  else if (what == "peer")
    MeasurePeer(arguments);
  else if (what == "decode")
    MeasureDecode(arguments);
  else if (what == "open")
    MeasureOpen(arguments);
  else if (what == "encode")
    MeasureEncode(arguments);
  else if (what == "save")
    MeasureSave(arguments);
  else if (what == "render")
    MeasureRendering(arguments);
  else if (what == "player")
    MeasurePlaying(arguments);
  else if (what == "sounds")
    MeasureNames(arguments);
  else if (what == "explain")
    MeasureExplaining();
  else if (what == "events")
    MeasureEventList(arguments);
  else if (what == "memory")
    MeasureMemory(arguments);
  else
    return false;
  return true;
}

}  // namespace Sonarello::Bench
