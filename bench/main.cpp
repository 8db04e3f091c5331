// sonarello_bench: what opening and saving cost, as ratios against floors measured in the same run.

#include <unistd.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <stdexcept>
#include <string>
#include <vector>

#include "Measure.h"
#include "Songs.h"
#include "Work.h"

namespace {

using namespace Sonarello::Bench;
using Limit = Report::Limit;

constexpr const char* Usage =
    "usage: sonarello_bench [--strict] [--rounds N] [--no-shapes] [SONG.mid]\n"
    "Measures opening and saving on SONG.mid, or on a song of 1,000,000 events that it makes, and the\n"
    "growth with the size of songs. Every figure is the median of ratios taken in pairs, each of\n"
    "processor time in fresh processes. With --strict the exit status is 1 if a limit is missed.\n";

/// Instruments of the rows: catalogue number and name.
struct Instrument {
  std::string value;
  std::string name;
};
const std::array<Instrument, 3> Instruments = {
    {{"0", "GM Soundset"}, {"87", "Yamaha Genos"}, {"1", "Roland SC-88Pro"}}};

/// A folder that goes with the run.
class WorkFolder {
 public:
  WorkFolder() {
    const std::filesystem::path memory = "/dev/shm";
    const std::filesystem::path base =
        std::filesystem::exists(memory) ? memory : std::filesystem::temp_directory_path();
    path = base / ("sonarello_bench." + std::to_string(getpid()));
    std::filesystem::create_directories(path);
  }
  WorkFolder(const WorkFolder&) = delete;
  WorkFolder& operator=(const WorkFolder&) = delete;
  ~WorkFolder() {
    std::error_code ignored;
    std::filesystem::remove_all(path, ignored);
  }

  [[nodiscard]] std::string Write(const std::string& name, const Bytes& bytes) const {
    const std::filesystem::path file = path / name;
    std::ofstream out(file, std::ios::binary);
    out.write(reinterpret_cast<const char*>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
    if (!out) throw std::runtime_error("cannot write " + file.string());
    return file.string();
  }

 private:
  std::filesystem::path path;
};

std::string Milliseconds(const Figures& seconds) {
  std::array<char, 32> text{};
  std::snprintf(text.data(), text.size(), "%.2f ms", 1000 * Median(seconds));
  return text.data();
}

/// Figures of the same kind from several rounds, and their ratios to others of the same rounds.
struct Series {
  Figures figures;
  void Add(double figure) { figures.push_back(figure); }
  [[nodiscard]] double Over(const Series& other) const {
    Figures ratios;
    for (std::size_t i = 0; i < figures.size(); ++i) ratios.push_back(figures[i] / other.figures[i]);
    return Median(ratios);
  }
};

std::string Against(const Series& a, const Series& b) {
  return Milliseconds(a.figures) + " against " + Milliseconds(b.figures);
}

void MeasureSong(Report& report, const std::string& song, int rounds) {
  Series link, write, peer, decode, again, open[2], reopen[2], encode[2], save[2];
  double events = 0;
  for (int round = 0; round < rounds; ++round) {
    const Figures floor = InFreshProcess({"measure", "floor", song});
    link.Add(floor.at(0));
    write.Add(floor.at(1));
    events = floor.at(2);
    const Figures decoded = InFreshProcess({"measure", "decode", song});
    decode.Add(decoded.at(0));
    again.Add(decoded.at(1));
    peer.Add(InFreshProcess({"measure", "peer", song}).at(0));
    for (const std::size_t i : {0U, 1U}) {
      const Figures opened = InFreshProcess({"measure", "open", song, Instruments[i].value});
      open[i].Add(opened.at(0));
      reopen[i].Add(opened.at(1));
      const std::string format = std::to_string(i);
      encode[i].Add(InFreshProcess({"measure", "encode", song, "0", format}).at(0));
      save[i].Add(InFreshProcess({"measure", "save", song, "0", format}).at(0));
    }
  }
  std::printf("song of %.0f events\n", events);
  report.Row("DecodeMidiData / node floor", decode.Over(link), Limit::AtMost, 1.7,
             Against(decode, link));
  report.Row("libsmf load / DecodeMidiData", peer.Over(decode), Limit::AtLeast, 4,
             Against(peer, decode));
  report.Row("second DecodeMidiData / first", again.Over(decode), Limit::AtMost, .8,
             Against(again, decode));
  for (const std::size_t i : {0U, 1U}) {
    report.Row("OpenMidiFile for " + Instruments[i].name + " / node floor", open[i].Over(link),
               Limit::AtMost, 4, Against(open[i], link));
    report.Row("second OpenMidiFile for " + Instruments[i].name + " / first", reopen[i].Over(open[i]),
               Limit::None, 0, Against(reopen[i], open[i]));
  }
  for (const std::size_t i : {1U, 0U}) {
    const std::string format = "format " + std::to_string(i);
    report.Row("Encode " + format + " / two-pass write floor", encode[i].Over(write), Limit::AtMost,
               1.6, Against(encode[i], write));
    report.Row("Save " + format + " / two-pass write floor", save[i].Over(write), Limit::None, 0,
               Against(save[i], write));
  }
  for (const std::size_t i : {0U, 1U}) {
    const double bytes = InFreshProcess({"measure", "memory", song, Instruments[i].value}).at(0);
    report.Row("resident bytes per event for " + Instruments[i].name, bytes / events, Limit::AtMost,
               112, "");
  }
}

/// Opens (and saves) a song and one of a tenth of its size in turn; prints the growth for the
/// instrument, or the format, that grows most.
void MeasureGrowth(Report& report, const std::string& what, const std::string& big,
                   const std::string& small, int rounds) {
  struct Worst {
    double ratio = 0;
    std::string how;
    void Take(const Series& large, const Series& little, const std::string& name) {
      if (large.Over(little) < ratio) return;
      ratio = large.Over(little);
      how = Against(large, little) + ", " + name;
    }
  } worstOpen, worstSave;
  const auto ratio = [&](Worst& worst, std::vector<std::string> arguments, const std::string& name) {
    Series large, little;
    for (int round = 0; round < rounds; ++round) {
      arguments[2] = big;
      large.Add(InFreshProcess(arguments).at(0));
      arguments[2] = small;
      little.Add(InFreshProcess(arguments).at(0));
    }
    worst.Take(large, little, name);
  };
  for (const Instrument& instrument : Instruments)
    ratio(worstOpen, {"measure", "open", "", instrument.value}, instrument.name);
  for (const std::string format : {"0", "1"})
    ratio(worstSave, {"measure", "save", "", "87", format}, "format " + format);
  Worst floor;
  ratio(floor, {"measure", "floor", ""}, "linking");
  report.Row("floor grows: " + what, floor.ratio, Limit::None, 0, floor.how);
  report.Row("open grows: " + what, worstOpen.ratio, Limit::AtMost, 11, worstOpen.how);
  report.Row("save grows: " + what, worstSave.ratio, Limit::AtMost, 11, worstSave.how);
}

void MeasurePlayback(Report& report, const std::string& song, int rounds) {
  std::printf("the player\n");
  Series walk, move, tempo;
  Figures pass, fader;
  for (int round = 0; round < rounds; ++round) {
    const Figures figures = InFreshProcess({"measure", "player", song, "87"});
    walk.Add(figures.at(0));
    move.Add(figures.at(1));
    tempo.Add(figures.at(2));
    pass.push_back(1e6 * figures.at(3));
    fader.push_back(1e6 * figures.at(4));
  }
  report.Row("wind to the end / plain walk", move.Over(walk), Limit::AtMost, 1.5, Against(move, walk));
  report.Row("live tempo change / plain walk", tempo.Over(walk), Limit::AtMost, 4,
             Against(tempo, walk));
  report.Row("microseconds of a pass with nothing due", Median(pass), Limit::AtMost, 2, "");
  report.Row("microseconds to move a fader", Median(fader), Limit::AtMost, 5, "");
}

void MeasureRenders(Report& report, const WorkFolder& folder, int rounds) {
  std::printf("rendering\n");
  const std::string song = folder.Write("render.mid", MixedSong(10'000));
  Series ours, bare;
  double sound = 0;
  for (int round = 0; round < rounds; ++round) {
    const Figures figures = InFreshProcess({"measure", "render", song});
    ours.Add(figures.at(0));
    bare.Add(figures.at(1));
    sound = figures.at(2);
  }
  report.Row("speed of the render / bare synthesizer", bare.Over(ours), Limit::AtLeast, .9,
             Against(ours, bare));
  report.Row("times as fast as it plays", sound / Median(ours.figures), Limit::None, 0, "");
}

/// Instruments with the most rows, and what naming adds to an open.
void MeasureNames(Report& report, const WorkFolder& folder, int rounds) {
  std::printf("sounds by their names\n");
  const std::string song = folder.Write("names.mid", MixedSong(50'000));
  Series plain, named;
  for (int round = 0; round < rounds; ++round) {
    plain.Add(InFreshProcess({"measure", "open", song, "0"}).at(0));
    named.Add(InFreshProcess({"measure", "open", song, "87"}).at(0));
  }
  report.Row("open 50,000 events for Yamaha Genos / GM Soundset", named.Over(plain), Limit::AtMost,
             1.15, Against(named, plain));
  for (const Instrument& instrument :
       {Instrument{"87", "Yamaha Genos"}, Instrument{"71", "Roland Integra-7"}}) {
    Series look, map;
    Figures load;
    double bytes = 0;
    for (int round = 0; round < rounds; ++round) {
      const Figures figures = InFreshProcess({"measure", "sounds", instrument.value});
      load.push_back(figures.at(0));
      bytes = figures.at(1);
      look.Add(figures.at(2));
      map.Add(figures.at(3));
    }
    const auto nanoseconds = [](const Series& s) {
      return std::to_string(std::lround(1e9 * Median(s.figures))) + " ns";
    };
    report.Row("name a sound of " + instrument.name + " / hash map", look.Over(map), Limit::AtMost, 3,
               nanoseconds(look) + " against " + nanoseconds(map));
    report.Row("megabytes of tables of " + instrument.name, bytes / 1e6, Limit::AtMost, 8, "");
    report.Row("milliseconds to load " + instrument.name, 1e3 * Median(load), Limit::AtMost, 20, "");
  }
}

void MeasureSysexs(Report& report, int rounds) {
  std::printf("sysexes in words\n");
  Figures random, known;
  Series index, ruleByRule;
  for (int round = 0; round < rounds; ++round) {
    const Figures figures = InFreshProcess({"measure", "explain"});
    random.push_back(figures.at(0));
    known.push_back(figures.at(1));
    index.Add(figures.at(1));
    ruleByRule.Add(figures.at(2));
  }
  report.Row("explain 100,000 random sysexes, seconds", Median(random), Limit::AtMost, .2, "");
  report.Row("explain 100,000 known sysexes, seconds", Median(known), Limit::AtMost, .2, "");
  report.Row("explain by the index / rule by rule", index.Over(ruleByRule), Limit::AtMost, .25,
             Against(index, ruleByRule));
}

void MeasureEventList(Report& report, const WorkFolder& folder, int rounds) {
  const std::string song = folder.Write("events.mid", OneTrackSong(1'000'000));
  std::vector<Figures> all;
  for (int round = 0; round < rounds; ++round)
    all.push_back(InFreshProcess({"measure", "events", song, "1"}));
  const auto middle = [&](std::size_t n) {
    Figures figures;
    for (const Figures& round : all) figures.push_back(round.at(n));
    return Median(figures);
  };
  std::printf("an event list of %.0f rows\n", middle(0));
  report.Row("bytes of a row", middle(1), Limit::AtMost, 16, "");
  std::size_t figure = 2;
  const auto row = [&](const char* what, double limit) {
    report.Row("milliseconds to " + std::string(what), 1e3 * middle(figure++), Limit::AtMost, limit,
               "");
  };
  row("show the list", 300);
  row("read a page", 8);
  for (const char* what : {"edit a value", "move a note", "change a length", "insert a note",
                           "delete a note", "take that back", "edit a tempo"})
    row(what, 20);
  report.Row("milliseconds to search all rows", 1e3 * middle(figure), Limit::None, 0, "");
}

void MeasureShapes(Report& report, const WorkFolder& folder, int rounds) {
  std::printf("ten times the size\n");
  MeasureGrowth(report, "1,000,000 events of a usual mixture",
                folder.Write("big.mid", MixedSong(1'000'000)),
                folder.Write("small.mid", MixedSong(100'000)), rounds);
  for (const Shape& shape : AwkwardShapes())
    MeasureGrowth(report, std::to_string(shape.Size) + " " + std::string(shape.Name),
                  folder.Write("big.mid", shape.Make(shape.Size)),
                  folder.Write("small.mid", shape.Make(shape.Size / 10)), rounds);
}

struct Wishes {
  bool strict = false;
  bool shapes = true;
  int rounds = 9;
  std::string song;
};

bool Read(const std::vector<std::string>& arguments, Wishes& wishes) {
  for (std::size_t i = 0; i < arguments.size(); ++i) {
    if (arguments[i] == "--strict")
      wishes.strict = true;
    else if (arguments[i] == "--no-shapes")
      wishes.shapes = false;
    else if (arguments[i] == "--rounds" && i + 1 < arguments.size())
      wishes.rounds = std::max(1, std::atoi(arguments[++i].c_str()));
    else if (arguments[i].empty() || arguments[i][0] == '-' || !wishes.song.empty())
      return false;
    else
      wishes.song = arguments[i];
  }
  return true;
}

int Run(const Wishes& wishes) {
  const WorkFolder folder;
  Report report;
  const std::string song = folder.Write("song.mid", [&] {
    if (wishes.song.empty()) return MixedSong(1'000'000);
    std::ifstream in(wishes.song, std::ios::binary);
    if (!in) throw std::runtime_error("cannot read " + wishes.song);
    return Bytes(std::istreambuf_iterator<char>(in), {});
  }());
  MeasureSong(report, song, wishes.rounds);
  MeasureNames(report, folder, wishes.rounds);
  MeasureSysexs(report, wishes.rounds);
  MeasureEventList(report, folder, std::min(wishes.rounds, 5));
  MeasurePlayback(report, song, wishes.rounds);
  MeasureRenders(report, folder, std::min(wishes.rounds, 5));
  if (wishes.shapes) MeasureShapes(report, folder, std::min(wishes.rounds, 5));
  if (report.Missed() > 0) std::printf("%d limits missed\n", report.Missed());
  return wishes.strict && report.Missed() > 0 ? 1 : 0;
}

}  // namespace

int main(int argc, char** argv) {
  const std::vector<std::string> arguments(argv + 1, argv + argc);
  try {
    if (!arguments.empty() && arguments[0] == "measure")
      return Measure({arguments.begin() + 1, arguments.end()}) ? 0 : 2;
    Wishes wishes;
    if (!Read(arguments, wishes)) {
      std::fputs(Usage, stderr);
      return 2;
    }
    return Run(wishes);
  } catch (const std::exception& e) {
    std::fprintf(stderr, "sonarello_bench: %s\n", e.what());
    return 1;
  }
}
