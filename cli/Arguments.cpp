#include "Arguments.h"

#include <charconv>
#include <cstdlib>
#include <functional>
#include <stdexcept>
#include <string_view>

#include <fmt/format.h>
#include <CLI/CLI.hpp>

#include "core/Options.h"
#include "core/Texts.h"

namespace Sonarello {

namespace {

/// Wrong usage; what() is told to the user.
class UsageError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

int Number(const std::string& option, const std::string& text, int min, int max) {
  int value = 0;
  const char* const end = text.data() + text.size();
  const auto [behind, fault] = std::from_chars(text.data(), end, value);
  if (fault == std::errc{} && behind == end && value >= min && value <= max) return value;
  const std::string range = max == std::numeric_limits<int>::max() ? fmt::format("{} …", min)
                                                                   : fmt::format("{} … {}", min, max);
  throw UsageError(fmt::format(
      "{}: {} ({})", option,
      Text("\"" + text + "\" ist keine solche Zahl", "\"" + text + "\" is no such number"), range));
}

int OneOf(const std::string& option, const std::string& text, const std::vector<std::string>& allowed) {
  for (std::size_t i = 0; i < allowed.size(); ++i)
    if (text == allowed[i]) return static_cast<int>(i);
  throw UsageError(fmt::format("{}: {} ({})", option,
                               Text("\"" + text + "\" gibt es nicht", "there is no \"" + text + "\""),
                               fmt::join(allowed, ", ")));
}

using Reader = std::function<void(const std::string&)>;

/// An option with one value, which a function reads.
CLI::Option* AddValue(CLI::App& app, const std::string& names, const Reader& read,
                      const std::string& help, const std::string& type) {
  return app.add_option_function<std::string>(names, read, help)->type_name(type)->take_last();
}

void AddCommonOptions(CLI::App& app, Arguments& a) {
  const std::string group = Text("Überall", "Everywhere");
  app.set_help_flag("-h,--help", Text("Diese Hilfe", "This help"))->group(group);
  AddValue(
      app, "-i,--instrument", [&a](const std::string& text) { a.Instrument = text; },
      Text("Hauptinstrument: Name, Teil des Namens oder Nummer",
           "Main instrument: name, part of it, or value"),
      "NAME|VALUE")
      ->group(group);
  app.add_option_function<std::vector<std::string>>(
         "--set",
         [&a](const std::vector<std::string>& all) {
           a.Settings.insert(a.Settings.end(), all.begin(), all.end());
         },
         Text("Einstellung setzen (mehrfach möglich)", "Set a setting (may be repeated)"))
      ->type_name("KEY=VALUE")
      ->allow_extra_args(false)
      ->group(group);
  AddValue(
      app, "--lang",
      [](const std::string& text) {
        OneOf("--lang", text, {"de", "en"});
      },
      Text("Sprache", "Language"), "de|en")
      ->group(group);
  AddValue(
      app, "--data-path", [&a](const std::string& text) { a.DataPath = text; },
      Text("Ordner für _NoteOnOff.txt; ohne ihn wird nichts geschrieben",
           "Folder for _NoteOnOff.txt; without it nothing is written"),
      "DIR")
      ->group(group);
  app.add_flag_callback(
         "--json", [&a] { a.Json = true; }, Text("Ergebnisse als JSON", "Results as JSON"))
      ->group(group);
  app.add_flag_callback(
         "-q,--quiet", [&a] { a.Quiet = true; }, Text("Nur Fehler melden", "Tell errors only"))
      ->group(group);
  app.add_flag_callback(
         "--yes", [&a] { a.Answer = true; },
         Text("Jede Frage mit Ja beantworten", "Answer every question with yes"))
      ->group(group);
  app.add_flag_callback(
         "--no", [&a] { a.Answer = false; },
         Text("Jede Frage mit Nein beantworten", "Answer every question with no"))
      ->group(group);
}

CLI::App* AddCommand(CLI::App& app, Arguments& a, const std::string& name, const std::string& help) {
  CLI::App* command = app.add_subcommand(name, help);
  AddCommonOptions(*command, a);
  command->group(Text("Kommandos", "Commands"));
  command->callback([&a, name] { a.Command = name; });
  return command;
}

void AddFiles(CLI::App& command, Arguments& a, bool several) {
  auto* files = command.add_option(
      "FILE", a.Files, several ? Text("MIDI-Dateien", "MIDI files") : Text("MIDI-Datei", "MIDI file"));
  files->type_name("");
  if (!several) files->expected(1);
}

void AddShow(CLI::App& app, Arguments& a) {
  CLI::App* show = AddCommand(app, a, "show",
                              Text("Öffnet eine Datei, passt sie an und zeigt den Song",
                                   "Opens a file, fits it and shows the song"));
  AddFiles(*show, a, false);
  show->add_flag_callback(
      "--changes", [&a] { a.Changes = true; },
      Text("Zeigt auch, was das Anpassen geändert hat", "Also shows what fitting changed"));
}

void AddEvents(CLI::App& app, Arguments& a) {
  CLI::App* events = AddCommand(
      app, a, "events",
      Text("Gibt die Events des geöffneten Songs aus", "Prints the events of the opened song"));
  AddFiles(*events, a, false);
  AddValue(
      *events, "--track",
      [&a](const std::string& text) {
        a.Track = Number("--track", text, 0, std::numeric_limits<int>::max());
      },
      Text("Nur diese Spur, ab 0", "Only this track, from 0"), "N");
  AddValue(
      *events, "--channel",
      [&a](const std::string& text) { a.Channel = Number("--channel", text, 1, ChannelCount); },
      Text("Nur Events dieses Kanals, 1 bis 16", "Only events of this channel, 1 to 16"), "N");
  events->add_flag_callback(
      "--decoded", [&a] { a.Decoded = true; },
      Text("Wie gelesen, ohne jeden weiteren Schritt", "As read, without any further step"));
}

void AddSave(CLI::App& app, Arguments& a) {
  CLI::App* save = AddCommand(
      app, a, "save",
      Text("Öffnet Dateien und speichert sie angepasst", "Opens files and saves them fitted"));
  AddFiles(*save, a, true);
  AddValue(
      *save, "-o,--output", [&a](const std::string& text) { a.Output = text; },
      Text("Zieldatei, die ersetzt wird, oder Zielordner",
           "Target file, which is replaced, or target folder"),
      "OUT");
  AddValue(
      *save, "--format",
      [&a](const std::string& text) {
        a.Format = OneOf("--format", text, {"0", "1"});
      },
      Text("Format der Datei; sonst das der Quelle", "Format of the file; else the source's"), "0|1");
}

void AddNew(CLI::App& app, Arguments& a) {
  CLI::App* create =
      AddCommand(app, a, "new", Text("Schreibt einen neuen, leeren Song", "Writes a new, empty song"));
  AddValue(
      *create, "-o,--output", [&a](const std::string& text) { a.Output = text; },
      Text("Zieldatei, die ersetzt wird", "Target file, which is replaced"), "OUT");
  AddValue(
      *create, "--timebase",
      [&a](const std::string& text) {
        a.NewSong.SourceTimeBase = OneOf("--timebase", text, {"384", "480"}) == 0 ? 384 : 480;
      },
      Text("Auflösung, Ticks je Viertel [480]", "Resolution, ticks per quarter note [480]"), "384|480");
  AddValue(
      *create, "--signature",
      [&a](const std::string& text) {
        OneOf("--signature", text, {"2/4", "3/4", "4/4", "6/8"});
        a.NewSong.Numerator = static_cast<std::uint8_t>(text.front() - '0');
        a.NewSong.Denominator = static_cast<std::uint8_t>(text.back() - '0');
      },
      Text("Taktart [4/4]", "Time signature [4/4]"), "2/4|3/4|4/4|6/8");
  AddValue(
      *create, "--tempo",
      [&a](const std::string& text) {
        a.NewSong.Tempo =
            static_cast<std::uint16_t>(Number("--tempo", text, TNewSong::MinTempo, TNewSong::MaxTempo));
      },
      Text("Viertel je Minute [120]", "Quarter notes per minute [120]"), "N");
}

/// What a command needs and did not get.
std::string Missing(const Arguments& a) {
  if (a.Command.empty()) return Text("Es fehlt ein Kommando", "A command is missing");
  const bool wantsFiles = a.Command != "new" && a.Command != "instruments";
  if (wantsFiles && a.Files.empty()) return Text("Es fehlt eine Datei", "A file is missing");
  const bool wantsOutput = a.Command == "save" || a.Command == "new";
  if (wantsOutput && a.Output.empty())
    return Text("Es fehlt das Ziel: -o OUT", "The target is missing: -o OUT");
  if (a.Track && a.Channel)
    return Text("--track und --channel schließen einander aus",
                "--track and --channel exclude each other");
  return {};
}

std::string SettingsHelp() {
  std::string text = Text("Einstellungen (KEY [Vorgabe]):", "Settings (KEY [default]):") + "\n";
  const Options defaults;
  for (const TOption& option : OptionTable())
    text +=
        fmt::format("  {:<31}{}\n", fmt::format("{} [{}]", option.Key, OptionText(defaults, option)),
                    Text(option.German, option.English));
  text += fmt::format("  {:<31}{}\n", "MidiInstrument00 … 99",
                      Text("Instrument der Route", "Instrument of the route"));
  text +=
      fmt::format("  {:<31}{}", "MidiOutput00 … 99", Text("Ausgang der Route", "Output of the route"));
  return text;
}

/// The parser's own complaints, in the user's language.
std::string ComplaintOf(const CLI::ParseError& error) {
  const std::string english = error.what();
  if (!GermanLanguage) return english;
  if (error.get_name() == "ExtrasError") {
    const std::size_t colon = english.find(": ");
    return "Unerwartet: " + (colon == std::string::npos ? english : english.substr(colon + 2));
  }
  if (error.get_name() == "ArgumentMismatch") return "Ein Wert fehlt oder ist zu viel: " + english;
  return english;
}

}  // namespace

void ChooseLanguage(const std::vector<std::string>& arguments) {
  std::string language;
  for (const char* name : {"LC_ALL", "LC_MESSAGES", "LANG"})
    if (const char* value = std::getenv(name); language.empty() && value != nullptr) language = value;
  for (std::size_t i = 0; i < arguments.size() && arguments[i] != "--"; ++i) {
    if (arguments[i] == "--lang" && i + 1 < arguments.size()) language = arguments[i + 1];
    if (arguments[i].starts_with("--lang=")) language = arguments[i].substr(7);
  }
  GermanLanguage = language.starts_with("de");
}

namespace {

void Label(CLI::App& app) {
  const auto formatter = app.get_formatter();
  formatter->column_width(34);
  formatter->label("Usage", Text("Aufruf", "Usage"));
  formatter->label("OPTIONS", Text("OPTIONEN", "OPTIONS"));
  formatter->label("SUBCOMMAND", Text("KOMMANDO", "COMMAND"));
  formatter->label("Positionals", Text("Dateien", "Files"));
  app.option_defaults()->group(Text("Optionen", "Options"));
}

void AddCommands(CLI::App& app, Arguments& a) {
  AddShow(app, a);
  AddEvents(app, a);
  CLI::App* decode = AddCommand(app, a, "decode",
                                Text("Liest Dateien nur und sagt, ob sie lesbar sind",
                                     "Only reads files and tells if they can be read"));
  AddFiles(*decode, a, true);
  AddSave(app, a);
  AddNew(app, a);
  AddCommand(app, a, "instruments", Text("Listet die Instrumente auf", "Lists the instruments"));
}

std::string HelpText(const CLI::App& app) {
  const auto asked = app.get_subcommands();
  return asked.empty() ? app.help() : asked.front()->help(app.get_name());
}

ParsedArguments Wrong(std::string complaint) {
  return {.Todo = {}, .Help = {}, .Complaint = std::move(complaint)};
}

ParsedArguments Helped(std::string help) {
  return {.Todo = {}, .Help = std::move(help), .Complaint = {}};
}

}  // namespace

ParsedArguments ParseArguments(const std::vector<std::string>& arguments) {
  Arguments a;
  CLI::App app(
      Text("Sonarello ohne Fenster: MIDI-Dateien öffnen, an ein Instrument anpassen, speichern",
           "Sonarello without windows: opens MIDI files, fits them to an instrument, saves them"),
      "sonarello-cli");
  Label(app);
  AddCommonOptions(app, a);
  app.set_version_flag("--version", "sonarello-cli " SONARELLO_VERSION,
                       Text("Zeigt die Version", "Shows the version"));
  app.require_subcommand(0, 1);
  AddCommands(app, a);
  app.footer(SettingsHelp());
  try {
    app.parse(std::vector<std::string>(arguments.rbegin(), arguments.rend()));
  } catch (const CLI::CallForHelp&) {
    return Helped(HelpText(app));
  } catch (const CLI::CallForVersion& version) {
    return Helped(std::string(version.what()) + "\n");
  } catch (const CLI::ParseError& error) {
    return Wrong(ComplaintOf(error));
  } catch (const UsageError& error) {
    return Wrong(error.what());
  }
  if (std::string missing = Missing(a); !missing.empty()) return Wrong(std::move(missing));
  return {.Todo = std::move(a), .Help = {}, .Complaint = {}};
}

}  // namespace Sonarello
