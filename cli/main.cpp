// Sonarello without windows.
#include <csignal>
#include <exception>
#include <string>
#include <vector>

#include "Commands.h"

namespace Sonarello {

namespace {

struct CommandRow {
  const char* Name;
  int (*Run)(const Arguments&, const Setup&, Console&);
};
constexpr CommandRow CommandRows[] = {
    {"show", ShowCommand},       {"events", EventsCommand},
    {"decode", DecodeCommand},   {"save", SaveCommand},
    {"fit", FitCommand},         {"revoice", RevoiceCommand},
    {"new", NewCommand},         {"instruments", InstrumentsCommand},
    {"sounds", SoundsCommand},   {"name", NameCommand},
    {"drums", DrumsCommand},     {"ports", PortsCommand},
    {"play", PlayCommand},       {"render", RenderCommand},
    {"monitor", MonitorCommand}, {"explain", ExplainCommand},
    {"rows", RowsCommand},
};

int Complain(Console& console, const std::string& complaint) {
  console.Err("sonarello-cli: " + complaint);
  return WrongUsage;
}

int Run(const std::vector<std::string>& words, Console& console) {
  ChooseLanguage(words);
  const ParsedArguments parsed = ParseArguments(words);
  if (!parsed.Complaint.empty()) return Complain(console, parsed.Complaint);
  if (!parsed.Todo) {
    console.Out(parsed.Help);
    return Done;
  }
  std::string complaint;
  const std::optional<Setup> setup = MakeSetup(*parsed.Todo, complaint);
  if (!setup) return Complain(console, complaint);
  TellMessages(console, "sonarello-cli", setup->complaints);
  for (const CommandRow& row : CommandRows)
    if (parsed.Todo->Command == row.Name) return row.Run(*parsed.Todo, *setup, console);
  return WrongUsage;
}

}  // namespace

}  // namespace Sonarello

int main(int argc, char** argv) {
  // A closed pipe shows as a failed write, so that work whose results nobody reads is still done.
  std::signal(SIGPIPE, SIG_IGN);
  Sonarello::Console console;
  try {
    return console.Finish(Sonarello::Run(std::vector<std::string>(argv + 1, argv + argc), console));
  } catch (const std::exception& error) {
    console.Err(std::string("sonarello-cli: ") + error.what());
    return console.Finish(Sonarello::Refused);
  }
}
