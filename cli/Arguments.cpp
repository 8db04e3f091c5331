#include "Arguments.h"
#include "ArgumentParts.h"

#include <algorithm>
#include <charconv>
#include <cstdlib>
#include <functional>
#include <initializer_list>
#include <limits>
#include <stdexcept>
#include <string_view>

#include <fmt/format.h>
#include <CLI/CLI.hpp>

#include "core/Options.h"
#include "core/Texts.h"

namespace Sonarello {

namespace {

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

/// Target and format of the commands that save.
void AddTarget(CLI::App& command, Arguments& a) {
  AddValue(
      command, "-o,--output", [&a](const std::string& text) { a.Output = text; },
      Text("Zieldatei, die ersetzt wird, oder Zielordner",
           "Target file, which is replaced, or target folder"),
      "OUT");
  AddValue(
      command, "--format",
      [&a](const std::string& text) {
        a.Format = OneOf("--format", text, {"0", "1"});
      },
      Text("Format der Datei; sonst das der Quelle", "Format of the file; else the source's"), "0|1");
}

void AddSave(CLI::App& app, Arguments& a) {
  CLI::App* save = AddCommand(
      app, a, "save",
      Text("Öffnet Dateien und speichert sie angepasst", "Opens files and saves them fitted"));
  AddFiles(*save, a, true);
  AddTarget(*save, a);
}

void AddFit(CLI::App& app, Arguments& a) {
  CLI::App* fit = AddCommand(app, a, "fit",
                             Text("Wie save, und berichtet von den Klängen jeder Datei",
                                  "As save, and reports on the sounds of each file"));
  AddFiles(*fit, a, true);
  AddTarget(*fit, a);
}

void AddRevoice(CLI::App& app, Arguments& a) {
  CLI::App* revoice = AddCommand(app, a, "revoice",
                                 Text("Öffnet Dateien, ersetzt Klänge nach Regeln und speichert",
                                      "Opens files, replaces sounds by rules and saves them"));
  AddFiles(*revoice, a, true);
  AddValue(
      *revoice, "--rules", [&a](const std::string& text) { a.Rules = text; },
      Text("Datei der Regeln: je Zeile Quelle und Ziel, acht Zellen mit Tabulatoren",
           "File of the rules: source and destination per line, eight cells parted by tabs"),
      "FILE");
  AddTarget(*revoice, a);
}

/// Program and bank selects of a sound.
void AddAddress(CLI::App& command, Arguments& a) {
  constexpr int highest = 127;
  AddValue(
      command, "--msb", [&a](const std::string& text) { a.MSB = Number("--msb", text, 0, highest); },
      Text("Bankwahl MSB (Controller 0)", "Bank select MSB (controller 0)"), "N");
  AddValue(
      command, "--lsb", [&a](const std::string& text) { a.LSB = Number("--lsb", text, 0, highest); },
      Text("Bankwahl LSB (Controller 32)", "Bank select LSB (controller 32)"), "N");
  AddValue(
      command, "--program",
      [&a](const std::string& text) { a.Program = Number("--program", text, 0, highest); },
      Text("Programm, wie gesendet: 0 bis 127", "Program as sent: 0 to 127"), "N");
}

void AddInstruments(CLI::App& app, Arguments& a) {
  CLI::App* instruments =
      AddCommand(app, a, "instruments", Text("Listet die Instrumente auf", "Lists the instruments"));
  instruments->add_flag_callback(
      "--coverage", [&a] { a.Coverage = true; },
      Text("Sagt, welche Klänge bekannt sind; mit -i Liste für Liste",
           "Tells which sounds are known; with -i list by list"));
}

void AddSounds(CLI::App& app, Arguments& a) {
  CLI::App* sounds =
      AddCommand(app, a, "sounds",
                 Text("Listet die Klänge eines Instruments auf", "Lists the sounds of an instrument"));
  AddValue(
      *sounds, "--list", [&a](const std::string& text) { a.List = text; },
      Text("Nur diese Liste: Name oder Teil davon", "Only this list: its name or a part of it"), "L");
  AddValue(
      *sounds, "--search", [&a](const std::string& text) { a.Search = text; },
      Text("Nur Klänge, deren Name das enthält", "Only sounds whose names hold this"), "TEXT");
}

void AddName(CLI::App& app, Arguments& a) {
  constexpr int mostDrumParts = 3;
  CLI::App* name = AddCommand(
      app, a, "name",
      Text("Sagt, wie ein Instrument einen Klang nennt", "Tells what an instrument calls a sound"));
  AddAddress(*name, a);
  AddValue(
      *name, "--channel",
      [&a](const std::string& text) { a.Channel = Number("--channel", text, 1, ChannelCount); },
      Text("Kanal, 1 bis 16 [1]", "Channel, 1 to 16 [1]"), "N");
  AddValue(
      *name, "--drum-part",
      [&a](const std::string& text) { a.DrumPart = Number("--drum-part", text, 0, mostDrumParts); },
      Text("Drumpart, 0 ist keiner [wie in einem geöffneten Song]",
           "Drum part, 0 is none [as in an opened song]"),
      "N");
}

void AddDrums(CLI::App& app, Arguments& a) {
  CLI::App* drums = AddCommand(app, a, "drums",
                               Text("Listet die Kits eines Instruments oder die Noten eines Kits auf",
                                    "Lists the kits of an instrument, or the notes of a kit"));
  AddAddress(*drums, a);
  AddValue(
      *drums, "--kit", [&a](const std::string& text) { a.Kit = text; },
      Text("Kit: Name oder Teil davon", "Kit: its name or a part of it"), "TEXT");
}

/// What stands in a command's help in front of its options.
void Label(CLI::App& app, const std::string& positionals) {
  const auto formatter = app.get_formatter();
  formatter->column_width(34);
  formatter->label("Usage", Text("Aufruf", "Usage"));
  formatter->label("OPTIONS", Text("OPTIONEN", "OPTIONS"));
  formatter->label("SUBCOMMAND", Text("KOMMANDO", "COMMAND"));
  formatter->label("Positionals", positionals);
  app.option_defaults()->group(Text("Optionen", "Options"));
}

void AddExplain(CLI::App& app, Arguments& a) {
  CLI::App* explain = AddCommand(
      app, a, "explain", Text("Sagt, was Sysex-Meldungen bedeuten", "Tells what sysex messages are"));
  explain->formatter(std::make_shared<CLI::Formatter>());
  Label(*explain, Text("Meldungen", "Messages"));
  explain
      ->add_option("HEX", a.Sysexs,
                   Text("Bytes hinter F0, hexadezimal; ohne sie eine Meldung je Zeile der "
                        "Standardeingabe",
                        "Bytes behind F0, hexadecimal; without them a message per line of standard "
                        "input"))
      ->type_name("");
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

bool IsOneOf(const std::string& command, std::initializer_list<std::string_view> commands) {
  return std::find(commands.begin(), commands.end(), command) != commands.end();
}

/// What a command needs and did not get.
std::string Missing(const Arguments& a) {
  if (a.Command.empty()) return Text("Es fehlt ein Kommando", "A command is missing");
  if (IsOneOf(a.Command,
              {"show", "events", "rows", "decode", "save", "fit", "revoice", "play", "render"}) &&
      a.Files.empty())
    return Text("Es fehlt eine Datei", "A file is missing");
  if (IsOneOf(a.Command, {"save", "fit", "revoice", "new", "render"}) && a.Output.empty())
    return Text("Es fehlt das Ziel: -o OUT", "The target is missing: -o OUT");
  if (a.Command == "revoice" && a.Rules.empty())
    return Text("Es fehlen die Regeln: --rules FILE", "The rules are missing: --rules FILE");
  if (a.Command == "rows" && !a.Track && !a.SysexList)
    return Text("Es fehlt die Spur: --track N", "The track is missing: --track N");
  const bool wantsProgram = a.Command == "name" || (a.Command == "drums" && (a.MSB || a.LSB));
  if (wantsProgram && !a.Program)
    return Text("Es fehlt das Programm: --program N", "The program is missing: --program N");
  return {};
}

/// What a command got and cannot take together.
std::string Contradiction(const Arguments& a) {
  if (a.Track && a.Channel)
    return Text("--track und --channel schließen einander aus",
                "--track and --channel exclude each other");
  if (a.Track && a.SysexList)
    return Text("--track und --sysex schließen einander aus", "--track and --sysex exclude each other");
  if (!a.Kit.empty() && a.Program)
    return Text("--kit und --program schließen einander aus", "--kit and --program exclude each other");
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

void AddCommands(CLI::App& app, Arguments& a) {
  AddShow(app, a);
  AddEvents(app, a);
  AddRows(app, a);
  CLI::App* decode = AddCommand(app, a, "decode",
                                Text("Liest Dateien nur und sagt, ob sie lesbar sind",
                                     "Only reads files and tells if they can be read"));
  AddFiles(*decode, a, true);
  AddSave(app, a);
  AddFit(app, a);
  AddRevoice(app, a);
  AddNew(app, a);
  AddInstruments(app, a);
  AddSounds(app, a);
  AddName(app, a);
  AddDrums(app, a);
  AddExplain(app, a);
  AddPlaybackCommands(app, a);
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
  Label(app, Text("Dateien", "Files"));
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
  if (std::string fault = Contradiction(a); !fault.empty()) return Wrong(std::move(fault));
  return {.Todo = std::move(a), .Help = {}, .Complaint = {}};
}

}  // namespace Sonarello
