#include "Composition.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <cctype>
#include <new>
#include <string_view>

#include "DisplayText.h"
#include "core/MidiFileWriter.h"
#include "core/TextOrder.h"
#include "core/Texts.h"
#include "instruments/InstrumentArray.h"
#include "tools/RemoveCountIns.h"

namespace Sonarello {

namespace {

constexpr std::size_t MostRoutes = 100;
constexpr std::string_view NoOutput = "Virtual MIDI";  ///< output of a route that names none

/// A route as the settings give it.
struct LoadedRoute {
  std::string Instrument;
  std::string OutputName;
  [[nodiscard]] bool IsGiven() const { return !Instrument.empty() || !OutputName.empty(); }
};
using LoadedRoutes = std::array<LoadedRoute, MostRoutes>;

/// Number behind a word, such as 7 of "MidiOutput07"; case does not count.
std::optional<std::size_t> RouteNumber(std::string_view key, std::string_view word) {
  const auto digit = [&](std::size_t i) { return static_cast<unsigned char>(key[i]); };
  if (key.size() != word.size() + 2) return std::nullopt;
  if (SmallLetters(key.substr(0, word.size())) != SmallLetters(word)) return std::nullopt;
  if (!std::isdigit(digit(word.size())) || !std::isdigit(digit(word.size() + 1))) return std::nullopt;
  return static_cast<std::size_t>((digit(word.size()) - '0') * 10 + digit(word.size() + 1) - '0');
}

std::optional<std::string> TakeSetting(const std::string& setting, Options& options,
                                       LoadedRoutes& routes) {
  const std::size_t equals = setting.find('=');
  if (equals == std::string::npos)
    return "--set " + setting + Text(": es fehlt \"=WERT\"", ": \"=VALUE\" is missing");
  const std::string key = setting.substr(0, equals);
  const std::string value = setting.substr(equals + 1);
  if (const auto n = RouteNumber(key, "MidiInstrument"))
    routes[*n].Instrument = value;
  else if (const auto m = RouteNumber(key, "MidiOutput"))
    routes[*m].OutputName = value;
  else
    return SetOption(options, key, value);
  return std::nullopt;
}

/// The catalogue row that a typed text means; else nil, and what is wrong.
const TInstrument* InstrumentOf(const std::string& text, std::string& complaint) {
  const std::vector<const TInstrument*> rows = FindInstruments(text);
  if (rows.size() == 1) return rows.front();
  if (rows.empty()) {
    complaint = Text("Unbekanntes Instrument: ", "Unknown instrument: ") + text +
                Text(" (Liste: sonarello-cli instruments)", " (list: sonarello-cli instruments)");
    return nullptr;
  }
  complaint = Text("Mehrere Instrumente passen zu \"", "Several instruments match \"") + text + "\":";
  for (const TInstrument* row : rows) complaint += fmt::format("\n  {} ({})", row->Name, row->Value);
  return nullptr;
}

bool AddRoute(const LoadedRoute& loaded, std::vector<TMidiRouting>& table, std::string& complaint) {
  const TInstrument* row =
      loaded.Instrument.empty() ? &InstrumentArray.front() : InstrumentOf(loaded.Instrument, complaint);
  if (row == nullptr) return false;
  TMidiRouting route;
  route.Instrument = row->Name;
  route.InstrumValue = row->Value;
  route.OutputName = loaded.OutputName.empty() ? NoOutput : std::string_view(loaded.OutputName);
  table.push_back(std::move(route));
  return true;
}

}  // namespace

TLoadSettings LoadSettingsOf(const Options& options) {
  return {.DataPath = options.DataPath, .SortSounds = false, .LimexTE200 = options.LimexTE200};
}

void LoadSounds(Setup& setup) {
  auto sounds = std::make_shared<SoundSets>();
  SongMessages messages(false);
  for (const TMidiRouting& route : setup.routes.Table)
    sounds->Load(route.InstrumValue, LoadSettingsOf(setup.options), messages);
  setup.sounds = std::move(sounds);
  setup.complaints = std::move(messages.Shown);
}

std::optional<Setup> MakeSetup(const Arguments& arguments, std::string& complaint) {
  Setup setup;
  setup.options.DataPath = arguments.DataPath;
  LoadedRoutes routes;
  for (const std::string& setting : arguments.Settings)
    if (const auto fault = TakeSetting(setting, setup.options, routes)) {
      complaint = *fault;
      return std::nullopt;
    }
  if (!arguments.Instrument.empty()) routes[0].Instrument = arguments.Instrument;
  for (std::size_t n = 0; n < routes.size(); ++n) {
    const bool live = n == 0 || (setup.options.MultiMidi && routes[n].IsGiven());
    if (live && !AddRoute(routes[n], setup.routes.Table, complaint)) return std::nullopt;
  }
  LoadSounds(setup);
  return setup;
}

Setup ReaderSetup(Setup setup) {
  setup.options.AutoSysex = setup.options.InsertSongName = setup.options.SysexsOnExtraTrack = false;
  return setup;
}

SongDesk::SongDesk(const Setup& s, bool answer)
    : messages(answer),
      names(song, *s.sounds, s.options, s.routes),
      setup(s),
      functions(song, s.options, s.routes, messages, hooks) {
  WireHooks();
}

void SongDesk::WireHooks() {
  hooks.RemoveCountIn = [this](Song& s) { TRemoveCountIns(s, setup.options).RemoveCountIn(); };
  hooks.CreateMidiData = [this](Song& s) {
    TNewMidiData(s, functions, setup.routes, messages).CreateMidiData(newSong);
  };
  names.Wire(hooks);
  hooks.NoteCheckResult = [this](const std::string& verdict, bool) { NoteCheck = verdict; };
}

bool SongDesk::Open(const std::string& file) {
  return OpenPipeline(song, setup.options, setup.routes, messages, hooks).OpenMidiFile(file, false);
}

bool SongDesk::Create(const std::string& file, const TNewSong& wishes) {
  newSong = wishes;
  return OpenPipeline(song, setup.options, setup.routes, messages, hooks).OpenMidiFile(file, true);
}

bool SongDesk::Decode(const std::string& file) {
  try {
    song.ClearMidiMemory();
    song.ResetChannels();
    song.MidiFileName = file;
    if (!ReadSourceData(file, functions.SourceData, messages)) return false;
    functions.DecodeMidiData();
    return true;
  } catch (const EMidiError&) {
    return false;
  } catch (const std::bad_alloc&) {
    messages.Show(OutOfMemoryText());
    return false;
  }
}

bool SongDesk::Save(const std::string& file, int format) {
  return MidiFileWriter(song, setup.options, setup.routes, messages, hooks).Save(file, format);
}

void TellMessages(Console& console, const std::string& file, const std::vector<std::string>& messages) {
  for (const std::string& message : messages) {
    std::string text = VisibleText(file) + ": ";
    std::string_view rest = message;
    while (true) {
      const std::size_t end = rest.find_first_of("\r\n");
      text += VisibleText(rest.substr(0, end));
      if (end == std::string_view::npos) break;
      rest.remove_prefix(rest.substr(end).starts_with("\r\n") ? end + 2 : end + 1);
      text += "\n  ";
    }
    console.Err(text);
  }
}

}  // namespace Sonarello
