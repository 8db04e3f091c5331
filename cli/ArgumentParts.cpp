#include "ArgumentParts.h"

#include <charconv>
#include <limits>

#include <fmt/format.h>

#include "core/Texts.h"

namespace Sonarello {

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
      Text("Ordner eigener Klanglisten; _NoteOnOff.txt wird hierhin geschrieben",
           "Folder of your own sound lists; _NoteOnOff.txt is written here"),
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

}  // namespace Sonarello
